#include "ui/form_mkt_test.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QShortcut>
#include <QStatusBar>

#include <algorithm>

#include "text/status_texts.h"
#include "ui/button_panel.h"
#include "ui/content_area.h"
#include "ui/form_daten_info.h"
#include "ui/insured_data_frame.h"
#include "ui/notice_frames.h"
#include "ui/picture.h"
#include "ui/plain_label.h"
#include "ui/port_frame.h"
#include "ui/screen_room.h"
#include "ui/secret_clipboard.h"
#include "ui/terminal_access_frame.h"
#include "ui/terminal_status_frame.h"
#include "ui/text_label.h"
#include "ui/top_row.h"

namespace kartocheck {

namespace {

// Between the edge of the window and the texts of the status bar, in logical pixels.
constexpr int StatusBarMargin = 6;
constexpr int FullProgress = 100;
// No window is so wide: a status text stands on one line where it can.
constexpr int MostStatusCharacters = 1000;
// And it leaves most of the window to the rest.
constexpr int MostStatusLines = 5;

QString GeometryKey() {
  return QStringLiteral("Form_MKT_Test/geometry");
}

}  // namespace

Form_MKT_Test::Form_MKT_Test(const Options& options)
    : boxes_(*this), settings_(options.settings), facts_(options.facts) {
  setObjectName(QStringLiteral("Form_MKT_Test"));
  setWindowTitle(QStringLiteral("KartoCheck"));
  setWindowIcon(PictureIcon(u"kartocheck"));
  CreateFileMenu();
  CreateHelpMenu();
  CreateFrames();
  CreateStatusBar(options.simulation);
  CreateLayout();
  ShowFrameX(static_cast<int>(Frame::Data));
  UpdateEnabled();
  RestoreGeometry();

  connect(qApp, &QGuiApplication::commitDataRequest, this, [this] { CloseForSystem(); });
}

Form_MKT_Test::~Form_MKT_Test() = default;

// In the order in which the Tab key walks through them: from what is used first to what is only
// looked at.
void Form_MKT_Test::CreateFrames() {
  auto* content = new QWidget(this);
  // Its parts scroll by themselves; all of it does on a screen that is smaller still.
  setCentralWidget(Scrolling(content, this));

  Pict_MKT_Test = new ButtonPanel(content);
  connect(Pict_MKT_Test, &ButtonPanel::Pressed, this, [this](int index) {
    if (flow_ != nullptr) flow_->Button(index);
  });
  Fram_Comx = new PortFrame(content);
  connect(Fram_Comx, &PortFrame::PortChosen, this, [this](int member) {
    if (flow_ != nullptr) flow_->ChoosePort(member);
  });
  connect(Fram_Comx, &PortFrame::PortMovedTo, this, [this](int member) {
    if (flow_ != nullptr) flow_->MoveToPort(member);
  });
  connect(Fram_Comx, &PortFrame::FurtherPortChosen, this, [this](int index) {
    if (flow_ != nullptr) flow_->ChooseFurtherPort(index);
  });
  Fram_MKTStatus = new TerminalAccessFrame(content);
  cmdeGK = new QPushButton(QStringLiteral("Info eGK Daten"), content);
  cmdeGK->setObjectName(QStringLiteral("cmdeGK"));
  cmdeGK->setToolTip(QStringLiteral("Anzeige weiterer Daten der elektronischen Gesundheitskarte."));
  connect(cmdeGK, &QPushButton::clicked, this, [this] { ShowEgkInfo(); });

  wait_ = new WaitFrame(content);
  connect(wait_, &WaitFrame::EndRequested, this, &Form_MKT_Test::Escape);
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, &Form_MKT_Test::Escape);
  dialogCheck_ = new DialogCheckFrame(content);
  terminalStatus_ = new TerminalStatusFrame(content);
  connect(terminalStatus_, &TerminalStatusFrame::TabChosen, this, [this] {
    if (flow_ != nullptr) flow_->ChooseStatusTab();
  });
  insuredData_ = new InsuredDataFrame(content);
  Labl_Meldung = PlainLabel(QStringLiteral("Labl_Meldung"), QString(), content);
  Labl_Meldung->setWordWrap(true);
  Labl_Meldung->hide();
  Fram_Show = {Scrolling(wait_, content), Scrolling(dialogCheck_, content), terminalStatus_,
               insuredData_};
  for (int frame = 0; frame < static_cast<int>(Fram_Show.size()); ++frame) {
    QWidget* widget = Fram_Show.at(static_cast<std::size_t>(frame));
    widget->setObjectName(MemberName(u"Fram_Show", frame));
    // All frames share one place; it keeps its size whichever of them is shown.
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
    widget->hide();
  }
}

// Ends what the user waits for: the call that the terminal has not answered, and the search.
void Form_MKT_Test::Escape() {
  if (flow_ == nullptr) return;
  flow_->GiveUp();
  flow_->EndSearch();
}

