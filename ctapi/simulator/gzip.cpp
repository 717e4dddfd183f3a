#include "simulator/gzip.h"

#include <new>
#include <zlib.h>

namespace ctapi {

Bytes Gzip(ByteView bytes) {
  // zlib's way to ask for a gzip wrapper: 16 more than the window's size in bits.
  constexpr int GzipWindow = MAX_WBITS + 16;
  constexpr int DefaultMemory = 8;
  constexpr uLong WrapperLength = 18;

  z_stream stream{};
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, GzipWindow, DefaultMemory,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::bad_alloc();
  }
  Bytes compressed(deflateBound(&stream, static_cast<uLong>(bytes.size())) + WrapperLength);
  stream.next_in = const_cast<Bytef*>(bytes.data());  // zlib does not write to its input
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = compressed.data();
  stream.avail_out = static_cast<uInt>(compressed.size());
  // The bound leaves room for everything, so that one call ends the stream.
  deflate(&stream, Z_FINISH);
  compressed.resize(stream.total_out);
  deflateEnd(&stream);
  return compressed;
}

}  // namespace ctapi
