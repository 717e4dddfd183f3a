#include "platform/documents/xml_indentation.h"

#include <QXmlStreamReader>

#include "platform/documents/xml_document.h"

namespace kartocheck {

namespace {

constexpr int IndentWidth = 2;

// The XML declaration at the start of a text, as it stands there.
QStringView DeclarationOf(QStringView text) {
  static constexpr QStringView End = u"?>";
  if (!text.startsWith(u"<?xml ")) return {};
  const qsizetype end = text.indexOf(End);
  return end < 0 ? QStringView() : text.first(end + End.size());
}

class IndentingWriter {
 public:
  explicit IndentingWriter(QStringView declaration) : text_(declaration.toString()) {}

  // Writes the token that was read; false where the document has none of its kind.
  [[nodiscard]] bool Write(const QXmlStreamReader& reader) {
    switch (reader.tokenType()) {
      case QXmlStreamReader::StartElement:
        return WriteStart(reader);
      case QXmlStreamReader::EndElement:
        WriteEnd(reader);
        return true;
      case QXmlStreamReader::Characters:
        if (!reader.isWhitespace()) WriteInline(reader.text().toString().toHtmlEscaped());
        return true;
      case QXmlStreamReader::Comment:
        WriteLine(u"<!--" + reader.text() + u"-->");
        return true;
      case QXmlStreamReader::ProcessingInstruction:
        WriteLine(u"<?" + reader.processingInstructionTarget() + u' ' +
                  reader.processingInstructionData() + u"?>");
        return true;
      case QXmlStreamReader::DTD:
      case QXmlStreamReader::EntityReference:
        return false;
      default:
        return true;
    }
  }

  [[nodiscard]] const QString& Text() const { return text_; }

 private:
  [[nodiscard]] bool WriteStart(const QXmlStreamReader& reader) {
    QString tag = u'<' + reader.qualifiedName();
    for (const QXmlStreamAttribute& attribute : reader.attributes()) {
      tag += u' ' + attribute.qualifiedName() + u"=\"" +
             attribute.value().toString().toHtmlEscaped() + u'"';
    }
    WriteLine(tag + u'>');
    isLineOpen_ = true;
    return ++depth_ <= XmlDocument::MaxDepth;
  }

  // The end stands behind a text or the start, and below other elements.
  void WriteEnd(const QXmlStreamReader& reader) {
    --depth_;
    const QString tag = u"</" + reader.qualifiedName() + u'>';
    if (isLineOpen_) {
      text_ += tag;
    } else {
      WriteLine(tag);
    }
    isLineOpen_ = false;
  }

  void WriteInline(const QString& text) {
    if (isLineOpen_) {
      text_ += text;
    } else {
      WriteLine(text.trimmed());
    }
  }

  void WriteLine(const QString& line) {
    if (!text_.isEmpty()) text_ += u'\n';
    text_ += QString(depth_ * IndentWidth, u' ') + line;
    isLineOpen_ = false;
  }

  QString text_;
  int depth_ = 0;
  bool isLineOpen_ = false;  // the last line can still take a text or the end of its element
};

}  // namespace

std::optional<QString> IndentedXml(QStringView text) {
  QXmlStreamReader reader(text.toString());
  // Prefixes are shown as they stand in the document.
  reader.setNamespaceProcessing(false);
  IndentingWriter writer(DeclarationOf(text));
  while (!reader.atEnd()) {
    reader.readNext();
    if (reader.hasError() || !writer.Write(reader)) return {};
  }
  return writer.Text();
}

}  // namespace kartocheck
