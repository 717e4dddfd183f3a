#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "console/port_report.h"
#include "platform/dialogs.h"
#include "platform/display.h"
#include "ui/main_window/front_end.h"

namespace kartocheck {

// Whether records of mobile terminals may be read, which erases them there.
enum class StoredRecords { Keep, Erase };

// What becomes of a status text when the next one comes. A sweep over the ports writes hundreds.
enum class StatusLine {
  Kept,         // one line each
  Overwritten,  // on a terminal: they share a line
};

// The next line that a person types; nothing at the end of the input.
using LineSource = std::function<std::optional<std::string>()>;

// The front end without a window: status texts and messages go to a stream as lines. Without a
// person, questions get the safe answer, No or Cancel; only the warning that a stored record will
// be erased is agreed to, where the caller allows it. With one, they are asked: j or n, Enter takes
// the preselected answer, and the end of the input means No or Cancel.
class ConsoleFrontEnd final : public Dialogs, public Display, public FrontEnd {
 public:
  ConsoleFrontEnd(std::ostream& messages, StatusLine statusLine, StoredRecords storedRecords);

  // Asks a person.
  ConsoleFrontEnd(std::ostream& messages, StatusLine statusLine, LineSource answers);

  // Ends a line that the next status text would overwrite. To be called before anything else is
  // written to the terminal.
  void EndStatusLine();

  // The boxes since the last call.
  [[nodiscard]] std::vector<ReportedMessage> TakeMessages();

  // Why the sweep found no reader; empty where it found one or did not take place.
  [[nodiscard]] const QStringList& HintsWithoutReader() const { return hintsWithoutReader_; }

  void Tell(Icon icon, const QString& title, const QString& text) override;
  [[nodiscard]] Answer Ask(const Question& question) override;

  void ShowStatusText(const QString& text) override;
  void ShowProgress(int /*percent*/) override {}
  bool ShowFrameX(int frame) override;
  void ShowDiagnosisStep(const QString& /*step*/) override {}
  void EnablePort(int /*slot*/, bool /*enabled*/) override {}
  void SetLamp(Lamp /*lamp*/, LampState /*state*/) override {}
  void ShowSlot(int /*slot*/) override {}

  void ShowData(const DataFrame& /*frame*/) override {}
  void ClearData() override {}
  void ShowPortList(const QStringList& /*lines*/, int /*chosen*/) override {}
  void MarkPort(int /*member*/) override {}
  void ShowPortHint(int /*slot*/, const QString& /*hint*/) override {}
  void ShowHintsWithoutReader(const QStringList& hints) override { hintsWithoutReader_ = hints; }
  void NameFurtherPort(const QString& /*name*/) override {}
  void ShowStatusTab(int /*slot*/) override {}
  void MarkButton(int /*index*/) override {}
  void ShowDiagnosedPort(const QString& name) override { ShowStatusText(name); }
  void ShowScanResult(const ScanResult& /*result*/) override {}
  void SetActionRunning(bool /*running*/) override {}
  void CopyToClipboard(const QString& /*text*/) override {}
  void CloseNow() override {}

 private:
  void Write(const QString& title, const QString& text);
  [[nodiscard]] Answer SafeAnswer(const Question& question) const;
  [[nodiscard]] Answer AskPerson(const Question& question);

  std::ostream& out_;
  StatusLine statusLine_;
  StoredRecords storedRecords_ = StoredRecords::Keep;
  LineSource answers_;         // none without a person
  qsizetype statusWidth_ = 0;  // characters on a line that is not ended
  int frame_ = -1;
  std::vector<ReportedMessage> messages_;
  QStringList hintsWithoutReader_;
};

}  // namespace kartocheck
