#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace kartocheck {

// Bytes of output; a text of `cap` bytes is one too many already.
struct GunzipLimits {
  int pieceSize;  // per read; a shorter one ends the reading
  int cap;
};

enum class GunzipOutcome {
  Complete,
  Failed,   // damaged (checksum, length, body), or the compressed bytes could not be stored
  TooLong,  // the cap was reached
};

struct Gunzipped {
  GunzipOutcome outcome = GunzipOutcome::Failed;
  QByteArray bytes;  // empty unless complete
};

// zlib's gzip interface reads files only.
enum class GunzipStorage {
  PrivateFile,       // a file that ends with the program; where the system has none, as below
  PrivateDirectory,  // "Daten.xml.gz" in a directory that only this user may enter
};

// Inflates as zlib's gzip file interface does: members are joined, bytes behind the last member are
// ignored, a member that is cut off delivers what came before the cut, and what is not gzip data is
// delivered as it is. No file is left behind.
[[nodiscard]] Gunzipped Gunzip(QByteArrayView compressed, const GunzipLimits& limits,
                               GunzipStorage storage = GunzipStorage::PrivateFile);

}  // namespace kartocheck
