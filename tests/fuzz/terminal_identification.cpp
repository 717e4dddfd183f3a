#include "discovery/terminal_identification.h"

#include "fuzz/answer_source.h"
#include "fuzz/fuzz_input.h"

// Input: a byte that chooses the port number, then the terminal's answers.

namespace kartocheck {
namespace {

void IdentifyOnce(fuzz::ByteSource& source) {
  const int pn = fuzz::PortNumber(source.Byte());
  fuzz::FuzzedLink link(source, false);
  TerminalInfo info;
  PortEntry port;
  try {
    fuzz::Require(link.session.CtOpen(Port(pn)) == ctapi::code::Success, "the port opens");
    (void)IdentifyTerminal(link.session, Port(pn), info, port);
    link.session.CtClose();
  } catch (const fuzz::Terminated&) {
    fuzz::Require(link.dialogs.messages == 1, "the program ends with one message");
    return;
  }
  fuzz::Require(link.dialogs.messages == 0 && link.dialogs.questions == 0,
                "identification shows no box");
  fuzz::Require(link.api.opens == 1 && link.api.closes == 1, "the link is left to the caller");
  fuzz::Require(!link.session.IsOpen(), "the link is closed");
  fuzz::Require(link.api.exchanges >= 1 && link.api.exchanges <= 4, "four exchanges at most");
  fuzz::Require(!info.Reset9501 || info.Reset95, "extended records are a mobile terminal's");
  fuzz::Require(info.Answered || (!info.Reset95 && !info.UsbVirtualCom),
                "nothing is told of a terminal that did not answer");
  fuzz::Require(!info.ModelName.IsBlank() || !info.Answered || Port(pn).Kind() != PortKind::Com,
                "a terminal on a serial port that answered has a name");
}

}  // namespace
}  // namespace kartocheck

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kartocheck::fuzz::ByteSource source(data, size);
  kartocheck::IdentifyOnce(source);
  return 0;
}
