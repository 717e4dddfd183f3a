#pragma once

#include <QString>
#include <QStringList>

#include <memory>

#include "helper/message.h"
#include "platform/ct_api.h"
#include "platform/pending_call.h"
#include "protocol/port_info.h"

namespace kartocheck {

class HelperProcess;

// The CT-API through a shared library. The library is loaded for the first call, in a process of
// its own that serves all ports: what it does to itself stays there. A library that cannot be
// loaded, or lacks one of the entry points that open, use and close a link, is refused before any
// is called; without CT_get_baudrate it is refused when that is called. One that lacks the further,
// optional entry point only tells nothing of its ports.
class CtApiLibrary final : public CtApi {
 public:
  // helper: the program that loads the library. The first of the candidates that exists is loaded.
  // A candidate is a path, or a bare file name that the system's search path resolves. pending:
  // outlives this.
  CtApiLibrary(QString helper, QStringList candidates, PendingCall& pending);
  ~CtApiLibrary() override;

  // Lets the process start and load the library while its caller does other things. What comes of
  // it is told by the first call.
  void BeginLoading();

  // Where the library stands that was loaded last; empty before the first call.
  [[nodiscard]] const QString& LoadedFile() const { return file_; }

  // What the library tells of a port, or of EveryReader. Nothing as long as it is not loaded, while
  // a call is under way, and from a library that fails at it.
  [[nodiscard]] ctapi::PortInfo InfoOf(int pn);

  // A call that is given up returns HtsiError (-128), and so does every one after it up to the next
  // Init, which loads the library anew.
  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

 private:
  [[nodiscard]] ctapi::helper::Message Call(const ctapi::helper::Message& call);
  void StartHelper();
  [[nodiscard]] bool FinishLoading();
  [[nodiscard]] ctapi::helper::Message GiveUp();
  [[noreturn]] void Fail(const ctapi::helper::Message& answer);

  const QString program_;
  const QStringList candidates_;
  PendingCall& pending_;
  QString file_;
  std::unique_ptr<HelperProcess> helper_;  // none before it is needed, and after a call given up
  bool isLoaded_ = false;                  // by the helper
  bool isGivenUp_ = false;
  bool isCalling_ = false;
};

}  // namespace kartocheck
