#include "diagnosis/insert_card_prompt.h"

#include "text/lines.h"

namespace kartocheck {

namespace {

// The fixed lines; the port follows in the line behind them.
QString FixedLines(bool mobile) {
  const QString card = Lines({u" Bitte eine Krankenversichertenkarte in ",
                              u" Kartenkontaktiereinheit 1 einführen. ", u"", u""});
  const QString mobileHint = Lines({u" Ist am Vedra Handy F der PC-Mode auf ",
                                    u" Handy lesen eingestellt oder am Serie Sigma Gerät ",
                                    u" die Betriebsart Mobil PC bzw. Mob. PC+Weiche oder ",
                                    u" am Serie Delta Gerät die Betriebsart Mobil eingestellt, ",
                                    u" so wird der gelesene Datensatz durch ",
                                    u" diese Testsoftware automatisch gelöscht! ", u"", u""});
  const QString port = Lines({u" Das Chipkartenterminal verwendet die Schnittstelle: ", u"", u""});
  return card + (mobile ? mobileHint : QString()) + port;
}

QString PortLine(Port port) {
  return (port.IsUsb() ? u" USB Device " : u" COM  ") + QString::number(port.ShownNumber());
}

Question Prompt(const QString& text, Answer preselected) {
  return {.title = Dialogs::Title.toString(),
          .text = text,
          .icon = Icon::Exclamation,
          .buttons = Buttons::OkCancel,
          .preselected = preselected};
}

}  // namespace

Question InsertCardPrompt(Port port, bool mobile) {
  return Prompt(FixedLines(mobile) + PortLine(port), Answer::Cancel);
}

Question InsertCardPromptOfDiagnosis(Port port, bool mobile) {
  return Prompt(FixedLines(mobile) + QString::number(port.Number()) + u") ",
                mobile ? Answer::Cancel : Answer::Ok);
}

}  // namespace kartocheck