void Form_MKT_Test::ShowLateness(bool isLate) {
  wait_->OfferToGiveUp(isLate);
  giveUp_->setVisible(isLate && !wait_->isVisible());
  if (isLate) {
    textBeforeLateness_ = Labl_StatusText->text();
  } else if (Labl_StatusText->text() == status_text::NotAnsweredYet) {
    // The answer has come: what was being done goes on.
    ShowStatusText(textBeforeLateness_);
  }
}

void Form_MKT_Test::CreateStatusBar(bool simulation) {
  statusBar()->setObjectName(QStringLiteral("StatusBar1"));
  statusBar()->setContentsMargins(StatusBarMargin, 0, StatusBarMargin, 0);
  QLabel* caption = PlainLabel(QStringLiteral("Labl_Status"), QStringLiteral("Status:"), this);
  Labl_StatusText =
      new WrappingLabel(QStringLiteral("Labl_StatusText"), MostStatusCharacters, this);
  MakeSelectable(*Labl_StatusText, Qt::TextSelectableByMouse);
  Labl_StatusText->setMaximumHeight(fontMetrics().lineSpacing() * MostStatusLines);
  // Not the tool tip, which says the same again.
  Labl_StatusText->setAccessibleDescription(QStringLiteral(" "));
  caption->setBuddy(Labl_StatusText);
  statusBar()->addWidget(caption);
  statusBar()->addWidget(Labl_StatusText, 1);
  if (simulation) {
    QLabel* label =
        PlainLabel(QStringLiteral("Labl_Simulation"), QStringLiteral("Simulation"), this);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    statusBar()->addPermanentWidget(label);
  }
  giveUp_ = GiveUpButton(QStringLiteral("Butt_Abbrechen"), this);
  connect(giveUp_, &QPushButton::clicked, this, &Form_MKT_Test::Escape);
  statusBar()->addPermanentWidget(giveUp_);
  ProgressBar1 = new QProgressBar(this);
  ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
  ProgressBar1->setAccessibleName(QStringLiteral("Fortschritt"));
  ProgressBar1->setRange(0, FullProgress);
  ShowProgress(0);
  statusBar()->addPermanentWidget(ProgressBar1);
}

void Form_MKT_Test::CreateLayout() {
  QWidget* content = Pict_MKT_Test->parentWidget();
  auto* top = new TopRow(*Pict_MKT_Test, *Fram_MKTStatus, content);
  ContentArea* ports = Scrolling(Fram_Comx, content);
  ports->KeepWidth();

  auto* left = new QVBoxLayout;
  left->addWidget(ports, 1);
  left->addWidget(cmdeGK);

  auto* layout = new QGridLayout(content);
  layout->addWidget(top, 0, 0, 1, 2);
  layout->addLayout(left, 1, 0);
  for (QWidget* frame : Fram_Show) layout->addWidget(frame, 1, 1);
  layout->addWidget(Labl_Meldung, 2, 0, 1, 2);
  // A screen reader tells the parts in the order in which they lie on one another.
  for (QWidget* part : std::initializer_list<QWidget*>{top, ports, cmdeGK}) part->raise();
  for (QWidget* frame : Fram_Show) frame->raise();
  Labl_Meldung->raise();
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(1, 1);
}

void Form_MKT_Test::RestoreGeometry() {
  FitToScreen(*this);
  if (settings_ != nullptr) restoreGeometry(settings_->value(GeometryKey()).toByteArray());
}

void Form_MKT_Test::Attach(TestFlow& flow, ViewState& view, Bas_MKT_Test& module) {
  flow_ = &flow;
  mnuValidierung->setChecked(module.Validation().isOn);
  for (const Lamp lamp : {Lamp::Card, Lamp::Terminal}) {
    module.LinkLamps()[lamp].Watch(
        [this, lamp](LampState state) { Fram_MKTStatus->SetLamp(lamp, state); });
  }
  DrawView(view);
  DrawPorts(view);
}

void Form_MKT_Test::DrawView(ViewState& view) {
  view.progress.Watch([this](int percent) { ShowProgress(percent); });
  view.frame.Watch([this](Frame frame) { ShowFrameX(static_cast<int>(frame)); });
  view.data.Watch([this](const DataFrame& shown) { insuredData_->ShowData(shown); });
  view.isActionRunning.Watch([this](bool running) { SetActionRunning(running); });
  view.nextButton.Watch([this](std::optional<Action> button) {
    if (button) focusBefore_ = Pict_MKT_Test->Button(static_cast<int>(*button));
  });
  view.isSearching.Watch([this](bool isSearching) { wait_->OfferToEndSearch(isSearching); });
  view.notice.Watch([this](const QString& text) {
    Labl_Meldung->setText(text);
    Labl_Meldung->setVisible(!text.isEmpty());
  });
  view.isCallLate.Watch([this](bool isLate) { ShowLateness(isLate); });
  view.diagnosedPort.Watch([this](const QString& name) { dialogCheck_->ShowPort(name); });
  view.diagnosisStep.Watch([this](const QString& step) { dialogCheck_->ShowStep(step); });
}

