#pragma once

#include <map>
#include <optional>
#include <string>

#include "simulator/egk_card.h"
#include "simulator/kvk_record.h"

namespace ctapi {

// How EF.StatusVD of a record opens.
enum class StatusLayout {
  DataObjects,  // the status in data object A0
  RawStatus,    // its 25 bytes without tag and length
};

// What a mobile terminal adds to the status of a record (data objects 91, 92, 93).
struct RecordStatus {
  StatusLayout Layout = StatusLayout::DataObjects;
  std::optional<std::string> ReadingDate = "05032024";  // 8 digits TTMMJJJJ or JJJJMMTT
  // maker;product;version, padded with blanks to the length of the object.
  std::optional<std::string> ApprovalNumber = "DENRV;DEMOTERM;1.2.3:4.5.6";
  // Length of the approval number's object in bytes; without a value 27, in an extended record 38.
  std::optional<std::size_t> ApprovalLength{};
  CheckByte Check{};
};

struct StoredEgkContents {
  VsdContents Vsd{};
  RecordStatus Status{};
  // The record of a terminal that answers RESET CT with 9501: a longer approval number, and EF.GVD
  // where the GVD were stored in it.
  bool Extended = false;
  ApplicationState Hca = ApplicationState::Active;
  // Answers of at most 256 bytes; otherwise a file comes whole in one answer.
  bool InPieces = false;
};

// The record of an eGK in a mobile terminal: it is presented as a health-care application whose
// files are read by short identifier (0C status, 01 PD, 02 VD, 03 GVD).
class StoredEgkRecord {
 public:
  // Throws std::invalid_argument for contents that the files cannot hold.
  explicit StoredEgkRecord(const StoredEgkContents& contents);

  void Reset();
  [[nodiscard]] Bytes Transmit(ByteView command);

  // Nothing: there is no card to reset.
  [[nodiscard]] static Bytes Atr() { return {}; }

 private:
  [[nodiscard]] Bytes Select(const Command& command);
  [[nodiscard]] Bytes ReadBinary(const Command& command);

  std::map<std::uint8_t, Bytes> files_;  // by short identifier
  ApplicationState hca_;
  bool inPieces_;
  bool selected_ = false;
  std::uint8_t current_ = 0;  // short identifier of the current file; 0: none
};

// EF.StatusVD of a record: status, reading date, approval number and their check.
[[nodiscard]] Bytes BuildRecordStatus(const StoredEgkContents& contents);

}  // namespace ctapi
