#include "simulator/scenario.h"

#include <algorithm>
#include <cctype>

#include "protocol/port_number.h"
#include "simulator/scenario_cards.h"
#include "simulator/scenario_reader.h"

namespace ctapi {

namespace {

std::int8_t ReadCode(const ScenarioValue& value) {
  return static_cast<std::int8_t>(value.Number(INT8_MIN, INT8_MAX));
}

std::int32_t ReadBaud(const ScenarioValue& value) {
  return static_cast<std::int32_t>(value.Number(1, INT32_MAX));
}

StatusWord ReadStatusWord(const ScenarioValue& value) {
  return value.StatusWord();
}

// A text of at most so many ASCII characters: GET STATUS tells nothing else.
auto AsciiText(std::size_t width) {
  return [width](const ScenarioValue& value) {
    std::string text = value.Text();
    const bool ascii = text.find_first_not_of(
                           " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`"
                           "abcdefghijklmnopqrstuvwxyz{|}~") == std::string::npos;
    if (text.size() > width || !ascii) {
      value.Refuse("expected at most " + std::to_string(width) + " ASCII characters");
    }
    return text;
  };
}

UsbQuery ReadUsb(const ScenarioValue& value) {
  return value.OneOf<UsbQuery>("USB answer", {{"unknown", UsbQuery::Unknown},
                                              {"otherDevice", UsbQuery::OtherDevice},
                                              {"virtualCom", UsbQuery::VirtualCom}});
}

TerminalProfile ReadProfile(ScenarioObject& object) {
  const ScenarioValue family = object.Get("family");
  auto profile = ProfileOf(family.Text());
  if (!profile) family.Refuse("unknown family '" + family.Text() + "'");

  object.Take("functionalUnits", profile->FunctionalUnits, ReadStatusWord);
  object.Take("reset", profile->Reset, ReadStatusWord);
  object.Take("usb", profile->Usb, ReadUsb);
  object.Take("refusesSelect", profile->RefusesSelect,
              [](const ScenarioValue& value) { return value.Flag(); });
  object.Take("manufacturerAnswer", profile->ManufacturerAnswer,
              [](const ScenarioValue& value) { return value.Hex(); });

  Manufacturer maker = profile->Maker.value_or(Manufacturer{});
  bool named = profile->Maker.has_value();
  const auto take = [&](std::string_view key, std::string& target, std::size_t width) {
    if (const auto value = object.Find(key)) {
      target = AsciiText(width)(*value);
      named = true;
    }
  };
  take("maker", maker.Maker, 5);
  take("productCode", maker.ProductCode, 5);
  take("version", maker.Version, 5);
  take("handheldVersion", maker.HandheldVersion, 9);
  if (named) profile->Maker = std::move(maker);
  return *std::move(profile);
}

TerminalState ReadState(ScenarioObject& object) {
  TerminalState state;
  object.Take("outputMedium", state.Medium, [](const ScenarioValue& value) {
    return value.OneOf<OutputMedium>(
        "output medium",
        {{"pc", OutputMedium::Pc}, {"displayPrinter", OutputMedium::DisplayPrinter}});
  });
  object.Take("condition", state.Mode, [](const ScenarioValue& value) {
    return value.OneOf<Condition>("condition", {{"ready", Condition::Ready},
                                                {"menuActive", Condition::MenuActive},
                                                {"locked", Condition::Locked},
                                                {"lockedSilently", Condition::LockedSilently}});
  });
  object.Take("release", state.HealthCard, [](const ScenarioValue& value) {
    return value.OneOf<Release>("release", {{"released", Release::Released},
                                            {"notReleased", Release::NotReleased},
                                            {"notInserted", Release::NotInserted}});
  });
  return state;
}

SimulatedTerminal ReadTerminal(const ScenarioValue& value) {
  ScenarioObject object = value.Object();
  TerminalProfile profile = ReadProfile(object);
  SimulatedTerminal terminal(std::move(profile), ReadState(object));
  if (const auto card = object.Find("card")) terminal.Insert(ReadCard(*card));
  if (const auto records = object.Find("records")) {
    const bool extended = terminal.Profile().KeepsExtendedRecords();
    for (const ScenarioValue& record : records->List()) {
      terminal.Store(ReadRecord(record, extended));
    }
  }
  object.Finish();
  return terminal;
}

SerialLine ReadLine(const ScenarioValue& value, SerialLine line) {
  ScenarioObject object = value.Object();
  object.Take("state", line.Port, [](const ScenarioValue& state) {
    return state.OneOf<SerialLine::State>("state", {{"present", SerialLine::State::Present},
                                                    {"absent", SerialLine::State::Absent},
                                                    {"inUse", SerialLine::State::InUse},
                                                    {"failing", SerialLine::State::Failing}});
  });
  object.Take("signal", line.Signal, [](const ScenarioValue& flag) { return flag.Flag(); });
  object.Take("probe", line.Answer, [](const ScenarioValue& probe) {
    return probe.OneOf<SerialLine::Probe>("probe answer",
                                          {{"silent", SerialLine::Probe::Silent},
                                           {"right", SerialLine::Probe::Right},
                                           {"fifthByte", SerialLine::Probe::FifthByte},
                                           {"garbage", SerialLine::Probe::Garbage}});
  });
  object.Take("baud", line.Baud, ReadBaud);
  object.Finish();
  return line;
}

// What the exchange gives instead: exactly one of the keys.
std::variant<std::int8_t, Bytes> ReadFaultResult(ScenarioObject& object) {
  const auto codeValue = object.Find("code");
  const auto statusWord = object.Find("statusWord");
  const auto response = object.Find("response");
  const auto garbage = object.Find("garbage");
  if (int{codeValue.has_value()} + int{statusWord.has_value()} + int{response.has_value()} +
          int{garbage.has_value()} !=
      1) {
    object.Refuse("one of the keys 'code', 'statusWord', 'response' and 'garbage' is needed");
  }
  if (codeValue) {
    const std::int8_t number = ReadCode(*codeValue);
    if (number == code::Success) codeValue->Refuse("a fault needs a code other than 0");
    return number;
  }
  if (statusWord) return Answer(statusWord->StatusWord());
  if (response) return response->Hex();
  constexpr std::int64_t LongestResponse = 4098;
  const auto length = static_cast<std::size_t>(garbage->Number(0, LongestResponse));
  return GarbageOf(length, static_cast<std::uint32_t>(length));
}

ScriptedFault ReadFault(const ScenarioValue& value) {
  ScenarioObject object = value.Object();
  ScriptedFault fault;
  object.Take("command", fault.CommandPrefix,
              [](const ScenarioValue& prefix) { return prefix.Hex(); });
  object.Take("exchange", fault.Exchange, [](const ScenarioValue& number) {
    return static_cast<unsigned>(number.Number(0, INT32_MAX));
  });
  object.Take("carriedOut", fault.CarriedOut,
              [](const ScenarioValue& flag) { return flag.Flag(); });
  fault.Result = ReadFaultResult(object);
  object.Finish();
  return fault;
}

SimulatedPort ReadPort(ScenarioObject& object) {
  SimulatedPort port;
  if (const auto terminal = object.Find("terminal")) port.Terminal = ReadTerminal(*terminal);
  object.Take("initCode", port.InitCode, ReadCode);
  object.Take("closeCode", port.CloseCode, ReadCode);
  object.Take("baudCode", port.BaudCode, ReadCode);
  object.Take("baud", port.Baud, ReadBaud);
  object.Take("delay", port.Delay, [](const ScenarioValue& value) {
    constexpr std::int64_t LongestDelay = 60'000;
    return std::chrono::milliseconds(value.Number(0, LongestDelay));
  });
  object.Take("deviceId", port.DeviceId, [](const ScenarioValue& value) { return value.Text(); });
  if (const auto line = object.Find("line")) port.Line = ReadLine(*line, port.EffectiveLine());
  if (const auto faults = object.Find("faults")) {
    for (const ScenarioValue& fault : faults->List()) port.Faults.push_back(ReadFault(fault));
  }
  object.Finish();
  return port;
}

std::uint16_t ReadPortNumber(const ScenarioValue& value) {
  const auto number = static_cast<int>(value.Number(ComPorts.First, UsbPorts.Last));
  if (KindOfPort(number) == PortKind::Other) {
    value.Refuse("expected 1 to 256 for a serial port or 8192 to 8447 for a USB device");
  }
  return static_cast<std::uint16_t>(number);
}

SimulatedPractice ReadPractice(const ScenarioValue& value) {
  ScenarioObject root = value.Object();
  if (const auto description = root.Find("description")) (void)description->Text();
  SimulatedPractice practice;
  for (const ScenarioValue& entry : root.Get("ports").List()) {
    ScenarioObject object = entry.Object();
    const ScenarioValue number = object.Get("port");
    const std::uint16_t pn = ReadPortNumber(number);
    if (practice.PortAt(pn) != nullptr) {
      number.Refuse("the port " + std::to_string(pn) + " is described twice");
    }
    practice.Attach(pn, ReadPort(object));
  }
  root.Finish();
  return practice;
}

// Keys and file names of a scenario may hold anything; the reason is shown on a terminal.
std::string WithoutControls(std::string text) {
  std::replace_if(
      text.begin(), text.end(),
      [](unsigned char character) { return std::iscntrl(character) != 0; }, '?');
  return text;
}

}  // namespace

SimulatedPractice LoadScenario(const std::filesystem::path& file) {
  try {
    const nlohmann::json json = ParseJsonFile(file);
    const ScenarioFolder folder{file.parent_path()};
    return ReadPractice(ScenarioValue(json, "", folder));
  } catch (const ScenarioError& error) {
    throw ScenarioError(file.string() + ": " + WithoutControls(error.what()));
  }
}

}  // namespace ctapi
