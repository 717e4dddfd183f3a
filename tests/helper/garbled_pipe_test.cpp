#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <random>

#include "helper/message.h"
#include "support/loaded_library.h"

// Anything in the pipes between the program and its helper: the program gets an answer or one of
// the reasons that it can tell, and the helper ends in order.

namespace kartocheck::test {
namespace {

using ctapi::Bytes;
using ctapi::helper::Decode;
using ctapi::helper::Encode;
using ctapi::helper::HeaderLength;
using ctapi::helper::Message;
using ctapi::helper::MessageKind;
using ctapi::helper::MissingBytes;

constexpr int Rounds = 60;
constexpr int PatienceMs = 20'000;

// Small enough for a pipe to hand them over at once.
constexpr unsigned LongestBytes = 3'000;

class Random {
 public:
  explicit Random(unsigned seed) : random_(seed) {}

  unsigned Below(unsigned bound) { return static_cast<unsigned>(random_() % bound); }
  Bytes AnyBytes(unsigned longest) {
    Bytes bytes(Below(longest + 1));
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(Below(256));
    return bytes;
  }
  Message AnyMessage(std::initializer_list<MessageKind> kinds) {
    return {.Kind = *(kinds.begin() + Below(static_cast<unsigned>(kinds.size()))),
            .Code = static_cast<std::int8_t>(Below(256)),
            .Dad = static_cast<std::uint8_t>(Below(4)),
            .Sad = static_cast<std::uint8_t>(Below(4)),
            .Trouble = static_cast<std::uint8_t>(Below(256)),
            .Ctn = static_cast<std::uint16_t>(Below(3)),
            .Pn = static_cast<std::uint16_t>(Below(3)),
            .Length = static_cast<std::uint16_t>(random_()),
            .Baud = static_cast<std::int32_t>(random_()),
            .Payload = AnyBytes(300)};
  }
  // A message of the helper, whole, damaged, cut off or with something behind it; or anything.
  Bytes AnyOutput() {
    Bytes bytes = Encode(AnyMessage({MessageKind::Loaded, MessageKind::NotLoadable,
                                     MessageKind::Returned, MessageKind::EntryPointMissing,
                                     MessageKind::Overrun, MessageKind::Threw, MessageKind::Data}));
    switch (Below(6)) {
      case 0:
        return AnyBytes(LongestBytes);
      case 1:
        bytes.resize(Below(static_cast<unsigned>(bytes.size())));
        return bytes;
      case 2:
        bytes[Below(HeaderLength)] = static_cast<std::uint8_t>(Below(256));
        return bytes;
      case 3: {
        const Bytes more = AnyBytes(30);
        bytes.insert(bytes.end(), more.begin(), more.end());
        return bytes;
      }
      default:
        return bytes;
    }
  }

