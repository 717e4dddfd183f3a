#include "platform/documents/gzip.h"

#include <optional>
#include <zlib.h>

#include "platform/documents/c_handle.h"
#include "platform/documents/scratch_file.h"
#include "platform/private_file.h"

namespace kartocheck {

namespace {

using GzipFile = CHandle<gzclose>;

// Takes the descriptor over. By a descriptor, since zlib takes names in the system's 8-bit code
// only.
GzipFile GzipFileOf(std::optional<int> descriptor) {
  if (!descriptor) return nullptr;
  GzipFile file(gzdopen(*descriptor, "rb"));
  if (!file) CloseDescriptor(*descriptor);
  return file;
}

Gunzipped ReadAll(const GzipFile& file, const GunzipLimits& limits) {
  QByteArray bytes;
  while (bytes.size() < limits.cap) {
    const qsizetype total = bytes.size();
    bytes.resize(total + limits.pieceSize);
    const int count =
        gzread(file.get(), bytes.data() + total, static_cast<unsigned>(limits.pieceSize));
    if (count < 0) return {.outcome = GunzipOutcome::Failed, .bytes = {}};
    bytes.truncate(total + count);
    if (count < limits.pieceSize) break;
  }
  if (bytes.size() >= limits.cap) return {.outcome = GunzipOutcome::TooLong, .bytes = {}};
  return {.outcome = GunzipOutcome::Complete, .bytes = bytes};
}

}  // namespace

Gunzipped Gunzip(QByteArrayView compressed, const GunzipLimits& limits, GunzipStorage storage) {
  if (storage == GunzipStorage::PrivateFile) {
    PrivateFile stored(compressed);
    // Declared behind the stored bytes, so closed before those end.
    if (const GzipFile file = GzipFileOf(stored.TakeDescriptor())) return ReadAll(file, limits);
  }
  const ScratchFile scratch(compressed);
  if (scratch.Path().isEmpty()) return {};
  // Declared behind the scratch file, so closed before that is removed.
  const GzipFile file = GzipFileOf(OpenForReading(scratch.Path()));
  return file ? ReadAll(file, limits) : Gunzipped{};
}

}  // namespace kartocheck
