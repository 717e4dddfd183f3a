#include "support/gzip_data.h"

#include <stdexcept>
#include <zlib.h>

namespace kartocheck::test {

QByteArray Gzip(const QByteArray& bytes) {
  constexpr int GzipWindow = 15 + 16;
  z_stream stream{};
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, GzipWindow, 8, Z_DEFAULT_STRATEGY) !=
      Z_OK) {
    throw std::runtime_error("deflateInit2");
  }
  QByteArray source = bytes;
  QByteArray out(static_cast<qsizetype>(deflateBound(&stream, static_cast<uLong>(source.size()))),
                 Qt::Uninitialized);
  stream.next_in = reinterpret_cast<Bytef*>(source.data());
  stream.avail_in = static_cast<uInt>(source.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  const int result = deflate(&stream, Z_FINISH);
  out.truncate(static_cast<qsizetype>(stream.total_out));
  deflateEnd(&stream);
  if (result != Z_STREAM_END) throw std::runtime_error("deflate");
  return out;
}

}  // namespace kartocheck::test
