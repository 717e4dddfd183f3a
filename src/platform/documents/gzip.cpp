#include "platform/documents/gzip.h"

#include <QFile>

#include <optional>
#include <zlib.h>

#include "platform/documents/c_handle.h"
#include "platform/documents/scratch_file.h"
#include "platform/memory_file.h"

namespace kartocheck {

namespace {

using GzipFile = CHandle<gzclose>;

GzipFile OpenInMemory(QByteArrayView compressed) {
  const std::optional<int> descriptor = OpenMemoryFile(compressed);
  if (!descriptor) return nullptr;
  GzipFile file(gzdopen(*descriptor, "rb"));
  if (!file) CloseMemoryFile(*descriptor);
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
  if (storage == GunzipStorage::MemoryFile) {
    if (const GzipFile file = OpenInMemory(compressed)) return ReadAll(file, limits);
  }
  const ScratchFile scratch(compressed);
  if (scratch.Path().isEmpty()) return {};
  // Declared behind the scratch file, so closed before that is removed.
  const GzipFile file(gzopen(QFile::encodeName(scratch.Path()).constData(), "rb"));
  return file ? ReadAll(file, limits) : Gunzipped{};
}

}  // namespace kartocheck
