#include "kvk/noted_egk_readers.h"

namespace kartocheck {

namespace {

std::int16_t Note(const char* reader, const EgkTarget& target) {
  using Readers = test::NotedEgkReaders;
  Readers::calls.emplace_back(reader);
  return Readers::read ? Readers::read(target) : std::int16_t{-1};
}

}  // namespace

std::int16_t ReadEgkFromCard(const EgkTarget& target) {
  return Note("card", target);
}

std::int16_t ReadEgkFromMobile(const EgkTarget& target) {
  return Note("mobile", target);
}

}  // namespace kartocheck
