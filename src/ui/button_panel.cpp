#include "ui/button_panel.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>

#include <algorithm>

#include "ui/accessible_roles.h"
#include "ui/picture.h"
#include "ui/plain_label.h"

namespace kartocheck {

namespace {

struct ButtonDescription {
  QStringView picture;
  QStringView caption;  // short; its mnemonic is the button's keyboard access
  QStringView tooltip;
};

constexpr auto Descriptions = std::to_array<ButtonDescription>({
    {u"full_scan", u"&Prüfen",
     u"Programm prüft die serielle(n) Schnittstelle(n) auf Vorhandensein eines MKT's"},
    {u"diagnosis", u"Dia&gnose", u"Überprüft die ausgewählte Schnittstelle im Dialog"},
    {u"terminal_status", u"&Status", u"Der MKT Status wird angezeigt"},
    {u"read_card", u"&Lesen", u"Die Krankenversichertendaten werden angezeigt/gelesen"},
    {u"copy", u"&Kopieren", u"Die Krankenversichertendaten werden in die Zwischenablage kopiert"},
    {u"reset", u"&Zurücksetzen", u"Die Anzeigefelder werden zurückgesetzt"},
});
static_assert(Descriptions.size() == ButtonPanel::ButtonCount);

// Side of a button's picture, in logical pixels.
constexpr int PictureSize = 40;

}  // namespace

ButtonPanel::ButtonPanel(QWidget* parent) : QFrame(parent) {
  InstallAccessibleRoles();
  setObjectName(QStringLiteral("Pict_MKT_Test"));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  for (int index = 0; index < ButtonCount; ++index) {
    const ButtonDescription& description = Descriptions.at(static_cast<std::size_t>(index));
    auto* button = new QToolButton(this);
    button->setObjectName(MemberName(u"CmdB_MKt_Test", index));
    button->setIcon(PictureIcon(description.picture));
    button->setIconSize({PictureSize, PictureSize});
    button->setText(description.caption.toString());
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setToolTip(description.tooltip.toString());
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QToolButton::clicked, this, [this, index] { Q_EMIT Pressed(index); });
    layout->addWidget(button);
    CmdB_MKt_Test.at(static_cast<std::size_t>(index)) = button;
  }

  int widest = 0;
  for (const QToolButton* button : CmdB_MKt_Test) {
    widest = std::max(widest, button->sizeHint().width());
  }
  for (QToolButton* button : CmdB_MKt_Test) button->setMinimumWidth(widest);
}

QWidget* ButtonPanel::Button(int index) const {
  return CmdB_MKt_Test.at(static_cast<std::size_t>(index));
}

// The Enter key presses the button that has the focus, as the space bar does.
void ButtonPanel::keyPressEvent(QKeyEvent* event) {
  auto* button = qobject_cast<QToolButton*>(focusWidget());
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && button != nullptr) {
    button->click();
  } else {
    QFrame::keyPressEvent(event);
  }
}

}  // namespace kartocheck
