#include "platform/qt/ct_api_library.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

#include "ctnrv32.h"
#include "protocol/return_code.h"

namespace kartocheck {

struct CtApiEntryPoints {
  CTDENRVT1_init_t init;
  CTDENRVT1_data_t data;
  CTDENRVT1_close_t close;
  CT_get_baudrate_t getBaudrate;
  KARTOCHECK_port_info_t portInfo;  // none where the library cannot tell
};

namespace {

constexpr std::size_t LongestName = 1024;  // bytes; readers have names of at most 128

bool IsPath(const QString& candidate) {
  return QFileInfo(candidate).fileName() != candidate;
}

void Load(QLibrary& library, const QStringList& candidates) {
  // The library calls its own threads and static data; taking it down again gains nothing.
  library.setLoadHints(QLibrary::PreventUnloadHint);
  for (const QString& candidate : candidates) {
    if (IsPath(candidate) && !QFileInfo::exists(candidate)) continue;
    library.setFileName(candidate);
    if (library.load()) return;
    if (IsPath(candidate)) break;
  }
  throw LibraryNotFound(library.errorString().toStdString());
}

template <typename Function>
Function ResolveOptional(QLibrary& library, const char* name) {
  return reinterpret_cast<Function>(library.resolve(name));
}

// A newer library may know troubles that this program has no words for.
ctapi::PortTroubleKind TroubleOf(std::uint8_t number) {
  const auto kind = static_cast<ctapi::PortTroubleKind>(number);
  return kind <= ctapi::LastPortTrouble ? kind : ctapi::PortTroubleKind::None;
}

template <typename Function>
Function Resolve(QLibrary& library, const char* name) {
  const QFunctionPointer address = library.resolve(name);
  if (address == nullptr) throw LibraryUnusable(std::string("missing entry point ") + name);
  return reinterpret_cast<Function>(address);
}

}  // namespace

CtApiLibrary::CtApiLibrary(QStringList candidates) : candidates_(std::move(candidates)) {}
CtApiLibrary::~CtApiLibrary() = default;

QString CtApiLibrary::LoadedFile() const {
  return library_.isLoaded() ? library_.fileName() : QString();
}

const CtApiEntryPoints& CtApiLibrary::EntryPoints() {
  if (!entryPoints_) {
    Load(library_, candidates_);
    entryPoints_ = std::make_unique<const CtApiEntryPoints>(CtApiEntryPoints{
        .init = Resolve<CTDENRVT1_init_t>(library_, "CTDENRVT1_init"),
        .data = Resolve<CTDENRVT1_data_t>(library_, "CTDENRVT1_data"),
        .close = Resolve<CTDENRVT1_close_t>(library_, "CTDENRVT1_close"),
        .getBaudrate = Resolve<CT_get_baudrate_t>(library_, "CT_get_baudrate"),
        .portInfo = ResolveOptional<KARTOCHECK_port_info_t>(library_, "KARTOCHECK_port_info"),
    });
  }
  return *entryPoints_;
}

ctapi::PortInfo CtApiLibrary::InfoOf(int pn) const {
  if (!entryPoints_ || entryPoints_->portInfo == nullptr) return {};
  std::array<std::uint8_t, LongestName> name{};
  auto length = static_cast<std::uint16_t>(name.size());
  std::uint8_t trouble = 0;
  const std::int8_t code =
      entryPoints_->portInfo(static_cast<std::uint16_t>(pn), &trouble, &length, name.data());
  if (code != ctapi::code::Success) return {};
  const std::size_t told = std::min<std::size_t>(length, name.size());
  return {.Trouble = TroubleOf(trouble),
          .Name = std::string(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(told))};
}

std::int8_t CtApiLibrary::Init(std::uint16_t ctn, std::uint16_t pn) {
  return EntryPoints().init(ctn, pn);
}

std::int8_t CtApiLibrary::Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                               std::span<const std::uint8_t> command,
                               std::span<std::uint8_t> response, std::uint16_t& responseLength) {
  responseLength = static_cast<std::uint16_t>(response.size());
  return EntryPoints().data(ctn, &dad, &sad, static_cast<std::uint16_t>(command.size()),
                            command.data(), &responseLength, response.data());
}

std::int8_t CtApiLibrary::Close(std::uint16_t ctn) {
  return EntryPoints().close(ctn);
}

std::int8_t CtApiLibrary::GetBaudrate(std::uint16_t ctn, std::int32_t& baud) {
  return EntryPoints().getBaudrate(ctn, &baud);
}

}  // namespace kartocheck
