#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/simulated_program.h"
#include "support/printing.h"

// The entries of the menus.

namespace kartocheck::test {
namespace {

class MenuTest : public testing::Test {
 protected:
  QAction& Entry(const QString& name) {
    auto* entry = program.window.findChild<QAction*>(name);
    if (entry == nullptr) throw std::invalid_argument("no such menu entry");
    return *entry;
  }

  // Chooses a file in the dialog of schema entry `entry`, as a user types it.
  void LoadSchema(int entry, const QString& file) {
    Entry(QStringLiteral("mnuSchema_%1").arg(entry)).trigger();
    auto& dialog = static_cast<QFileDialog&>(SideWindow(QStringLiteral("dlgKartoCheck")));
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name->setText(file);
    QTest::keyClick(name, Qt::Key_Return);
  }

  QString File(const QString& name, const QByteArray& bytes) {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
  }

  static QString Schema(const QString& targetNamespace) {
    return QStringLiteral(
               "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" targetNamespace=\"%1\">"
               "<xs:element name=\"a\"/></xs:schema>")
        .arg(targetNamespace);
  }

  const QString& Held(VsdKind kind) { return program.module.Validation.schemas[kind].Text(); }

  // Reads the card on COM 1 with the schemas that are loaded; the validation text of a kind.
  QString ValidationTextAfterRead(VsdKind kind) {
    program.Click(QStringLiteral("CmdB_MKt_Test_5"));
    program.Click(QStringLiteral("CmdB_MKt_Test_3"));
    program.Click(QStringLiteral("cmdeGK"));
    QWidget& window = SideWindow(QStringLiteral("Form_egK_Info"));
    Screen screen(window);
    screen.Click(QStringLiteral("CmdB_VsdKind_%1").arg(static_cast<int>(kind)));
    const QString text = screen.Text(QStringLiteral("Label8"));
    window.close();
    return text;
  }

