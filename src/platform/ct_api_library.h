#pragma once

#include <QLibrary>
#include <QStringList>

#include <memory>

#include "platform/ct_api.h"

namespace kartocheck {

struct CtApiEntryPoints;

// The CT-API through a shared library. It is loaded at the first call, and all four entry points
// are resolved together: a library that lacks one of them is refused before any is called.
class CtApiLibrary final : public CtApi {
 public:
  // The first of the candidates that exists is loaded. A candidate is a path, or a bare name that
  // the system's search path resolves ("CTNRV32" stands for libCTNRV32.so or CTNRV32.dll).
  explicit CtApiLibrary(QStringList candidates);
  ~CtApiLibrary() override;

  // Where the library stands that was loaded; empty before the first call.
  [[nodiscard]] QString LoadedFile() const;

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

 private:
  const CtApiEntryPoints& EntryPoints();

  QStringList candidates_;
  QLibrary library_;
  std::unique_ptr<const CtApiEntryPoints> entryPoints_;
};

}  // namespace kartocheck
