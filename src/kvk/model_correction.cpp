#include "kvk/model_correction.h"

#include "platform/port.h"

namespace kartocheck {

void CorrectModel(QStringView approvalNumber, KvkFormat format, Port port, TerminalInfo& info) {
  if (approvalNumber == u"103") {
    if (info.ProductCode == product_code::SerieDelta || port.IsUsb()) {
      info.ModelName = u"Serie Delta";
      info.ProductCode = product_code::SerieDelta;
    } else {
      info.ModelName = u"Modell Vedra F/Serie Delta";
    }
    info.ManufacturerId = MakerNorva;
  } else if (approvalNumber == u"109") {
    info.ModelName = u"Serie Sigma";
    info.ManufacturerId = MakerNorva;
    if (format == KvkFormat::Template) info.ProductCode = product_code::SerieSigma;
  } else {
    info.ModelName = u"Kein Vedra F/Serie Sigma";
    info.ManufacturerId = u"?????";
  }
}

}  // namespace kartocheck