  QTemporaryDir folder;
  SimulatedProgram program{QStringLiteral("egk-beispiel")};
};

TEST_F(MenuTest, ValidationTogglesItsCheckMark) {
  QAction& validation = Entry(QStringLiteral("mnuValidierung"));
  EXPECT_FALSE(validation.isChecked());
  validation.trigger();
  EXPECT_TRUE(validation.isChecked());
  EXPECT_TRUE(program.module.Validation.isOn);
  validation.trigger();
  EXPECT_FALSE(validation.isChecked());
  EXPECT_FALSE(program.module.Validation.isOn);
}

TEST_F(MenuTest, TheCheckMarkShowsHowTheProgramStands) {
  program.module.Validation.isOn = true;
  program.window.Attach(program.flow, program.view, program.module);
  EXPECT_TRUE(Entry(QStringLiteral("mnuValidierung")).isChecked());
}

TEST_F(MenuTest, SchemaDialogAsksForXsdFiles) {
  Entry(QStringLiteral("mnuSchema_0")).trigger();
  auto& dialog = static_cast<QFileDialog&>(SideWindow(QStringLiteral("dlgKartoCheck")));
  EXPECT_EQ(dialog.nameFilters(), QStringList{QStringLiteral("XSD (*.xsd)")});
  EXPECT_EQ(dialog.windowTitle(), u"Neues Schema laden");
  EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
  EXPECT_EQ(dialog.labelText(QFileDialog::Reject), u"Abbrechen");
}

TEST_F(MenuTest, EachSchemaEntryLoadsItsKind) {
  const VsdKind kinds[] = {VsdKind::Vd, VsdKind::Pd, VsdKind::Gvd};
  for (int entry = 0; entry < 3; ++entry) {
    const QString text = Schema(QStringLiteral("urn:%1").arg(entry));
    LoadSchema(entry, File(QStringLiteral("neu%1.xsd").arg(entry), "kopf " + text.toUtf8()));
    EXPECT_EQ(Held(kinds[entry]), text);
    EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusText")),
              QStringLiteral("Das Schema neu%1.xsd wurde geladen").arg(entry));
  }
  EXPECT_EQ(Held(VsdKind::Vd), Schema(QStringLiteral("urn:0")));
}

TEST_F(MenuTest, ACancelledDialogChangesNothing) {
  program.module.Validation.schemas[VsdKind::Vd].SetText(QStringLiteral("<alt/>"));
  Entry(QStringLiteral("mnuSchema_0")).trigger();
  QTest::keyClick(&SideWindow(QStringLiteral("dlgKartoCheck")), Qt::Key_Escape);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_EQ(Held(VsdKind::Vd), u"<alt/>");
}

TEST_F(MenuTest, AFileThatIsNoSchemaIsTold) {
  program.module.Validation.schemas[VsdKind::Pd].SetText(QStringLiteral("<alt/>"));
  BoxAnswerer user({PressButton(QMessageBox::Ok)});
  LoadSchema(1, File(QStringLiteral("text.xsd"), "kein Schema"));
  EXPECT_TRUE(user.seen.at(0).text.contains(u"text.xsd"));
  EXPECT_EQ(Held(VsdKind::Pd), u"<alt/>");
}

TEST_F(MenuTest, DataAreValidatedAgainstTheLoadedSchema) {
  Entry(QStringLiteral("mnuValidierung")).trigger();
  const QString fitting = folder.filePath(QStringLiteral("passend.xsd"));
  ASSERT_TRUE(QFile::copy(
      QStringLiteral(KARTOCHECK_SCHEMAS "/UC_PersoenlicheVersichertendatenXML.xsd"), fitting));
  const QString foreign = File(QStringLiteral("fremd.xsd"),
                               Schema(QStringLiteral("http://example.org/fremd")).toUtf8());
  const QString broken = File(QStringLiteral("kaputt.xsd"), "<xs:schema><nicht zu Ende");
  const QString missing = QStringLiteral(
      "Eine Validierung der XML Daten  konnte nicht durchgeführt werden!\n\n"
      "Kein lokales XSD-Schema verfügbar! ");
  EXPECT_EQ(ValidationTextAfterRead(VsdKind::Pd), missing);
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_9")), u"");

  LoadSchema(1, fitting);
  EXPECT_EQ(ValidationTextAfterRead(VsdKind::Pd),
            u"Die lokale Validierung der XML Daten \nmittels vorgegebenen Schema für "
            u"UC_PersoenlicheVersichertendatenXML (5.2.0)\nwar erfolgreich!");
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_9")), u"Beispiel");

  BoxAnswerer user({PressButton(QMessageBox::Ok)});
  LoadSchema(1, broken);
  EXPECT_TRUE(user.seen.at(0).text.contains(u"kaputt.xsd"));
  EXPECT_TRUE(ValidationTextAfterRead(VsdKind::Pd).endsWith(u"\nwar erfolgreich!"));

  LoadSchema(1, foreign);
  EXPECT_EQ(ValidationTextAfterRead(VsdKind::Pd),
            u"Eine Validierung der XML Daten  konnte nicht durchgeführt werden!\n\n"
            u"Der URI-Verweis für den Namespace dieses Schemas ist nicht zutreffend!");
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_9")), u"");
}

TEST_F(MenuTest, WithoutValidationDataAreShownAsTheyAre) {
  EXPECT_EQ(ValidationTextAfterRead(VsdKind::Vd),
            u"Es wurde keine Validierung der XML Daten durchgeführt!");
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_9")), u"Beispiel");
}

TEST_F(MenuTest, TheReportGoesToTheClipboardAsPlainText) {
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  Entry(QStringLiteral("mnuPruefbericht")).trigger();
  const QString copied = QApplication::clipboard()->text();
  EXPECT_EQ(copied, program.Report());
  EXPECT_TRUE(copied.contains(u"PKT Modell:             Serie"));
  EXPECT_TRUE(copied.contains(u"Daten:                  eGK gelesen"));
  EXPECT_FALSE(copied.contains(u"Beispiel"));
  EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusText")),
            u"Der Prüfbericht wurde in die Zwischenablage kopiert");
}

