#include "platform/reader_directory.h"

#include <utility>

#include "host/reader_trouble.h"
#include "platform/reader_hint.h"

namespace kartocheck {

namespace {

using ctapi::host::FindReaderTrouble;
using ctapi::host::PcscResult;
using ctapi::host::PcscService;
using ctapi::host::ReaderTrouble;

// Port numbers of the CT-API: the i-th reader (i from 0) is 8192 + i.
constexpr int FirstReader = 8192;
constexpr int LastReader = 8447;

bool IsReader(int pn) {
  return pn >= FirstReader && pn <= LastReader;
}

}  // namespace

ReaderDirectory::ReaderDirectory(std::unique_ptr<const PortDirectory> serialPorts,
                                 std::function<bool()> servesReaders, LoadPcsc loadPcsc)
    : serialPorts_(std::move(serialPorts)),
      servesReaders_(std::move(servesReaders)),
      loadPcsc_(std::move(loadPcsc)) {}

ReaderDirectory::~ReaderDirectory() = default;

QString ReaderDirectory::IdentificationOf(int pn) const {
  if (!IsReader(pn)) return serialPorts_->IdentificationOf(pn);
  if (!servesReaders_()) return {};
  const std::string* const reader = ReaderAt(pn);
  return reader == nullptr ? QString() : QString::fromStdString(*reader);
}

QString ReaderDirectory::HintFor(int pn) const {
  if (!IsReader(pn)) return serialPorts_->HintFor(pn);
  if (!servesReaders_()) return {};
  if (const std::string* const reader = ReaderAt(pn)) {
    return ReaderHint(FindReaderTrouble(Service(), *reader));
  }
  // A card that is held is the matter of another reader.
  const ReaderTrouble trouble = FindReaderTrouble(Service());
  return trouble == ReaderTrouble::CardHeld ? QString() : ReaderHint(trouble);
}

QStringList ReaderDirectory::HintsWithoutReader() const {
  QStringList hints = serialPorts_->HintsWithoutReader();
  if (!servesReaders_()) return hints;
  if (const QString hint = ReaderHint(FindReaderTrouble(Service())); !hint.isEmpty()) {
    hints.append(hint);
  }
  return hints;
}

PcscService& ReaderDirectory::Service() const {
  if (!service_) service_.emplace(loadPcsc_());
  return *service_;
}

// The library lists the readers as often as it opens one; asked soon after, this list is the same.
const std::string* ReaderDirectory::ReaderAt(int pn) const {
  std::vector<std::string> attached;
  if (Service().List(attached) != PcscResult::Ok) return nullptr;
  names_.Update(std::move(attached));
  return names_.AttachedAt(static_cast<std::size_t>(pn - FirstReader));
}

}  // namespace kartocheck
