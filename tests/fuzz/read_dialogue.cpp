#include "app/bas_mkt_test.h"
#include "fuzz/answer_source.h"
#include "fuzz/fuzz_input.h"
#include "platform/simulated/serial_port_simulated.h"
#include "ui/main_window/port_flow.h"
#include "ui/main_window/view_state.h"

// What the user begins with one port, from the button to the end: check, identification, status
// check, prompts, read, erase. Input: a byte that chooses port and action, two bytes with the
// answers to 16 questions, one bit each (later questions are answered No or Cancel), then the
// terminal's answers. What is left of them goes to a second run on the same port.

namespace kartocheck {
namespace {

// The user's answers.
class AnswerBits final : public Dialogs {
 public:
  explicit AnswerBits(unsigned bits) : bits_(bits) {}

  void Tell(Icon /*icon*/, const QString& /*title*/, const QString& text) override {
    fuzz::Require(!text.isEmpty(), "a message says something");
  }
  [[nodiscard]] Answer Ask(const Question& question) override {
    fuzz::Require(!question.text.isEmpty(), "a question asks something");
    const bool agrees = (bits_ & 1U) != 0;
    bits_ >>= 1U;
    if (question.buttons == Buttons::YesNo) return agrees ? Answer::Yes : Answer::No;
    return agrees ? Answer::Ok : Answer::Cancel;
  }

 private:
  unsigned bits_;
};

class LastText final : public Display {
 public:
  void ShowStatusText(const QString& text) override { last = text; }
  QString last;
};

// Serial ports at which a device drives the line and answers the probe.
ctapi::SimulatedPractice Lines() {
  ctapi::SimulatedPractice practice;
  const ctapi::SerialLine line{.Signal = true, .Answer = ctapi::SerialLine::Probe::Right};
  for (std::uint16_t pn = 1; pn <= 4; ++pn) practice.Attach(pn, {.Line = line});
  return practice;
}

class Run {
 public:
  Run(fuzz::ByteSource& source, unsigned answers) : dialogs_(answers), api_(source) {}

  void Do(unsigned action, Port port) {
    view_.progress.Set(0);
    flow_.Choose(port);
    switch (action % 3) {
      case 0:
        flow_.Read(port);
        break;
      case 1:
        flow_.Scan(port);
        break;
      default:
        // The questions of the diagnosis are about a serial cable.
        port.IsTested() ? flow_.Diagnose(port) : flow_.Read(port);
        break;
    }
    ExpectAnEnd(port);
  }

 private:
  void ExpectAnEnd(Port port) {
    fuzz::Require(!module_.IsLinkOpen(), "the link is closed");
    fuzz::Require(api_.opens == api_.closes, "every open is closed");
    for (const Lamp lamp : {Lamp::Card, Lamp::Terminal}) {
      fuzz::Require(module_.LinkLamps()[lamp].Value() == LampState::Off, "the lamps are off");
    }
    fuzz::Require(!display_.last.trimmed().isEmpty(), "the status text tells something");
    const TerminalInfo& info = module_.TerminalOf(port.Slot());
    const bool hasData =
        !module_.InsuredOf(port.Slot()).IsEmpty() || module_.EgkOf(port.Slot()).HoldsData();
    fuzz::Require(info.DataRead == hasData, "DataRead tells of data");
    fuzz::Require(!info.EgkData || info.DataRead, "EgkData tells of data");
    fuzz::Require(info.Answered || !info.DataRead, "data come from a terminal that answers");
  }

  ctapi::SimulatedPractice practice_ = Lines();
  SerialPortSimulated serial_{practice_};
  PortDirectorySimulated directory_{practice_};
  AnswerBits dialogs_;
  LastText display_;
  fuzz::QuietEventLoop eventLoop_;
  fuzz::AnswerSource api_;
  Bas_MKT_Test module_{{.api = api_,
                        .dialogs = dialogs_,
                        .display = display_,
                        .eventLoop = eventLoop_,
                        .serial = serial_,
                        .directory = directory_,
                        .terminate = [](const auto&) { throw fuzz::Terminated{}; }}};
  ViewState view_;
  PortFlow flow_{module_, display_, view_};
};

void RunTwice(fuzz::ByteSource& source) {
  const std::uint8_t choice = source.Byte();
  const unsigned low = source.Byte();
  const unsigned answers = low | static_cast<unsigned>(source.Byte()) << 8U;
  const Port port(fuzz::PortNumber(choice));
  Run run(source, answers);
  try {
    run.Do(choice >> 3U, port);
    run.Do(choice >> 5U, port);
  } catch (const fuzz::Terminated&) {
    // The library was found unusable: the program has ended.
  }
}

}  // namespace
}  // namespace kartocheck

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kartocheck::fuzz::ByteSource source(data, size);
  kartocheck::RunTwice(source);
  return 0;
}
