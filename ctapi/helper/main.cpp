// The program's helper: a process that holds the CT-API library, so that whatever the library does
// to itself stays here. Called with the candidates for the library, in the order of their rank.

#include <string>
#include <vector>

#include "helper/arguments.h"
#include "helper/channel.h"
#include "helper/library.h"
#include "helper/process.h"
#include "protocol/private_memory.h"

namespace ctapi::helper {
namespace {

Message Started(const Library& library) {
  return {.Kind = MessageKind::Loaded, .Payload = BytesOf(library.File())};
}

Message NotStarted(const LoadFailure& failure) {
  return {.Kind = MessageKind::NotLoadable,
          .Trouble = static_cast<std::uint8_t>(failure.Trouble),
          .Payload = BytesOf(failure.Detail)};
}

// Answers one call after the other until the program closes the channel.
void Serve(Library& library, Channel& channel) {
  const std::int64_t self = ProcessNumber();
  while (const auto call = channel.Receive()) {
    const Message answer = library.Answer(*call);
    // The program has one helper: the child of a library that forks is not to answer as well.
    if (ProcessNumber() != self) EndAtOnce();
    if (!channel.Send(answer) || answer.Kind != MessageKind::Returned) return;
  }
}

int Run(const std::vector<std::string>& candidates) {
  Channel channel;
  try {
    Library library(LoadFirst(candidates));
    if (channel.Send(Started(library))) Serve(library, channel);
  } catch (const LoadFailure& failure) {
    (void)channel.Send(NotStarted(failure));
  } catch (const MissingEntryPoint& missing) {
    (void)channel.Send({.Kind = MessageKind::EntryPointMissing, .Payload = BytesOf(missing.Name)});
  }
  return 0;
}

}  // namespace
}  // namespace ctapi::helper

int main(int argc, char** argv) {
  ctapi::KeepMemoryPrivate();
  ctapi::helper::BelongToProgram();
  return ctapi::helper::Run(ctapi::helper::Arguments(argc, argv));
}
