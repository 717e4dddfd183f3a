#pragma once

#include <QByteArrayView>
#include <QString>

#include <memory>
#include <optional>

namespace kartocheck {

// Bytes for a C library that reads from file descriptors only, in a file that nobody else can open
// and that ends with this program, however it ends: in memory and without a name where the system
// has such files, otherwise "Daten.xml.gz" in a directory of its own, which the system deletes when
// it is closed.
class PrivateFile {
 public:
  explicit PrivateFile(QByteArrayView bytes);
  ~PrivateFile();
  PrivateFile(const PrivateFile&) = delete;
  PrivateFile& operator=(const PrivateFile&) = delete;

  // The descriptor, which reads from the begin of the bytes. Whoever takes it closes it before this
  // ends. Nothing where there is no such file.
  [[nodiscard]] std::optional<int> TakeDescriptor();

 private:
  class Content;
  std::unique_ptr<Content> content_;  // none where there is no such file
};

// A descriptor that reads the file of this name. The caller closes it.
[[nodiscard]] std::optional<int> OpenForReading(const QString& path);

// Closes a descriptor that nobody took over.
void CloseDescriptor(int descriptor);

}  // namespace kartocheck
