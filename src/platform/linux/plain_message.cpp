#include "platform/plain_message.h"

#include <iostream>

namespace kartocheck {

void TellPlainly(StandardStream stream, const QString& text) {
  (stream == StandardStream::Error ? std::cerr : std::cout) << text.toStdString() << '\n';
}

}  // namespace kartocheck
