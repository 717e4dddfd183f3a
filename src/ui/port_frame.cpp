#include "ui/port_frame.h"

#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMouseEvent>
#include <QRadioButton>
#include <QSignalBlocker>

#include <algorithm>

#include "ui/accessible_roles.h"
#include "ui/plain_label.h"
#include "ui/value_field.h"

namespace kartocheck {

namespace {

constexpr auto PortTexts =
    std::to_array<QStringView>({u"COM 1 ", u"COM 2", u"COM 3", u"COM 4", u"weitere ..."});
static_assert(PortTexts.size() == SlotCount);
constexpr int FurtherPortMember = FurtherPortSlot - 1;

// The longest entry of the list of further ports.
constexpr QStringView WidestEntry = u"USB Device 256 (CTAPI pn=8447)";
// Lines of the list of further ports that are seen without scrolling, at least.
constexpr int LeastVisibleLines = 4;
// And while there is a hint below it.
constexpr int LeastLinesBesideHint = 1;

// The text beside an option button; a click on it is a click on the button.
class OptionLabel final : public QLabel {
 public:
  OptionLabel(QRadioButton& option, QWidget* parent) : QLabel(parent), option_(option) {}

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos())) option_.click();
  }

 private:
  QRadioButton& option_;
};

int RoomAroundLines(const QListWidget& list) {
  return 2 * (list.frameWidth() + list.fontMetrics().averageCharWidth());
}

}  // namespace

PortFrame::PortFrame(QWidget* parent) : QGroupBox(QStringLiteral("Schnittstellen"), parent) {
  InstallAccessibleRoles();
  setObjectName(QStringLiteral("Fram_Comx"));
  portEnabled_.fill(true);

  auto* layout = new QGridLayout(this);
  layout->setColumnStretch(1, 1);
  for (int member = 0; member < SlotCount; ++member) AddOption(member);
  Opti_Comx[0]->setChecked(true);
  CreateList();
  layout->addWidget(List1, SlotCount, 0, 1, 2);
  layout->setRowStretch(SlotCount, 1);
  Labl_Schnittstelle = NewHint(QStringLiteral("Labl_Schnittstelle"));
  layout->addWidget(Labl_Schnittstelle, SlotCount + 1, 0, 1, 2);
  Labl_Hinweis = NewHint(QStringLiteral("Labl_Hinweis"));
  layout->addWidget(Labl_Hinweis, SlotCount + 2, 0, 1, 2);
  UpdateEnabled();
}

