#pragma once

#include <QtGlobal>

namespace kartocheck {

// Where Qt can open no window it ends the program by abort, with advice for developers. Whether it
// will cannot be known beforehand: it tries the platforms whose plugins are installed, by more than
// the variables that name a display, and a display that is named need not be there. As long as this
// lives the program tells its user the way without a window instead, with the reasons that Qt had,
// and ends with exit status 3. One at a time.
class NoDisplayWatch {
 public:
  NoDisplayWatch();
  // What Qt had to say is said now: nothing of it was the end.
  ~NoDisplayWatch();
  NoDisplayWatch(const NoDisplayWatch&) = delete;
  NoDisplayWatch& operator=(const NoDisplayWatch&) = delete;

 private:
  QtMessageHandler before_;
};

}  // namespace kartocheck
