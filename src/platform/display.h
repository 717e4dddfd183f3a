#pragma once

#include <QString>

namespace kartocheck {

// The two activity lamps, by their item number.
enum class Lamp { Card = 0, Terminal = 1 };

enum class LampState {
  Off,      // colour of a button face: no link
  Waiting,  // yellow (255, 255, 0): a command is outstanding
  Answered  // green (0, 255, 0): a response has come
};

// The part of the front end that procedures write to while they run.
class Display {
 public:
  virtual void ShowStatusText(const QString& text) = 0;

  // 0 to 100 percent.
  virtual void ShowProgress(int percent) = 0;

  // Makes one of the frames 0 to 3 the visible one (wait, dialog check, terminal status, data).
  // False where it was visible already; nothing changes then.
  virtual bool ShowFrameX(int frame) = 0;

  // What the guided diagnosis is asking about, for the dialog-check frame.
  virtual void ShowDiagnosisStep(const QString& step) = 0;

  // Lets the user choose the port of the slot, 1 to 5, or not.
  virtual void EnablePort(int slot, bool enabled) = 0;

  virtual void SetLamp(Lamp lamp, LampState state) = 0;

  // Shows the records of the slot, 1 to 5, anew.
  virtual void ShowSlot(int slot) = 0;

  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

 protected:
  Display() = default;
  virtual ~Display() = default;
};

}  // namespace kartocheck