 private:
  std::mt19937 random_;
};

QString FileWith(const QTemporaryDir& folder, const char* name, const Bytes& bytes) {
  QFile file(folder.filePath(QLatin1StringView(name)));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
  return file.fileName();
}

// What a call came to: its code, or why there is none.
struct Outcome {
  std::optional<int> code{};
  std::optional<LibraryFaultKind> fault{};

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

Outcome OutcomeOf(const std::function<std::int8_t()>& call) {
  try {
    return {.code = call()};
  } catch (const LibraryFailure& failure) {
    return {.fault = failure.Fault.Kind};
  }
}

// Data over a buffer that must not be written beyond.
std::int8_t Exchange(CtApi& library) {
  constexpr std::size_t Size = 16;
  constexpr std::uint8_t Untouched = 0xA5;
  constexpr std::array<std::uint8_t, 5> Command{0x20, 0x13, 0x00, 0x46, 0x00};
  std::array<std::uint8_t, 4096> room{};
  room.fill(Untouched);
  std::uint8_t dad = 1;
  std::uint8_t sad = 2;
  std::uint16_t length = 0;
  const std::int8_t code = library.Data(1, dad, sad, Command, std::span(room).first(Size), length);
  EXPECT_TRUE(std::all_of(room.begin() + Size, room.end(),
                          [](std::uint8_t byte) { return byte == Untouched; }));
  return code;
}

// The calls of the entry points, each of which may be the first one.
std::int8_t Call(CtApi& library, unsigned which) {
  std::int32_t baud = 0;
  switch (which % 4) {
    case 0:
      return library.Init(1, 1);
    case 1:
      return Exchange(library);
    case 2:
      return library.GetBaudrate(1, baud);
    default:
      return library.Close(1);
  }
}

// A shell script in place of the helper.
CtApiLibrary LibraryOf(const QString& script, PendingCall& pending) {
  (void)LoadedLibrary({});
  return {QStringLiteral("/bin/sh"), {QStringLiteral("-c"), script}, pending};
}

// What comes of a call when the helper says these bytes, and ends: awaited is the kind of message
// that the program waits for. Nothing where the message itself tells.
Outcome ExpectedOf(const Bytes& output, MessageKind awaited) {
  if (MissingBytes(output) > 0) return {.fault = LibraryFaultKind::EndedWithStatus};
  const auto message = Decode(output);
  if (!message) return {.fault = LibraryFaultKind::Garbled};
  switch (message->Kind) {
    case MessageKind::EntryPointMissing:
      return {.fault = LibraryFaultKind::EntryPointMissing};
    case MessageKind::Overrun:
      return {.fault = LibraryFaultKind::Overrun};
    case MessageKind::Threw:
      return {.fault = LibraryFaultKind::Threw};
    case MessageKind::NotLoadable:
      return {};
    default:
      break;
  }
  if (message->Kind != awaited) return {.fault = LibraryFaultKind::Garbled};
  if (awaited == MessageKind::Returned) return {.code = message->Code};
  // Ready, and gone at the first call.
  return {.fault = LibraryFaultKind::EndedWithStatus};
}

void ExpectOutcome(const Outcome& outcome, const Bytes& output, MessageKind awaited) {
  const Outcome expected = ExpectedOf(output, awaited);
  if (expected == Outcome()) {
    EXPECT_TRUE(outcome.fault.has_value());
    return;
  }
  EXPECT_EQ(outcome.code, expected.code);
  EXPECT_EQ(outcome.fault, expected.fault);
}

TEST(GarbledHelperTest, AnyBytesInsteadOfAStartAreAFaultOfTheLibrary) {
  const QTemporaryDir folder;
  for (unsigned seed = 1; seed <= Rounds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed);
    const Bytes output = random.AnyOutput();
    const QString file = FileWith(folder, "output", output);
    PendingCall pending;
    CtApiLibrary library = LibraryOf(u"exec cat '" + file + u'\'', pending);
    const Outcome outcome = OutcomeOf([&] { return Call(library, seed); });
    ExpectOutcome(outcome, output, MessageKind::Loaded);
    EXPECT_EQ(library.InfoOf(1).Name, std::string());
  }
}

TEST(GarbledHelperTest, AnyBytesInsteadOfAnAnswerAreAnAnswerOrAFault) {
  const QTemporaryDir folder;
  const QString start =
      FileWith(folder, "start",
               Encode({.Kind = MessageKind::Loaded, .Payload = ctapi::helper::BytesOf("library")}));
  for (unsigned seed = 1; seed <= Rounds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(1'000 + seed);
    const Bytes answer = random.AnyOutput();
    const QString file = FileWith(folder, "answer", answer);
    PendingCall pending;
    CtApiLibrary library = LibraryOf(
        u"cat '" + start + u"'; head -c 17 > /dev/null; exec cat '" + file + u'\'', pending);
    const Outcome outcome = OutcomeOf([&] { return Call(library, seed); });
    ExpectOutcome(outcome, answer, MessageKind::Returned);
    // The helper is gone; the next call says so or starts another one.
    (void)OutcomeOf([&] { return Call(library, seed + 1); });
  }
}

TEST(GarbledHelperTest, AMessageThatStopsInItsMiddleCanBeGivenUp) {
  PendingCall pending{std::chrono::milliseconds(50)};
  pending.Late().Watch([&](bool isLate) {
    if (isLate) pending.GiveUp();
  });
  CtApiLibrary library = LibraryOf(QStringLiteral("printf abc; exec sleep 100"), pending);
  EXPECT_EQ(library.Init(1, 1), -128);
}

// The built helper, with these bytes at its standard input.
class Helper {
 public:
  explicit Helper(const Bytes& input) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("KARTOCHECK_SCENARIO"), QStringLiteral(KVK_SCENARIO));
    process_.setProcessEnvironment(environment);
    (void)LoadedLibrary({});
    process_.start(HelperFile(), {QStringLiteral(SIMULATOR_LIBRARY)});
    process_.write(reinterpret_cast<const char*>(input.data()), static_cast<qint64>(input.size()));
    process_.closeWriteChannel();
    EXPECT_TRUE(process_.waitForFinished(PatienceMs));
  }

  void ExpectAnEndInOrder() const {
    EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process_.exitCode(), 0);
  }
  // Everything that it said. Nothing but whole messages is among it.
  std::vector<Message> Messages() {
    const QByteArray said = process_.readAllStandardOutput();
    Bytes rest(said.begin(), said.end());
    std::vector<Message> messages;
    while (!rest.empty()) {
      Bytes first;
      while (const std::size_t missing = MissingBytes(first)) {
        const std::size_t wanted = first.size() + missing;
        if (wanted > rest.size()) break;
        first.assign(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(wanted));
      }
      const auto message = Decode(first);
      EXPECT_TRUE(message.has_value());
      if (!message) break;
      messages.push_back(*message);
      rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(first.size()));
    }
    return messages;
  }

 private:
  QProcess process_;
};

TEST(GarbledCallTest, AnythingAtItsInputEndsTheHelperInOrder) {
  std::size_t answers = 0;
  for (unsigned seed = 1; seed <= Rounds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(2'000 + seed);
    Bytes input;
    const unsigned calls = random.Below(6);
    for (unsigned call = 0; call < calls; ++call) {
      const Bytes bytes = Encode(
          random.AnyMessage({MessageKind::Init, MessageKind::Init, MessageKind::Data,
                             MessageKind::Data, MessageKind::Close, MessageKind::GetBaudrate,
                             MessageKind::PortInfo, MessageKind::Loaded, MessageKind::Threw}));
      input.insert(input.end(), bytes.begin(), bytes.end());
    }
    // An unknown kind, so that this is no call however it goes on.
    Bytes garbage =
        seed % 2 == 0 ? Encode(random.AnyMessage({MessageKind::Init})) : random.AnyBytes(100);
    if (!garbage.empty()) garbage.front() = 0x40;
    input.insert(input.end(), garbage.begin(), garbage.end());

    Helper helper(input);
    helper.ExpectAnEndInOrder();
    const std::vector<Message> messages = helper.Messages();
    ASSERT_EQ(messages.size(), 1 + calls) << "a message at the start, and one a call";
    EXPECT_EQ(messages.front().Kind, MessageKind::Loaded);
    for (auto answer = messages.begin() + 1; answer != messages.end(); ++answer) {
      EXPECT_EQ(answer->Kind, MessageKind::Returned);
    }
    answers += messages.size() - 1;
  }
  EXPECT_GT(answers, std::size_t{Rounds});
}

}  // namespace
}  // namespace kartocheck::test
