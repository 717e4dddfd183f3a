#include "diagnosis/port_hints.h"

#include "platform/system_names.h"

namespace kartocheck {

namespace {

QString Quoted(const QString& name) {
  return u'"' + name + u'"';
}

QString PermissionHint(const PortTrouble& trouble) {
  const QString refused = u"Sie dürfen " + trouble.Devices.join(u", ") + u" nicht öffnen. ";
  if (trouble.Group.isEmpty()) {
    return refused + u"Bitten Sie Ihre Systemverwaltung um dieses Recht.";
  }
  return refused + u"Lassen Sie sich in die Gruppe " + Quoted(trouble.Group) +
         u" aufnehmen und melden Sie sich neu an.";
}

}  // namespace

QString PortHint(const PortTrouble& trouble) {
  const ReaderServiceAdvice advice = AdviceOfThisSystem();
  switch (trouble.Kind) {
    case PortTroubleKind::None:
      break;
    case PortTroubleKind::NotInstalled:
      return advice.NotInstalled;
    case PortTroubleKind::NoService:
      return advice.NotRunning;
    case PortTroubleKind::NoReader:
      return advice.NoReader;
    case PortTroubleKind::ServiceRefuses:
      return advice.Refuses;
    case PortTroubleKind::CardHeld:
      return QStringLiteral(
          "Ein anderes Programm benutzt die Karte im Kartenleser. Beenden Sie es und versuchen Sie "
          "es noch einmal.");
    case PortTroubleKind::NotPermitted:
      return PermissionHint(trouble);
    case PortTroubleKind::MuteCard:
      return QStringLiteral(
          "Die Karte im Kartenleser antwortet nicht. Stecken Sie sie richtig herum ein und säubern "
          "Sie den Chip; eine KVK liest nur ein Kartenterminal.");
    case PortTroubleKind::ReaderGone:
      return QStringLiteral(
          "Der Kartenleser wurde während der Benutzung abgezogen. Stecken Sie ihn wieder an und "
          "versuchen Sie es noch einmal.");
  }
  return {};
}

QStringList PortHints(const std::vector<PortTrouble>& troubles) {
  QStringList hints;
  for (const PortTrouble& trouble : troubles) hints.append(PortHint(trouble));
  return hints;
}

}  // namespace kartocheck
