#include "egk/vsd_schema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include "egk/prepared_schema.h"
#include "text/code_page.h"

namespace kartocheck {

namespace {

constexpr qint64 LongestSchemaFile = 1 << 20;

// A file that is neither UTF-16 with its mark nor correct UTF-8 is in the 8-bit code page.
QString DecodeSchema(const QByteArray& bytes) {
  const auto marked = QStringConverter::encodingForData(bytes);
  QStringDecoder decoder(marked.value_or(QStringConverter::Utf8));
  QString text = decoder.decode(bytes);
  return decoder.hasError() ? TextOf(bytes) : text;
}

}  // namespace

void HeldSchema::SetText(QString text) {
  if (text == text_) return;
  text_ = std::move(text);
  prepared_.reset();
}

const PreparedSchema& HeldSchema::Prepared() const {
  if (!prepared_) prepared_ = std::make_shared<const PreparedSchema>(text_);
  return *prepared_;
}

QString ReadSchemaText(const QString& path) {
  // A pipe or a device might not come back, or have no end.
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  const QByteArray bytes = file.read(LongestSchemaFile + 1);
  if (bytes.size() > LongestSchemaFile) return {};
  const QString text = DecodeSchema(bytes);
  const qsizetype start = text.indexOf(u'<');
  return start < 0 ? QString() : text.sliced(start);
}

QString FindSchemaText(VsdKind kind, const QStringList& directories) {
  for (const QString& directory : directories) {
    const QString path = QDir(directory).filePath(VsdTexts[kind].schemaFile.toString());
    if (QFile::exists(path)) return ReadSchemaText(path);
  }
  return {};
}

void LoadSchemas(ValidationSettings& settings, const QStringList& directories) {
  for (const VsdKind kind : {VsdKind::Vd, VsdKind::Pd, VsdKind::Gvd}) {
    settings.schemas[kind].SetText(FindSchemaText(kind, directories));
  }
}

}  // namespace kartocheck
