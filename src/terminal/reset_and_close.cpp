#include "terminal/reset_and_close.h"

#include "terminal/command_catalogue.h"

namespace kartocheck {

void ResetAndClose(CtSession& link) {
  (void)link.CtExchange(CommandCatalogue::ResetCt, Unit::Terminal);
  link.CtClose();
}

}  // namespace kartocheck
