#pragma once

#include <string>

// What terminals and cards of the window's tests say, as dialogues to replay.
namespace kartocheck::test::practice {

// A stationary terminal on COM `pn` is identified.
[[nodiscard]] std::string Identification(int pn);

// A KVK in that terminal is found ready and read. The record is hexadecimal text.
[[nodiscard]] std::string CardRead(int pn, const std::string& record);

// The check before a read finds no card in that terminal.
[[nodiscard]] std::string SlotIsEmpty(int pn);

// The same, and the read that is tried nevertheless finds none either.
[[nodiscard]] std::string NoCard(int pn);

// A mobile terminal on COM `pn` is identified; its stored record is found ready, read and
// erased.
[[nodiscard]] std::string MobileIdentification(int pn);
[[nodiscard]] std::string MobileRead(int pn, const std::string& record);

// KVK of Änne Göröl, template 60.
extern const std::string AnnesCard;
// KVK record of Dr. Jörg-Peter von Überberg, template 6081, with the mobile terminal's supplement.
extern const std::string JoergsRecord;

}  // namespace kartocheck::test::practice
