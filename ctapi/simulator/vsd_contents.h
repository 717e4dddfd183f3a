#pragma once

#include <optional>
#include <string>

#include "simulator/bytes.h"

// The insured master data (VSD) as the files of the health-care application hold them, on a card
// and in the record of a mobile terminal.
namespace ctapi {

// Where the protected data (GVD) stand. EF.VD has room for a copy behind the insurance data.
enum class GvdPlace {
  Container,  // in EF.VD; EF.GVD cannot be read
  File,       // in EF.GVD
  Both,
  Nowhere,  // EF.GVD cannot be read, and EF.VD holds no copy
};

// The two ways in which EF.VD says that it holds no GVD: both offsets 0000 or FFFF.
enum class NoGvdOffsets { Zero, Ffff };

enum class Padding {
  Full,  // with 00 to the file's size on a card: EF.PD 850, EF.VD 1,250, EF.GVD 600 bytes
  None,  // the files end with their data
};

// EF.StatusVD, 25 bytes.
struct VsdStatus {
  char Transaction = '0';                        // '1': an update was begun and not ended
  std::string Timestamp = "20250407101058";      // 14 digits JJJJMMTThhmmss
  Bytes Version{0x00, 0x50, 0x02, 0x00, 0x00};   // XXXYYYZZZZ in BCD, 5 bytes
  Bytes Reserved{0x00, 0x30, 0x00, 0x00, 0x04};  // 5 bytes
};

// Blocks are documents as compressed for the card; one without a value is not on it. The whole
// contents of a file, where given, stand in place of what is made of the blocks.
struct VsdContents {
  std::optional<Bytes> Pd{};
  std::optional<Bytes> Vd{};
  std::optional<Bytes> Gvd{};
  GvdPlace Place = GvdPlace::Container;
  NoGvdOffsets Missing = NoGvdOffsets::Zero;
  Padding Fill = Padding::Full;
  VsdStatus Status{};

  std::optional<Bytes> EfPd{};
  std::optional<Bytes> EfVd{};
  std::optional<Bytes> EfGvd{};
  std::optional<Bytes> EfStatusVd{};

  [[nodiscard]] bool GvdInContainer() const;
  [[nodiscard]] bool GvdInFile() const;
};

// The files. They throw std::invalid_argument for a block that the file's length fields or, when
// padded, its size cannot hold, and for a status whose parts have other lengths.
[[nodiscard]] Bytes BuildEfPd(const VsdContents& contents);
[[nodiscard]] Bytes BuildEfVd(const VsdContents& contents);
[[nodiscard]] Bytes BuildEfGvd(const VsdContents& contents);
[[nodiscard]] Bytes BuildEfStatusVd(const VsdContents& contents);
[[nodiscard]] Bytes BuildStatus(const VsdStatus& status);

}  // namespace ctapi
