#pragma once

#include "simulator/bytes.h"

namespace ctapi {

// A KVK as terminals present it: a memory card whose data are one transparent file of the KVK
// application. A record that a mobile terminal stores is presented in the same way.
class KvkCard {
 public:
  // Which application identifier selects the card's data.
  enum class Identifier { Current, Old, None };

  explicit KvkCard(Bytes data, Identifier identifier = Identifier::Current);

  // Power-up: nothing is selected.
  void Reset();

  // A command and its response, status word included. READ BINARY with Le 00 delivers everything
  // from the offset on, more than 256 bytes too.
  [[nodiscard]] Bytes Transmit(ByteView command);

  // The four header bytes of a memory card (ISO 7816-10).
  [[nodiscard]] static Bytes Atr();

  [[nodiscard]] const Bytes& Data() const { return data_; }

 private:
  Bytes data_;
  Identifier identifier_;
  bool selected_ = false;
};

}  // namespace ctapi
