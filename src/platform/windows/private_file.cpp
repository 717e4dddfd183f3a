#include "platform/private_file.h"

#include <QDir>
#include <QUuid>
#include <windows.h>

#include <cstdint>
#include <fcntl.h>
#include <io.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

// Needs the types of windows.h.
#include <sddl.h>

#include "platform/windows/local_memory.h"
#include "protocol/windows/handle.h"

namespace kartocheck {

namespace {

// The user of this process, as security descriptors name one; empty where that is not told.
std::wstring UserIdentifier() {
  HANDLE opened = nullptr;
  if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) return {};
  const ctapi::Handle token(opened);
  DWORD size = 0;
  ::GetTokenInformation(token.Get(), TokenUser, nullptr, 0, &size);
  if (size == 0) return {};
  std::vector<std::max_align_t> user(size / sizeof(std::max_align_t) + 1);
  if (::GetTokenInformation(token.Get(), TokenUser, user.data(), size, &size) == 0) return {};
  wchar_t* text = nullptr;
  const PSID identifier = reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid;
  if (::ConvertSidToStringSidW(identifier, &text) == 0) return {};
  const LocalMemory<wchar_t> freed(text);
  return text;
}

// For this user alone, whatever the folder above gives to others.
class OwnerOnly {
 public:
  OwnerOnly() {
    const std::wstring user = UserIdentifier();
    if (user.empty()) return;
    void* descriptor = nullptr;
    const std::wstring access = L"D:P(A;OICI;FA;;;" + user + L")";
    if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(access.c_str(), SDDL_REVISION_1,
                                                               &descriptor, nullptr) == 0) {
      return;
    }
    descriptor_.reset(descriptor);
    attributes_ = {sizeof attributes_, descriptor, FALSE};
  }
  [[nodiscard]] SECURITY_ATTRIBUTES* Attributes() {
    return descriptor_ == nullptr ? nullptr : &attributes_;
  }

 private:
  LocalMemory<void> descriptor_;
  SECURITY_ATTRIBUTES attributes_{};
};

std::wstring NewDirectoryName() {
  const QString name =
      QDir::tempPath() + u"/kartocheck-" + QUuid::createUuid().toString(QUuid::WithoutBraces);
  return QDir::toNativeSeparators(name).toStdWString();
}

// Nobody else opens the file while it is there, and closing it is its end.
std::optional<int> CreateDeletedOnClose(const std::wstring& path, SECURITY_ATTRIBUTES* access) {
  constexpr DWORD Whole = GENERIC_READ | GENERIC_WRITE | DELETE;
  const HANDLE file = ::CreateFileW(path.c_str(), Whole, 0, access, CREATE_NEW,
                                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  const int descriptor =
      ::_open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_RDWR | _O_BINARY | _O_NOINHERIT);
  if (descriptor >= 0) return descriptor;
  ::CloseHandle(file);
  return std::nullopt;
}

bool WriteAll(int descriptor, QByteArrayView bytes) {
  if (bytes.size() > std::numeric_limits<int>::max()) return false;
  return ::_write(descriptor, bytes.data(), static_cast<unsigned>(bytes.size())) == bytes.size() &&
         ::_lseek(descriptor, 0, SEEK_SET) == 0;
}

// The same of a directory. It goes where it is empty then: the file is opened first and closed
// first.
ctapi::Handle OpenDeletedOnClose(const std::wstring& directory) {
  return ctapi::Handle(::CreateFileW(
      directory.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
      FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
}

}  // namespace

class PrivateFile::Content {
 public:
  Content() = default;
  ~Content() {
    if (descriptor_) CloseDescriptor(*descriptor_);
    opened_ = {};
    if (!directory_.empty()) ::RemoveDirectoryW(directory_.c_str());
  }
  Content(const Content&) = delete;
  Content& operator=(const Content&) = delete;

  [[nodiscard]] bool Fill(QByteArrayView bytes) {
    OwnerOnly owner;
    const std::wstring directory = NewDirectoryName();
    if (owner.Attributes() == nullptr ||
        ::CreateDirectoryW(directory.c_str(), owner.Attributes()) == 0) {
      return false;
    }
    directory_ = directory;
    descriptor_ = CreateDeletedOnClose(directory + L"\\Daten.xml.gz", owner.Attributes());
    opened_ = OpenDeletedOnClose(directory);
    return descriptor_ && WriteAll(*descriptor_, bytes);
  }

  [[nodiscard]] std::optional<int> TakeDescriptor() {
    return std::exchange(descriptor_, std::nullopt);
  }

 private:
  std::wstring directory_;
  ctapi::Handle opened_;  // the directory
  std::optional<int> descriptor_;
};

PrivateFile::PrivateFile(QByteArrayView bytes) {
  auto content = std::make_unique<Content>();
  if (content->Fill(bytes)) content_ = std::move(content);
}

PrivateFile::~PrivateFile() = default;

std::optional<int> PrivateFile::TakeDescriptor() {
  return content_ ? content_->TakeDescriptor() : std::nullopt;
}

std::optional<int> OpenForReading(const QString& path) {
  const int descriptor =
      ::_wopen(path.toStdWString().c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
  return descriptor < 0 ? std::nullopt : std::optional(descriptor);
}

void CloseDescriptor(int descriptor) {
  ::_close(descriptor);
}

}  // namespace kartocheck
