#include "egk/egk_reader.h"

namespace kartocheck {

namespace {

std::int16_t TellUnavailable(const EgkTarget& target) {
  target.dialogs.Tell(
      Icon::Information, Dialogs::Title.toString(),
      QStringLiteral("Das Lesen der eGK ist in dieser Version noch nicht enthalten."));
  return -1;
}

}  // namespace

std::int16_t ReadEgkFromCard(const EgkTarget& target) {
  return TellUnavailable(target);
}

std::int16_t ReadEgkFromMobile(const EgkTarget& target) {
  return TellUnavailable(target);
}

}  // namespace kartocheck
