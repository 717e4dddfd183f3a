#pragma once

#include <QString>

#include "ui/main_window/scan_result.h"

namespace kartocheck {

// What the flows ask of the window that started them. Everything else it draws from the view state.
class FrontEnd {
 public:
  // Shows the result of a full scan and waits until the user has seen it.
  virtual void ShowScanResult(const ScanResult& result) = 0;
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
