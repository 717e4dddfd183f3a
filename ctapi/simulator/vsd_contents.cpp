#include "simulator/vsd_contents.h"

#include <stdexcept>

namespace ctapi {

namespace {

constexpr std::size_t SizeOfPd = 850;
constexpr std::size_t SizeOfVd = 1250;
constexpr std::size_t SizeOfGvd = 600;
constexpr std::size_t OffsetsOfVd = 8;
constexpr std::size_t LargestNumber = 0xFFFF;

constexpr std::size_t TimestampLength = 14;
constexpr std::size_t VersionLength = 5;
constexpr std::size_t ReservedLength = 5;

Bytes Padded(Bytes file, Padding fill, std::size_t size) {
  if (fill == Padding::None) return file;
  if (file.size() > size) {
    throw std::invalid_argument("the data are larger than their file of " + std::to_string(size) +
                                " bytes");
  }
  file.resize(size, 0x00);
  return file;
}

// A file that opens with the length of its only block.
Bytes WithLength(const std::optional<Bytes>& block, Padding fill, std::size_t size) {
  const Bytes content = block.value_or(Bytes{});
  if (content.size() > LargestNumber) throw std::invalid_argument("the block is too long");
  Bytes file;
  AppendBigEndian(file, content.size());
  Append(file, content);
  return Padded(std::move(file), fill, size);
}

// The offsets of the first and the last byte of a block.
void AppendOffsets(Bytes& file, std::size_t start, std::size_t length) {
  const std::size_t last = start + length - 1;
  if (last > LargestNumber) throw std::invalid_argument("the blocks are too long for EF.VD");
  AppendBigEndian(file, start);
  AppendBigEndian(file, last);
}

}  // namespace

bool VsdContents::GvdInContainer() const {
  return Gvd && (Place == GvdPlace::Container || Place == GvdPlace::Both);
}

bool VsdContents::GvdInFile() const {
  return Gvd && (Place == GvdPlace::File || Place == GvdPlace::Both);
}

Bytes BuildEfPd(const VsdContents& contents) {
  if (contents.EfPd) return *contents.EfPd;
  return WithLength(contents.Pd, contents.Fill, SizeOfPd);
}

Bytes BuildEfVd(const VsdContents& contents) {
  if (contents.EfVd) return *contents.EfVd;
  const Bytes vd = contents.Vd.value_or(Bytes{});
  Bytes file;
  if (vd.empty()) {
    file.resize(4, 0x00);
  } else {
    AppendOffsets(file, OffsetsOfVd, vd.size());
  }
  if (contents.GvdInContainer() && !contents.Gvd->empty()) {
    AppendOffsets(file, OffsetsOfVd + vd.size(), contents.Gvd->size());
    Append(file, vd);
    Append(file, *contents.Gvd);
  } else {
    file.resize(OffsetsOfVd, contents.Missing == NoGvdOffsets::Zero ? 0x00 : 0xFF);
    Append(file, vd);
  }
  return Padded(std::move(file), contents.Fill, SizeOfVd);
}

Bytes BuildEfGvd(const VsdContents& contents) {
  if (contents.EfGvd) return *contents.EfGvd;
  return WithLength(contents.Gvd, contents.Fill, SizeOfGvd);
}

Bytes BuildEfStatusVd(const VsdContents& contents) {
  return contents.EfStatusVd ? *contents.EfStatusVd : BuildStatus(contents.Status);
}

Bytes BuildStatus(const VsdStatus& status) {
  if (status.Timestamp.size() != TimestampLength || status.Version.size() != VersionLength ||
      status.Reserved.size() != ReservedLength) {
    throw std::invalid_argument(
        "the status needs a timestamp of 14 digits, a version and a reserved part of 5 bytes each");
  }
  Bytes bytes{static_cast<std::uint8_t>(status.Transaction)};
  Append(bytes, status.Timestamp);
  Append(bytes, status.Version);
  Append(bytes, status.Reserved);
  return bytes;
}

}  // namespace ctapi
