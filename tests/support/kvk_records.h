#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <initializer_list>
#include <utility>
#include <vector>

namespace kartocheck::test {

// Records of invented people, as hexadecimal text, by name: A (form 60), B (form 6081), C (B with a
// mobile terminal's supplement). They were made apart from the program.
[[nodiscard]] const QMap<QString, QString>& SampleRecords();
[[nodiscard]] QString SampleRecord(QStringView name);

// Upper-case hexadecimal text.
[[nodiscard]] QString HexOf(const QByteArray& bytes);

// One data object: tag, one length byte, value.
struct DataObject {
  int tag;
  QByteArray value;
};

// Bytes of the objects in a row.
[[nodiscard]] QByteArray ObjectBytes(const std::vector<DataObject>& objects);

enum class Form { Form60, Form6081, Form6082 };

// A template around the objects, closed by a checksum element (8E 01) that fits: the XOR of all
// other bytes, in form 6082 of all but the length byte 01 of the checksum element.
[[nodiscard]] QString TemplateRecord(Form form, const std::vector<DataObject>& objects);

// A template around the bytes as they are.
[[nodiscard]] QString TemplateAround(Form form, const QByteArray& content);

// What a mobile terminal appends to a record: the objects, closed by a checksum element (93 01).
[[nodiscard]] QString Supplement(const std::vector<DataObject>& objects);

// A record in template form that uses the whole length of a stationary terminal's answer, 219
// bytes, with all 17 elements.
[[nodiscard]] QString FullTemplateRecord();

// The fields of a fixed-format record of an invented person, each padded with blanks to its width,
// 17 elements in 219 bytes.
[[nodiscard]] QByteArray FixedRecordFields();

}  // namespace kartocheck::test
