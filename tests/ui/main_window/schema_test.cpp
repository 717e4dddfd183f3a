#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "support/answer_book.h"
#include "support/fake_api.h"
#include "support/printing.h"
#include "ui/main_window/window_fixture.h"

// Schemas and their switch, as the menu works with them.

namespace kartocheck::test {
namespace {

class SchemaTest : public testing::Test {
 protected:
  QString File(const QString& name, const QByteArray& bytes) {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
  }

  const QString& Held(VsdKind kind) { return window.module.Validation.schemas[kind].Text(); }

  QTemporaryDir folder;
  FakeApi api;
  Window window{api};
};

TEST_F(SchemaTest, TextFromTheFirstMarkOnReplacesTheHeldOne) {
  window.module.Validation.schemas[VsdKind::Pd].SetText(QStringLiteral("<alt/>"));
  window.flow.LoadSchema(VsdKind::Pd,
                         File(QStringLiteral("neu.xsd"), "vorweg <xs:schema/> danach\r\n"));
  EXPECT_EQ(Held(VsdKind::Pd), u"<xs:schema/> danach\r\n");
  EXPECT_EQ(Held(VsdKind::Vd), u"");
  EXPECT_EQ(Held(VsdKind::Gvd), u"");
  EXPECT_EQ(window.display.statusTexts,
            std::vector<QString>{QStringLiteral("Das Schema neu.xsd wurde geladen")});
  EXPECT_TRUE(window.dialogs.boxes.empty());
}

TEST_F(SchemaTest, AFileWithoutATextIsToldAndTheHeldOneStays) {
  const std::pair<const char*, QString> rows[] = {
      {"a file that is not there", folder.filePath(QStringLiteral("fehlt.xsd"))},
      {"a folder", folder.path()},
      {"an empty file", File(QStringLiteral("leer.xsd"), "")},
      {"no mark in it", File(QStringLiteral("text.xsd"), "Kein Schema, nur Text & mehr.")},
  };
  for (const auto& [description, file] : rows) {
    window.module.Validation.schemas[VsdKind::Vd].SetText(QStringLiteral("<alt/>"));
    window.dialogs.boxes.clear();
    window.flow.LoadSchema(VsdKind::Vd, file);
    EXPECT_EQ(Held(VsdKind::Vd), u"<alt/>") << description;
    ASSERT_EQ(window.dialogs.boxes.size(), 1U) << description;
    EXPECT_EQ(window.dialogs.boxes[0].title, u" KartoCheck ");
    EXPECT_EQ(window.dialogs.boxes[0].icon, Icon::Exclamation);
    EXPECT_EQ(window.dialogs.boxes[0].text,
              u"Das Schema konnte nicht geladen werden:\r\n" + QFileInfo(file).fileName() +
                  u"\r\n\r\nDie Datei ist nicht lesbar oder enthält kein XML.\r\n"
                  u"Das bisherige Schema wird weiter verwendet.");
  }
  EXPECT_TRUE(window.display.statusTexts.empty());
}

TEST_F(SchemaTest, ValidationIsSwitched) {
  EXPECT_FALSE(window.module.Validation.isOn);
  window.flow.SetValidation(true);
  EXPECT_TRUE(window.module.Validation.isOn);
  window.flow.SetValidation(false);
  EXPECT_FALSE(window.module.Validation.isOn);
}

TEST_F(SchemaTest, NothingChangesDuringAnAction) {
  const QString file = File(QStringLiteral("neu.xsd"), "<neu/>");
  window.module.Busy = true;
  window.flow.SetValidation(true);
  window.flow.LoadSchema(VsdKind::Pd, file);
  EXPECT_FALSE(window.module.Validation.isOn);
  EXPECT_EQ(Held(VsdKind::Pd), u"");
}

TEST_F(SchemaTest, TheEgkWindowShowsTheCurrentSlot) {
  window.module.Egk[1].iccsn = QStringLiteral("11");
  window.module.Egk[2].stored.statusText = QStringLiteral("22");
  window.module.Terminals[2].Reset95 = true;
  EXPECT_EQ(window.flow.CurrentEgkInfo().lines[3].text, u"ICC Serial Number:       0x11");
  window.module.CurrentSlot = 2;
  EXPECT_EQ(window.flow.CurrentEgkInfo().lines[3].text, u"VSDStatus: 0x22");
  for (const int slot : {0, -1, 6}) {
    window.module.CurrentSlot = slot;
    EXPECT_THROW((void)window.flow.CurrentEgkInfo(), std::out_of_range) << slot;
  }
}

}  // namespace
}  // namespace kartocheck::test
