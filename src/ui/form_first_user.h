#pragma once

#include <QDialog>

#include <array>

class QPushButton;
class QTextEdit;

namespace kartocheck {

// The user information, shown at every start and from the help menu.
class Form_FirstUser final : public QDialog {
  Q_OBJECT

 public:
  explicit Form_FirstUser(QWidget* parent);

  // Whether the program goes on. True until "&Beenden" is pressed; Escape and the close box leave
  // it.
  [[nodiscard]] bool ContinueFlag() const { return continueFlag_; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void AddButtons();
  void ShowDocument();

  bool continueFlag_ = true;
  QTextEdit* RichTextBox1 = nullptr;
  std::array<QPushButton*, 2> Command1{};
};

}  // namespace kartocheck