void Form_MKT_Test::DrawPorts(ViewState& view) {
  for (int slot = 1; slot <= SlotCount; ++slot) {
    view.statusTabs[slot].Watch(
        [this, slot](const StatusTab& values) { terminalStatus_->ShowSlot(slot, values); });
    view.isPortEnabled[slot].Watch(
        [this, slot](bool enabled) { Fram_Comx->EnablePort(slot, enabled); });
    view.portHints[slot].Watch([this, slot](const QString& hint) {
      Fram_Comx->ShowPortHint(slot, hint);
      terminalStatus_->ShowHint(slot, hint);
    });
  }
  view.statusTabs[FurtherPortSlot].Watch(
      [this](const StatusTab& values) { Fram_Comx->ShowDevice(values.back()); });
  view.tabInFront.Watch([this](int slot) { terminalStatus_->ShowTab(slot); });
  view.furtherPortName.Watch(
      [this](const QString& name) { terminalStatus_->NameFurtherPort(name); });
  view.markedPort.Watch([this](int member) { Fram_Comx->MarkPort(member); });
  view.furtherPorts.Watch([this](const PortList& list) { Fram_Comx->ShowPortList(list); });
  view.hintsWithoutReader.Watch(
      [this](const QStringList& hints) { Fram_Comx->ShowHintsWithoutReader(hints); });
}

void Form_MKT_Test::OfferReport(std::function<TestReport()> makeReport) {
  makeReport_ = std::move(makeReport);
  mnuPruefbericht->setEnabled(makeReport_ != nullptr);
  mnuPruefberichtSpeichern->setEnabled(makeReport_ != nullptr);
}

void Form_MKT_Test::ShowStatusText(const QString& text) {
  Labl_StatusText->setText(text);
  // A hint may be longer than the bar is wide.
  Labl_StatusText->setToolTip(PlainToolTip(text));
}

// Where nothing runs, "0%" would speak of something that has not come far.
void Form_MKT_Test::ShowProgress(int percent) {
  ProgressBar1->setValue(std::clamp(percent, 0, FullProgress));
  ProgressBar1->setTextVisible(percent > 0);
}

bool Form_MKT_Test::ShowFrameX(int frame) {
  if (frame < 0 || frame >= static_cast<int>(Fram_Show.size())) return false;
  QWidget* wanted = Fram_Show.at(static_cast<std::size_t>(frame));
  if (!wanted->isHidden()) return false;
  const auto visible = std::find_if(Fram_Show.begin(), Fram_Show.end(),
                                    [](const QWidget* widget) { return !widget->isHidden(); });
  if (visible != Fram_Show.end()) (*visible)->hide();
  wanted->show();
  return true;
}

void Form_MKT_Test::ShowScanResult(const ScanResult& result) {
  Form_DatenInfo(result, this).exec();
}

void Form_MKT_Test::SetActionRunning(bool running) {
  if (running == actionRunning_) return;
  actionRunning_ = running;
  if (running) {
    focusBefore_ = focusWidget();
    // Not the application's cursor: message boxes keep the arrow.
    setCursor(Qt::BusyCursor);
  } else {
    unsetCursor();
  }
  UpdateEnabled();
  // A disabled control loses the focus; whoever works with the keyboard goes on where they were.
  if (!running && focusBefore_ != nullptr) focusBefore_->setFocus();
}

void Form_MKT_Test::UpdateEnabled() {
  Pict_MKT_Test->setEnabled(!actionRunning_);
  Fram_Comx->SetActionRunning(actionRunning_);
  cmdeGK->setEnabled(!actionRunning_);
  mnuValidierung->setEnabled(!actionRunning_);
  mnuSchema->setEnabled(!actionRunning_);
}

void Form_MKT_Test::CopyToClipboard(const QString& text) {
  QGuiApplication::clipboard()->clear();
  CopySecret(text);
}

void Form_MKT_Test::CloseNow() {
  closing_ = true;
  close();
}

void Form_MKT_Test::CloseForSystem() {
  boxes_.FallSilent();
  const bool mayClose = flow_ == nullptr || flow_->MayClose(CloseSource::System);
  // A modal window runs an event loop of its own; whoever opened it goes on when it is gone.
  while (QWidget* modal = QApplication::activeModalWidget()) {
    if (!modal->close()) break;
  }
  if (mayClose) CloseNow();
}

void Form_MKT_Test::closeEvent(QCloseEvent* event) {
  // The system may end the program while the user is being asked; then the answer is not waited
  // for.
  const bool mayClose =
      closing_ || flow_ == nullptr || flow_->MayClose(CloseSource::User) || closing_;
  event->setAccepted(mayClose);
  if (mayClose && settings_ != nullptr) settings_->setValue(GeometryKey(), saveGeometry());
}

}  // namespace kartocheck
