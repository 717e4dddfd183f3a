#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "console/port_report.h"
#include "platform/dialogs.h"
#include "platform/display.h"

namespace kartocheck {

// Whether records of mobile terminals may be read, which erases them there.
enum class StoredRecords { Keep, Erase };

// What becomes of status texts. A sweep over the ports writes hundreds.
enum class StatusLine {
  Kept,         // one line each
  Overwritten,  // on a terminal: they share a line, which they do not leave
  LeftOut,
};

// What is written beside the report.
struct MessageOptions {
  StatusLine statusLine = StatusLine::Kept;
  // How many characters a line of the terminal holds at the moment, where it tells.
  std::function<std::optional<int>()> columns = [] { return std::optional<int>(); };
  // What is asked of a person is shown all the same.
  bool areBoxesShown = true;
};

// The next line that a person types; nothing at the end of the input.
using LineSource = std::function<std::optional<std::string>()>;

// The front end without a window: status texts and messages go to a stream as lines. Without a
// person, questions get the safe answer, No or Cancel; only the warning that a stored record will
// be erased is agreed to, where the caller allows it. With one, they are asked: j or n, Enter takes
// the preselected answer, and the end of the input means No or Cancel.
class ConsoleFrontEnd final : public Dialogs, public Display {
 public:
  ConsoleFrontEnd(std::ostream& messages, MessageOptions options, StoredRecords storedRecords);

  // Asks a person.
  ConsoleFrontEnd(std::ostream& messages, MessageOptions options, LineSource answers);

  // Ends a line that the next status text would overwrite. To be called before anything else is
  // written to the terminal.
  void EndStatusLine();

  // The boxes since the last call.
  [[nodiscard]] std::vector<ReportedMessage> TakeMessages();

  // What completes the report that was begun, when the program ends after a fatal message. What it
  // refers to outlives every call of the run to the library.
  void WhenFatal(std::function<void()> complete) { complete_ = std::move(complete); }
  void CompleteAfterFatal();
  // That the report could not be written.
  void TellNotWritten();

  void Tell(Icon icon, const QString& title, const QString& text) override;
  [[nodiscard]] Answer Ask(const Question& question) override;

  void ShowStatusText(const QString& text) override;

 private:
  [[nodiscard]] bool IsShown() const { return options_.areBoxesShown || answers_; }
  void Write(const QString& title, const QString& text);
  [[nodiscard]] Answer SafeAnswer(const Question& question) const;
  [[nodiscard]] Answer AskPerson(const Question& question);

  std::ostream& out_;
  MessageOptions options_;
  StoredRecords storedRecords_ = StoredRecords::Keep;
  LineSource answers_;         // none without a person
  qsizetype statusWidth_ = 0;  // characters on a line that is not ended
  std::vector<ReportedMessage> messages_;
  std::function<void()> complete_;
};

}  // namespace kartocheck