class SavedReportTest : public MenuTest {
 protected:
  QByteArray Saved(const QString& name) {
    const QString file = directory.filePath(name);
    Entry(QStringLiteral("mnuPruefberichtSpeichern")).trigger();
    auto& dialog = static_cast<QFileDialog&>(SideWindow(QStringLiteral("dlgPruefbericht")));
    Q_EMIT dialog.fileSelected(file);
    dialog.close();
    QFile saved(file);
    return saved.open(QIODevice::ReadOnly) ? saved.readAll() : QByteArray();
  }

  QTemporaryDir directory;
};

TEST_F(SavedReportTest, IsTheTextThatIsCopied) {
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  const QByteArray text = Saved(QStringLiteral("Bericht.txt"));
  EXPECT_TRUE(program.Report().startsWith(QString::fromUtf8(text)))
      << "the status text of the saving comes after it";
  EXPECT_GT(text.size(), 1'000);
  EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusText")),
            u"Der Prüfbericht wurde gespeichert: Bericht.txt");
}

TEST_F(SavedReportTest, IsAPdfOfOnePage) {
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  const QByteArray pdf = Saved(QStringLiteral("Bericht.PDF"));
  EXPECT_TRUE(pdf.startsWith("%PDF-"));
  EXPECT_TRUE(pdf.contains("/Count 1\n"));
  EXPECT_FALSE(pdf.contains("Beispiel"));
}

TEST_F(SavedReportTest, AFileThatCannotBeWrittenIsTold) {
  const BoxAnswerer user({PressButton(QMessageBox::Ok)});
  EXPECT_EQ(Saved(QStringLiteral("no such folder/Bericht.txt")), QByteArray());
  ASSERT_EQ(user.seen.size(), 1U);
  EXPECT_TRUE(user.seen[0].text.startsWith(u"Der Prüfbericht konnte nicht gespeichert werden:"));
}

TEST_F(MenuTest, HelpEntriesOpenTheirWindows) {
  Entry(QStringLiteral("mnuInfo")).trigger();
  SideWindow(QStringLiteral("Form_Info")).close();
  Entry(QStringLiteral("mnuBenutzerInformation")).trigger();
  Screen(SideWindow(QStringLiteral("Form_FirstUser"))).Click(QStringLiteral("Command1_1"));
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_TRUE(program.window.isVisible());
}

TEST_F(MenuTest, QuitInTheUserInformationEndsTheProgramWithoutAQuestion) {
  const BoxAnswerer user({});
  Entry(QStringLiteral("mnuBenutzerInformation")).trigger();
  Screen(SideWindow(QStringLiteral("Form_FirstUser"))).Click(QStringLiteral("Command1_0"));
  EXPECT_FALSE(program.window.isVisible());
}

TEST_F(MenuTest, QuitInTheUserInformationDuringAnActionWaitsForItsEnd) {
  const BoxAnswerer user({});
  program.library.beforeExchange = [&](int exchange) {
    if (exchange == 2) Entry(QStringLiteral("mnuBenutzerInformation")).trigger();
    if (exchange == 4) {
      Screen(SideWindow(QStringLiteral("Form_FirstUser"))).Click(QStringLiteral("Command1_0"));
    }
    EXPECT_TRUE(program.window.isVisible());
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_FALSE(program.window.isVisible());
  EXPECT_FALSE(program.module.IsLinkOpen());
}

TEST_F(MenuTest, AnActionGoesOnBehindASideWindow) {
  const BoxAnswerer user({});
  program.library.beforeExchange = [&](int exchange) {
    if (exchange == 2) Entry(QStringLiteral("mnuInfo")).trigger();
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_9")), u"Beispiel");
  SideWindow(QStringLiteral("Form_Info")).close();
  EXPECT_TRUE(program.window.isVisible());
}

}  // namespace
}  // namespace kartocheck::test
