#pragma once

#include <QTime>

#include <deque>
#include <functional>

#include "platform/dialogs.h"
#include "platform/display.h"

namespace kartocheck {

// A line of what a run told its user.
struct RunEntry {
  QTime time;
  QString text;  // a message may have several lines, with CR LF
};

// Stands between the procedures and the front end: passes everything on, and keeps the status texts
// and messages of this run. These never hold data of a card; what is shown of a slot is not kept.
class RunRecorder final : public Dialogs, public Display {
 public:
  // Entries that are kept; of a longer run the first ones are dropped.
  static constexpr std::size_t MostEntries = 2'000;
  // Status texts in a row that differ in their numbers only, as of a look through all ports: of a
  // longer row the last one stands for all that are dropped.
  static constexpr std::size_t LongestRow = 5;

  using Clock = std::function<QTime()>;
  RunRecorder(Dialogs& dialogs, Display& display, Clock clock);

  [[nodiscard]] const std::deque<RunEntry>& Entries() const { return entries_; }

  void Tell(Icon icon, const QString& title, const QString& text) override;
  [[nodiscard]] Answer Ask(const Question& question) override;

  void ShowStatusText(const QString& text) override;

 private:
  void Keep(const QString& text);
  [[nodiscard]] bool IsInLongRow(const QString& text) const;

  Dialogs& dialogs_;
  Display& display_;
  Clock clock_;
  std::deque<RunEntry> entries_;
};

}  // namespace kartocheck
