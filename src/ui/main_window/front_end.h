#pragma once

#include <QString>

#include "ui/main_window/data_frame.h"

namespace kartocheck {

// What the flows ask of the front end that started them, besides messages and display.
class FrontEnd {
 public:
  virtual void ShowData(const DataFrame& frame) = 0;
  // Empties the value fields; title and labels stay.
  virtual void ClearData() = 0;
  // While an action runs, whatever could start a second one is disabled.
  virtual void SetActionRunning(bool running) = 0;
  virtual void CopyToClipboard(const QString& text) = 0;
  // Closes the program's window without a question.
  virtual void CloseNow() = 0;

  FrontEnd(const FrontEnd&) = delete;
  FrontEnd& operator=(const FrontEnd&) = delete;

 protected:
  FrontEnd() = default;
  virtual ~FrontEnd() = default;
};

}  // namespace kartocheck
