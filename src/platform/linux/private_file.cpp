#include "platform/private_file.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace kartocheck {

namespace {

bool WriteAll(int descriptor, QByteArrayView bytes) {
  while (!bytes.isEmpty()) {
    const ssize_t written = write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes = bytes.sliced(written);
  }
  return true;
}

}  // namespace

class PrivateFile::Content {
 public:
  explicit Content(int descriptor) : descriptor_(descriptor) {}
  ~Content() {
    if (descriptor_) CloseDescriptor(*descriptor_);
  }
  Content(const Content&) = delete;
  Content& operator=(const Content&) = delete;

  [[nodiscard]] std::optional<int> TakeDescriptor() {
    return std::exchange(descriptor_, std::nullopt);
  }

 private:
  std::optional<int> descriptor_;
};

PrivateFile::PrivateFile(QByteArrayView bytes) {
  const int descriptor = memfd_create("Daten.xml.gz", MFD_CLOEXEC);
  if (descriptor < 0) return;
  auto content = std::make_unique<Content>(descriptor);
  if (WriteAll(descriptor, bytes) && lseek(descriptor, 0, SEEK_SET) == 0) {
    content_ = std::move(content);
  }
}

PrivateFile::~PrivateFile() = default;

std::optional<int> PrivateFile::TakeDescriptor() {
  return content_ ? content_->TakeDescriptor() : std::nullopt;
}

std::optional<int> OpenForReading(const QString& path) {
  const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
  return descriptor < 0 ? std::nullopt : std::optional(descriptor);
}

void CloseDescriptor(int descriptor) {
  close(descriptor);
}

}  // namespace kartocheck
