#pragma once

#include <QMessageBox>
#include <QObject>

#include <deque>
#include <functional>
#include <map>

#include "gui/flow_logs/flow_log.h"

namespace kartocheck::test {

// Which button of a question is pressed: Yes or OK, No or Cancel, or the one that Enter would
// press.
enum class Manner { Confirming, Refusing, Preselected };

// The user in front of the boxes and of the result of a full scan: notes each and goes on. A
// question that comes back again and again within a step is refused in the end; otherwise whoever
// always wants another try never finishes.
class LoggedUser final : public QObject {
 public:
  // look: notes what is seen behind a box.
  LoggedUser(Manner manner, std::function<void()> look, FlowLog& log);

  void BeginStep() { asked_.clear(); }
  // Answers to the next questions, true for Yes or OK; then the manner holds again.
  void AnswerNext(std::deque<bool> answers) { answers_ = std::move(answers); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Answer(QMessageBox& box);
  [[nodiscard]] QAbstractButton* ButtonFor(const QMessageBox& box);
  [[nodiscard]] Manner MannerFor(const QMessageBox& box);
  void ReadResult(QWidget& window);

  Manner manner_;
  std::function<void()> look_;
  FlowLog& log_;
  std::deque<bool> answers_;
  std::map<QString, int> asked_;  // how often, by the question's text, within this step
};

}  // namespace kartocheck::test
