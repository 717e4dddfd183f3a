#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "kvk/read_dispatcher.h"
#include "support/fake_dialogs.h"
#include "support/link_fixture.h"

namespace kartocheck::test {

// What identification and status check have told of the terminal.
struct KnownTerminal {
  bool mobile = false;
  bool reset9501 = false;
  bool selectRefused = false;
  QStringView manufacturerId = u"DENRV";
};

// A slot that still holds an earlier person's data, eGK data at that, and a link to read it anew.
class SlotReading {
 public:
  SlotReading(CtApi& api, const KnownTerminal& terminal, int pn = 1);

  ReadOutcome Read();

  // Fails unless the slot is empty and says so.
  void ExpectEmptySlot() const;

  int pn;
  TerminalInfo info;
  InsuredData insured;
  EgkData egk;
  ValidationSettings validation;
  Link link;
};

[[nodiscard]] ShownBox Message(Icon icon, const QString& text);
// A Yes/No box.
[[nodiscard]] ShownBox YesNo(Icon icon, const QString& text, Answer preselected = Answer::Yes);

struct DispatcherRow {
  const char* sentence;
  KnownTerminal terminal{};
  std::string script;  // the whole dialogue
  std::vector<Answer> answers{};
  std::vector<ShownBox> boxes{};
  ReadOutcome result = ReadOutcome::Done;
  QStringView insurer{};  // of the data read; none: the slot must be empty
  std::optional<QStringView> model{};
  std::optional<QStringView> displayText{};
  int pn = 1;

  friend std::ostream& operator<<(std::ostream& out, const DispatcherRow& row) {
    return out << row.sentence;
  }
};

// A whole dialogue around what comes between the card request and the closing reset: with a memory
// card in a stationary terminal, with a record in a mobile one.
[[nodiscard]] std::string CardDialogue(const std::string& middle, int pn = 1);
[[nodiscard]] std::string StoredDialogue(const std::string& middle);

// Replays the row's dialogue and compares all that it tells.
void ExpectOutcome(const DispatcherRow& row);

class DispatcherTest : public testing::TestWithParam<DispatcherRow> {};

}  // namespace kartocheck::test
