#pragma once

#include <string>

// What terminals and cards of the window's tests say, as dialogues to replay.
namespace kartocheck::test::practice {

// A stationary terminal on COM `pn` is identified.
[[nodiscard]] std::string Identification(int pn);

// A KVK in that terminal is read. The record is hexadecimal text.
[[nodiscard]] std::string CardRead(int pn, const std::string& record);

// There is no card in that terminal.
[[nodiscard]] std::string NoCard(int pn);

// A mobile terminal on COM `pn` is identified; its stored record is read and erased.
[[nodiscard]] std::string MobileIdentification(int pn);
[[nodiscard]] std::string MobileRead(int pn, const std::string& record);

// KVK of Änne Göröl, template 60.
extern const std::string AnnesCard;
// KVK record of Dr. Jörg-Peter von Überberg, template 6081, with the mobile terminal's supplement.
extern const std::string JoergsRecord;

}  // namespace kartocheck::test::practice
