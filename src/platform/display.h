#pragma once

#include <QString>

namespace kartocheck {

// Where procedures tell what they are doing: the status text.
class Display {
 public:
  virtual void ShowStatusText(const QString& text) = 0;

  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

 protected:
  Display() = default;
  virtual ~Display() = default;
};

}  // namespace kartocheck
