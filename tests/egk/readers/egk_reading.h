#pragma once

#include <initializer_list>
#include <vector>

#include "egk/egk_reader.h"
#include "kvk/read_dispatcher.h"
#include "support/insured_printing.h"
#include "support/link_fixture.h"
#include "support/printing.h"

namespace kartocheck::test {

// Title of every box of the readers.
inline constexpr QStringView BoxTitle = u" KartoCheck ";

// The texts of a list.
[[nodiscard]] std::vector<QString> Texts(std::initializer_list<QStringView> texts);

// What the sample documents are mapped onto; left empty: a document that was not read.
[[nodiscard]] InsuredData SampleElements(bool withPd = true, bool withVd = true);

// Every text that a slot keeps of an eGK, and of its insured person.
[[nodiscard]] std::vector<QString> AllTexts(const InsuredData& insured, const EgkData& egk);

// A slot, a link and a front end for one read over a library.
class EgkReading {
 public:
  explicit EgkReading(CtApi& api);

  // The readers themselves.
  EgkResult FromCard() { return ReadEgkFromCard(Target()); }
  EgkResult FromMobile() { return ReadEgkFromMobile(Target()); }
  // The whole read, on port 1.
  ReadOutcome Dispatched();

  [[nodiscard]] EgkTarget Target();
  [[nodiscard]] std::vector<QString> Boxes() const { return link.dialogs.Texts(); }
  // All boxes bear the title, and all but those of the list are information boxes.
  void ExpectInformationBoxes(const std::vector<QString>& critical = {}) const;
  [[nodiscard]] const VsdDocument& Document(VsdKind kind) const { return egk.documents[kind]; }

  // Fills the slot with the data of another person.
  void FillWithAnotherPerson();
  // Nothing of that person is left.
  void ExpectNothingOfAnotherPerson() const;

  Link link;
  TerminalInfo info;
  InsuredData insured;
  EgkData egk;
  ValidationSettings validation;
};

}  // namespace kartocheck::test
