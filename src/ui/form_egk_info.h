#pragma once

#include <QButtonGroup>
#include <QDialog>

#include <array>

#include "ui/main_window/egk_info.h"
#include "ui/message_boxes.h"

class QGroupBox;
class QHBoxLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class QToolButton;
class QVBoxLayout;

namespace kartocheck {

class ElementGrid;

// What the eGK reads of a slot kept besides the insured person's data: element lists, XML texts,
// and facts of the card or of the stored record. Shows what it was given when it was opened.
class Form_egK_Info final : public QDialog {
  Q_OBJECT

 public:
  Form_egK_Info(EgkInfo info, QWidget* parent);

 private:
  [[nodiscard]] QWidget* NewListView();
  [[nodiscard]] QWidget* NewXmlView();
  [[nodiscard]] QWidget* NewInfoView();
  [[nodiscard]] QLabel* NewInfoLine(int number, QWidget* parent);
  void AddCommands(QVBoxLayout* layout);
  [[nodiscard]] QPushButton* NewCommand(int number, QStringView caption, QStringView picture,
                                        QHBoxLayout* row);

  void ShowList(VsdKind kind);
  void ShowXmlTexts();
  void ShowInfo();

  const EgkInfo info_;
  VsdKind kind_ = VsdKind::Pd;  // whose list is shown
  MessageBoxes boxes_;

  QLabel* Label1 = nullptr;  // heading of the current view
  QLabel* Label8 = nullptr;  // validation text of the shown kind
  QStackedWidget* views_ = nullptr;
  PerVsdKind<QToolButton*> kinds_;
  QButtonGroup kindGroup_;
  ElementGrid* MSFlexGrid1 = nullptr;
  QPlainTextEdit* Text1 = nullptr;
  QGroupBox* Frame2 = nullptr;
};

}  // namespace kartocheck
