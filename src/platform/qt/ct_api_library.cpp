#include "platform/qt/ct_api_library.h"

#include <algorithm>
#include <utility>

#include "platform/qt/helper_process.h"
#include "protocol/return_code.h"

namespace kartocheck {

namespace {

using ctapi::helper::LoadTrouble;
using ctapi::helper::Message;
using ctapi::helper::MessageKind;

constexpr std::uint16_t LongestName = 1024;  // bytes; readers have names of at most 128
// What a library knows of its ports it tells without asking a terminal.
constexpr std::chrono::seconds LongestTelling{2};

LibraryFaultKind KindOf(std::uint8_t trouble) {
  switch (static_cast<LoadTrouble>(trouble)) {
    case LoadTrouble::FileMissing:
      return LibraryFaultKind::FileMissing;
    case LoadTrouble::DependencyMissing:
      return LibraryFaultKind::DependencyMissing;
    case LoadTrouble::NotALibrary:
      return LibraryFaultKind::NotALibrary;
    case LoadTrouble::WrongWordSize:
      return LibraryFaultKind::WrongWordSize;
    case LoadTrouble::Other:
      break;
  }
  return LibraryFaultKind::NotLoadable;
}

// A newer library may know troubles that this program has no words for.
ctapi::PortTroubleKind TroubleOf(std::uint8_t number) {
  const auto kind = static_cast<ctapi::PortTroubleKind>(number);
  return kind <= ctapi::LastPortTrouble ? kind : ctapi::PortTroubleKind::None;
}

// True from its begin to its end, also where that is an exception.
class Flagged {
 public:
  explicit Flagged(bool& flag) : flag_(flag) { flag_ = true; }
  ~Flagged() { flag_ = false; }
  Flagged(const Flagged&) = delete;
  Flagged& operator=(const Flagged&) = delete;

 private:
  bool& flag_;
};

}  // namespace

CtApiLibrary::CtApiLibrary(QString helper, QStringList candidates, PendingCall& pending)
    : program_(std::move(helper)), candidates_(std::move(candidates)), pending_(pending) {}

CtApiLibrary::~CtApiLibrary() = default;

void CtApiLibrary::Fail(const Message& answer) {
  std::string detail(answer.Text());
  switch (answer.Kind) {
    case MessageKind::NotLoadable:
      throw LibraryNotFound({KindOf(answer.Trouble), std::move(detail)});
    case MessageKind::EntryPointMissing:
      throw LibraryUnusable({LibraryFaultKind::EntryPointMissing, std::move(detail)});
    case MessageKind::Overrun:
      throw LibraryUnusable({LibraryFaultKind::Overrun});
    case MessageKind::Threw:
      throw LibraryUnusable({LibraryFaultKind::Threw});
    default:
      throw LibraryUnusable({LibraryFaultKind::Garbled});
  }
}

void CtApiLibrary::StartHelper() {
  isLoaded_ = false;
  helper_ = std::make_unique<HelperProcess>(program_, candidates_);
}

void CtApiLibrary::BeginLoading() {
  if (helper_ != nullptr) return;
  try {
    StartHelper();
  } catch (const LibraryUnusable&) {
    // The first call tries again and tells.
  }
}

Message CtApiLibrary::GiveUp() {
  helper_->Kill();
  helper_.reset();
  isGivenUp_ = true;
  return {.Code = ctapi::code::HtsiError};
}

// False where that was given up.
bool CtApiLibrary::FinishLoading() {
  if (helper_ == nullptr) StartHelper();
  isGivenUp_ = false;
  const std::optional<Message> started = helper_->Receive(pending_);
  if (!started) return false;
  if (started->Kind != MessageKind::Loaded) Fail(*started);
  file_ = QString::fromStdString(std::string(started->Text()));
  isLoaded_ = true;
  return true;
}

Message CtApiLibrary::Call(const Message& call) {
  const bool opens = call.Kind == MessageKind::Init;
  if (isGivenUp_ && !opens) return {.Code = ctapi::code::HtsiError};
  const Flagged calling(isCalling_);
  try {
    if ((helper_ == nullptr || !isLoaded_) && !FinishLoading()) return GiveUp();
    helper_->Send(call);
    const std::optional<Message> answer = helper_->Receive(pending_);
    if (!answer) return GiveUp();
    if (answer->Kind != MessageKind::Returned) Fail(*answer);
    return *answer;
  } catch (const LibraryFailure&) {
    helper_.reset();
    throw;
  }
}

ctapi::PortInfo CtApiLibrary::InfoOf(int pn) {
  if (helper_ == nullptr || !isLoaded_ || isCalling_) return {};
  try {
    helper_->Send({.Kind = MessageKind::PortInfo,
                   .Pn = static_cast<std::uint16_t>(pn),
                   .Length = LongestName});
    const std::optional<Message> answer = helper_->Receive(LongestTelling);
    if (answer && answer->Kind == MessageKind::Returned) {
      if (answer->Code != ctapi::code::Success) return {};
      return {.Trouble = TroubleOf(answer->Trouble), .Name = std::string(answer->Text())};
    }
  } catch (const LibraryUnusable&) {
    // Told by the next open, which loads the library anew, if it happens there again.
  }
  (void)GiveUp();
  return {};
}

std::int8_t CtApiLibrary::Init(std::uint16_t ctn, std::uint16_t pn) {
  return Call({.Kind = MessageKind::Init, .Ctn = ctn, .Pn = pn}).Code;
}

std::int8_t CtApiLibrary::Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                               std::span<const std::uint8_t> command,
                               std::span<std::uint8_t> response, std::uint16_t& responseLength) {
  const Message answer = Call({.Kind = MessageKind::Data,
                               .Dad = dad,
                               .Sad = sad,
                               .Ctn = ctn,
                               .Length = static_cast<std::uint16_t>(response.size()),
                               .Payload = ctapi::Bytes(command.begin(), command.end())});
  dad = answer.Dad;
  sad = answer.Sad;
  responseLength = answer.Length;
  std::copy_n(answer.Payload.begin(), std::min(answer.Payload.size(), response.size()),
              response.begin());
  return answer.Code;
}

std::int8_t CtApiLibrary::Close(std::uint16_t ctn) {
  return Call({.Kind = MessageKind::Close, .Ctn = ctn}).Code;
}

std::int8_t CtApiLibrary::GetBaudrate(std::uint16_t ctn, std::int32_t& baud) {
  const Message answer = Call({.Kind = MessageKind::GetBaudrate, .Ctn = ctn, .Baud = baud});
  if (answer.Code == ctapi::code::Success) baud = answer.Baud;
  return answer.Code;
}

}  // namespace kartocheck
