#pragma once

#include <QByteArray>

#include "platform/ct_api.h"

namespace kartocheck::test {

// A terminal with the sample person's eGK in it, or with that person's record stored in it. It
// answers every command of the readers from the state that the commands before have left.
class FakeEgk final : public CtApi {
 public:
  enum class Holds {
    CardWithContainerGvd,
    CardWithEfGvd,
    CardWithProtectedGvd,
    PlainRecord,
    ExtendedRecord,
  };

  explicit FakeEgk(Holds holds);

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

 private:
  [[nodiscard]] QByteArray Answer(const QByteArray& command);
  [[nodiscard]] QByteArray SelectFile(int identifier);
  [[nodiscard]] QByteArray ReadFile(int p1p2, int le);
  [[nodiscard]] bool IsRecord() const;
  // The file behind the lower byte of its identifier, which is its short identifier too.
  [[nodiscard]] const QByteArray* FileOf(int shortIdentifier) const;

  Holds holds_;
  QByteArray gdo_;
  QByteArray pd_;
  QByteArray vd_;
  QByteArray gvd_;
  QByteArray status_;
  int selected_ = 0;
  bool applicationSelected_ = false;
  bool isErased_ = false;
};

}  // namespace kartocheck::test