void PortFrame::CreateList() {
  List1 = new QListWidget(this);
  List1->setObjectName(QStringLiteral("List1"));
  List1->setAccessibleName(QStringLiteral("Weitere Schnittstellen"));
  List1->setFocusPolicy(Qt::NoFocus);
  // Not the current row: that is set too when the list gets the focus.
  connect(List1, &QListWidget::itemSelectionChanged, this, [this] { ReportChosenEntry(); });
  // The chosen entry again, after another port.
  connect(List1, &QListWidget::itemClicked, this, [this] {
    if (!Opti_Comx[FurtherPortMember]->isChecked()) ReportChosenEntry();
  });
  List1->setMinimumWidth(List1->fontMetrics().horizontalAdvance(WidestEntry.toString()) +
                         RoomAroundLines(*List1));
  SetLeastLines(LeastVisibleLines);
  List1->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void PortFrame::SetLeastLines(int lines) {
  List1->setMinimumHeight(List1->fontMetrics().lineSpacing() * lines + RoomAroundLines(*List1));
}

ValueField* PortFrame::NewHint(const QString& name) {
  auto* hint = new ValueField(name, this);
  hint->SetCaption(QStringLiteral("Hinweis:"));
  // As wide as the list, however long the sentences are.
  QSizePolicy policy = hint->sizePolicy();
  policy.setHorizontalPolicy(QSizePolicy::Ignored);
  hint->setSizePolicy(policy);
  hint->hide();
  return hint;
}

void PortFrame::AddOption(int member) {
  const auto index = static_cast<std::size_t>(member);
  const QString text = PortTexts.at(index).toString();
  auto* option = new QRadioButton(this);
  option->setObjectName(MemberName(u"Opti_Comx", member));
  option->setAccessibleName(text.trimmed());
  option->installEventFilter(this);
  connect(option, &QRadioButton::clicked, this, [this, member] {
    ShowFacts();
    if (isArrowPressed_) {
      Q_EMIT PortMovedTo(member);
    } else {
      Q_EMIT PortChosen(member);
    }
  });

  auto* label = new OptionLabel(*option, this);
  label->setObjectName(MemberName(u"Labe_Comx", member));
  label->setTextFormat(Qt::PlainText);
  label->setText(text);
  label->setBuddy(option);

  auto* rows = static_cast<QGridLayout*>(layout());
  rows->addWidget(option, member, 0);
  rows->addWidget(label, member, 1);
  Opti_Comx.at(index) = option;
  Labe_Comx.at(index) = label;
}

void PortFrame::ReportChosenEntry() {
  const QList<QListWidgetItem*> chosen = List1->selectedItems();
  if (!chosen.isEmpty()) Q_EMIT FurtherPortChosen(List1->row(chosen.first()));
}

void PortFrame::EnablePort(int slot, bool enabled) {
  portEnabled_.at(static_cast<std::size_t>(slot - 1)) = enabled;
  UpdateEnabled();
}

void PortFrame::ShowPortList(const PortList& list) {
  const QSignalBlocker quiet(List1);
  // The list is the same where an entry of it was just chosen: its items are in use then.
  if (list.ports != listed_) {
    listed_ = list.ports;
    List1->clear();
    for (const ListedPort& port : listed_) {
      auto* item = new QListWidgetItem(port.line, List1);
      item->setToolTip(PlainToolTip(port.device));
      item->setData(Qt::AccessibleDescriptionRole, port.device);
    }
  }
  // An empty list has nothing to show the focus on.
  List1->setFocusPolicy(listed_.empty() ? Qt::NoFocus : Qt::StrongFocus);
  List1->setCurrentRow(list.chosen);
  // Where nothing is chosen the first entry is the one that the space key chooses.
  if (list.chosen < 0) List1->setCurrentRow(0, QItemSelectionModel::NoUpdate);
  ShowFacts();
}

void PortFrame::ShowDevice(const QString& device) {
  device_ = device;
  ShowFacts();
}

void PortFrame::ShowPortHint(int slot, const QString& hint) {
  const auto member = static_cast<std::size_t>(slot - 1);
  hints_.at(member) = hint;
  ShowFacts();
  QRadioButton* const option = Opti_Comx.at(member);
  option->setToolTip(PlainToolTip(hint));
  option->setAccessibleDescription(hint);
  Labe_Comx.at(member)->setToolTip(PlainToolTip(hint));
  if (slot == FurtherPortSlot) {
    List1->setToolTip(PlainToolTip(hint));
    List1->setAccessibleDescription(hint);
  }
}

void PortFrame::ShowHintsWithoutReader(const QStringList& hints) {
  Labl_Hinweis->ShowValue(hints.join(u'\n'));
  Labl_Hinweis->setVisible(!hints.isEmpty());
  GiveHintRoom();
}

// The option button that has the focus, or else the marked one, of which there always is one.
std::size_t PortFrame::ShownMember() const {
  auto shown = std::find_if(Opti_Comx.begin(), Opti_Comx.end(),
                            [](const QRadioButton* option) { return option->hasFocus(); });
  if (shown == Opti_Comx.end()) {
    shown = std::find_if(Opti_Comx.begin(), Opti_Comx.end(),
                         [](const QRadioButton* option) { return option->isChecked(); });
  }
  return static_cast<std::size_t>(shown - Opti_Comx.begin());
}

// The device behind that port, and what the hint says.
void PortFrame::ShowFacts() {
  const std::size_t member = ShownMember();
  QStringList facts;
  if (member == FurtherPortMember) facts.append(device_);
  facts.append(hints_.at(member));
  // An empty list says how to fill it.
  if (listed_.empty()) facts.append(hints_[FurtherPortMember]);
  facts.removeAll(QString());
  facts.removeDuplicates();
  Labl_Schnittstelle->ShowValue(facts.join(u'\n'));
  Labl_Schnittstelle->setVisible(!facts.isEmpty());
  GiveHintRoom();
}

// In a low window it is the list that gives way.
void PortFrame::GiveHintRoom() {
  const bool hasHint = !Labl_Schnittstelle->isHidden() || !Labl_Hinweis->isHidden();
  SetLeastLines(hasHint ? LeastLinesBesideHint : LeastVisibleLines);
  for (ValueField* hint : {Labl_Schnittstelle, Labl_Hinweis}) {
    if (!hint->isHidden()) hint->setMinimumHeight(hint->heightForWidth(List1->width()));
  }
}

// An arrow key marks the next option button and clicks it.
bool PortFrame::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
    ShowFacts();
  }
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    isArrowPressed_ =
        key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
  }
  if (event->type() == QEvent::KeyRelease || event->type() == QEvent::MouseButtonPress) {
    isArrowPressed_ = false;
  }
  return QGroupBox::eventFilter(watched, event);
}

void PortFrame::resizeEvent(QResizeEvent* event) {
  QGroupBox::resizeEvent(event);
  GiveHintRoom();
}

void PortFrame::MarkPort(int member) {
  Opti_Comx.at(static_cast<std::size_t>(member))->setChecked(true);
  ShowFacts();
}

void PortFrame::SetActionRunning(bool running) {
  actionRunning_ = running;
  UpdateEnabled();
}

void PortFrame::UpdateEnabled() {
  for (std::size_t member = 0; member < portEnabled_.size(); ++member) {
    const bool enabled = portEnabled_.at(member) && !actionRunning_;
    Opti_Comx.at(member)->setEnabled(enabled);
    Labe_Comx.at(member)->setEnabled(enabled);
  }
  List1->setEnabled(!actionRunning_);
}

}  // namespace kartocheck
