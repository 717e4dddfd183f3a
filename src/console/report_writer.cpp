#include "console/report_writer.h"

#include <ostream>

namespace kartocheck {

void HandOver(std::ostream& out) {
  out.flush();
  if (!out) throw NotWritten();
}

}  // namespace kartocheck
