#pragma once

#include <QByteArray>

namespace kartocheck::test {

// One gzip member as cards hold it: header 1F 8B 08 00 with any time and system byte.
[[nodiscard]] QByteArray Gzip(const QByteArray& bytes);

}  // namespace kartocheck::test
