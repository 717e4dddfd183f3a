#pragma once

#include <string>
#include <vector>

#include "simulator/apdu.h"
#include "simulator/vsd_contents.h"

namespace ctapi {

// Generations of the eGK. They differ in the answer to reset (the newer one offers a higher line
// rate) and in where the versions of the card's files stand: EF.VERSION with three records, or
// EF.Version2 with data objects.
enum class EgkGeneration { G1, G1Plus, G21 };

enum class ApplicationState {
  Active,
  Deactivated,  // SELECT of DF.HCA is answered 6283
  Missing,      // it is answered 6A82
};

struct EgkContents {
  VsdContents Vsd{};
  // Card serial number: an even number of digits, 20 on a real card.
  std::string Iccsn = "80276001230000000017";
  EgkGeneration Generation = EgkGeneration::G21;
  ApplicationState Hca = ApplicationState::Active;
};

// An eGK: a processor card with the files that can be read without a PIN, and EF.GVD, which on most
// cards cannot. MF holds EF.GDO, EF.DIR, EF.ATR and a version file, DF.HCA holds EF.PD, EF.VD,
// EF.GVD and EF.StatusVD.
class EgkCard {
 public:
  // Throws std::invalid_argument for contents that the files cannot hold.
  explicit EgkCard(const EgkContents& contents);

  // Power-up: MF is selected, and no file in it.
  void Reset();

  // A command APDU in short form and its response, status word included.
  [[nodiscard]] Bytes Transmit(ByteView command);

  // Answer to reset (ISO 7816-3): protocol T=1, blocks of 254 bytes, check byte.
  [[nodiscard]] Bytes Atr() const;

 private:
  struct File {
    std::uint16_t Identifier;
    std::uint8_t ShortIdentifier;
    Bytes Content{};
    std::vector<Bytes> Records{};  // of a record-oriented file, which has no content
    bool Readable = true;

    [[nodiscard]] bool IsTransparent() const { return Records.empty(); }
  };
  enum class Directory { Mf, Hca };

  [[nodiscard]] Bytes Select(const Command& command);
  [[nodiscard]] Bytes SelectApplication(const Command& command);
  [[nodiscard]] Bytes ReadBinary(const Command& command);
  [[nodiscard]] Bytes ReadRecord(const Command& command);

  [[nodiscard]] const std::vector<File>& FilesHere() const;
  [[nodiscard]] const File* FindHere(std::uint16_t identifier) const;
  [[nodiscard]] const File* FindHereByShort(std::uint8_t identifier) const;

  EgkGeneration generation_;
  ApplicationState hca_;
  std::vector<File> mfFiles_;
  std::vector<File> hcaFiles_;
  Directory directory_ = Directory::Mf;
  std::uint16_t selected_ = 0;  // identifier of the current file; 0: none
};

}  // namespace ctapi
