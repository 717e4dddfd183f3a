#pragma once

#include <QLibrary>
#include <QStringList>

#include <memory>

#include "platform/ct_api.h"
#include "protocol/port_info.h"

namespace kartocheck {

struct CtApiEntryPoints;

// The CT-API through a shared library. It is loaded at the first call, and all four entry points
// are resolved together: a library that lacks one of them is refused before any is called. One that
// lacks the further, optional entry point only tells nothing of its ports.
class CtApiLibrary final : public CtApi {
 public:
  // File name of CTNRV32 on this platform.
#if defined(Q_OS_WIN)
  static constexpr QStringView FileName = u"CTNRV32.dll";
#else
  static constexpr QStringView FileName = u"libCTNRV32.so";
#endif

  // The first of the candidates that exists is loaded. A candidate is a path, or a bare file name
  // that the system's search path resolves.
  explicit CtApiLibrary(QStringList candidates);
  ~CtApiLibrary() override;

  // Where the library stands that was loaded; empty before the first call.
  [[nodiscard]] QString LoadedFile() const;

  // What the library tells of a port, or of EveryReader. Nothing as long as it is not loaded.
  [[nodiscard]] ctapi::PortInfo InfoOf(int pn) const;

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
