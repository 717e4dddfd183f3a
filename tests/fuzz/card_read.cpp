#include "fuzz/answer_source.h"
#include "fuzz/fuzz_input.h"
#include "kvk/read_dispatcher.h"

// Input: a byte of flags (1 mobile terminal, 2 with extended records, 4 refused the select, 8 of
// the second maker, 10 the user agrees to everything), a byte that chooses the port number, then
// the terminal's answers.

namespace kartocheck {
namespace {

void ReadOnce(fuzz::ByteSource& source) {
  const std::uint8_t flags = source.Byte();
  const int pn = fuzz::PortNumber(source.Byte());
  fuzz::FuzzedLink link(source, (flags & 0x10) != 0);
  TerminalInfo info;
  info.Reset95 = (flags & 1) != 0;
  info.Reset9501 = (flags & 2) != 0;
  info.SelectRefused = (flags & 4) != 0;
  if ((flags & 8) != 0) info.ManufacturerId = MakerNorvaHandheld;
  InsuredData insured;
  insured[Element::LastName] = QStringLiteral("earlier person");
  EgkData egk;
  const ValidationSettings validation;
  ReadOutcome outcome = ReadOutcome::Failed;
  try {
    outcome = ReadCardData({link.session, Port(pn), info, insured, egk, validation, link.dialogs,
                            link.display, link.eventLoop});
  } catch (const fuzz::Terminated&) {
    return;
  }
  fuzz::Require(outcome != ReadOutcome::TryAgain || link.dialogs.questions > 0,
                "another try was asked for");
  fuzz::Require(link.api.opens == 1 && link.api.closes == 1, "the link is opened and closed once");
  fuzz::Require(!link.session.IsOpen(), "the link is closed");
  fuzz::Require(insured[Element::LastName] != u"earlier person", "nothing of before is left");
  const bool isDone = outcome == ReadOutcome::Done;
  const bool isEmpty = insured.IsEmpty() && egk.IsEmpty();
  fuzz::Require(isDone || isEmpty, "a failed read leaves nothing");
  const bool hasData = !insured.IsEmpty() || egk.HoldsData();
  fuzz::Require(info.DataRead == (isDone && hasData), "DataRead tells of data");
  fuzz::Require(!info.EgkData || info.DataRead, "EgkData tells of data");
}

}  // namespace
}  // namespace kartocheck

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kartocheck::fuzz::ByteSource source(data, size);
  kartocheck::ReadOnce(source);
  return 0;
}
