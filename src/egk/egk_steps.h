#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include "egk/egk_reader.h"
#include "egk/vsd_kind.h"

// What the two eGK readers share.
namespace kartocheck {

// Shows an information box.
void TellEgk(const EgkTarget& target, const QString& text);

// The card's answer to the SELECT of the health-care application, DF.HCA.
enum class HcaSelection {
  Selected,
  Failed,      // the exchange failed; told
  NotOnCard,   // "6A82"; told
  NotAllowed,  // "6900"; not told
  Refused,     // deactivated ("6283") or any other status word; told
};

// Selects DF.HCA and reports what the user has to know. failedText: told when the exchange fails.
[[nodiscard]] HcaSelection SelectHca(const EgkTarget& target, const QString& failedText);

// Hands a compressed block to the decoder and reports a failure of it. found: this read's own
// element list.
void HandToDecoder(const EgkTarget& target, VsdKind kind, QByteArrayView compressed,
                   InsuredData& found);

}  // namespace kartocheck
