#include "kvk/noted_egk_readers.h"

namespace kartocheck {

namespace {

EgkResult Note(const char* reader, const EgkTarget& target) {
  using Readers = test::NotedEgkReaders;
  Readers::calls.emplace_back(reader);
  return Readers::read ? Readers::read(target) : EgkResult::Stopped;
}

}  // namespace

EgkResult ReadEgkFromCard(const EgkTarget& target) {
  return Note("card", target);
}

EgkResult ReadEgkFromMobile(const EgkTarget& target) {
  return Note("mobile", target);
}

}  // namespace kartocheck
