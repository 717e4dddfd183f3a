#pragma once

#include <QString>
#include <QStringList>

#include <memory>

#include "egk/vsd_kind.h"

namespace kartocheck {

class PreparedSchema;

// The XSD schema text of one kind. What is made of the text - parsed, its version, compiled - is
// made on first use and kept until the text is replaced.
class HeldSchema {
 public:
  [[nodiscard]] const QString& Text() const { return text_; }
  void SetText(QString text);

  [[nodiscard]] const PreparedSchema& Prepared() const;

 private:
  QString text_;
  mutable std::shared_ptr<const PreparedSchema> prepared_;
};

// How the user wants VSD documents validated.
struct ValidationSettings {
  bool isOn = false;  // the menu's "&Validierung"
  PerVsdKind<HeldSchema> schemas;
};

// The text of a schema file from its first "<" on; empty where it cannot be read or holds none, and
// where it is no ordinary file of at most 1 MiB. The public schemas have some 10 KiB.
[[nodiscard]] QString ReadSchemaText(const QString& path);

// The text of the kind's schema file in the first of the directories that has it; empty where none
// has.
[[nodiscard]] QString FindSchemaText(VsdKind kind, const QStringList& directories);

// Replaces all three texts by what the directories hold.
void LoadSchemas(ValidationSettings& settings, const QStringList& directories);

}  // namespace kartocheck
