#include "ui/form_egk_info.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "ui/accessible_roles.h"
#include "ui/content_area.h"
#include "ui/element_grid.h"
#include "ui/fixed_pitch_font.h"
#include "ui/picture.h"
#include "ui/plain_label.h"
#include "ui/screen_room.h"
#include "ui/text_label.h"

namespace kartocheck {

namespace {

// The views, by their place in the stack.
enum class View { List = 0, Xml, Info };

// Side of a command's picture, in logical pixels.
constexpr int PictureSize = 24;

// Heading and validation text are in the window, the other labels in the info view.
constexpr int HeadingLabel = 1;
constexpr int ValidationLabel = 8;
// The longest line of the info view, in characters. Only the approval number and its data object
// may be longer.
constexpr int InfoCharacters = 72;

QString LabelName(int number) {
  return u"Label" + QString::number(number);
}

// A label shows CR LF as one line break.
void SetLines(QLabel* label, QString text) {
  label->setText(text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

void SetBold(QWidget* widget, bool bold) {
  QFont font = widget->font();
  font.setBold(bold);
  widget->setFont(font);
}

}  // namespace

Form_egK_Info::Form_egK_Info(EgkInfo info, QWidget* parent)
    : QDialog(parent), info_(std::move(info)), boxes_(*this) {
  InstallAccessibleRoles();
  setObjectName(QStringLiteral("Form_egK_Info"));
  setWindowTitle(QStringLiteral("Info eGK Daten"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setWindowIcon(PictureIcon(u"kartocheck"));

  auto* frame =
      new QGroupBox(QStringLiteral("Informationen zur elektronischen Gesundkeitskarte"), this);
  frame->setObjectName(QStringLiteral("Frame1"));
  Label1 = PlainLabel(LabelName(HeadingLabel), QString(), frame);
  views_ = new QStackedWidget(frame);
  views_->addWidget(NewListView());
  views_->addWidget(NewXmlView());
  views_->addWidget(NewInfoView());
  auto* frameLayout = new QVBoxLayout(frame);
  frameLayout->addWidget(Label1);
  frameLayout->addWidget(views_, 1);

  auto* layout = new QVBoxLayout(this);
  if (!info_.wasRead) {
    layout->addWidget(PlainLabel(QStringLiteral("Labl_Meldung"),
                                 QStringLiteral("Es wurden keine eGK-Daten gelesen."), this));
  }
  layout->addWidget(frame, 1);
  AddCommands(layout);
  ShowList(kind_);
  FitToScreen(*this);
}

QWidget* Form_egK_Info::NewListView() {
  auto* view = new QWidget(views_);
  auto* kindRow = new QHBoxLayout;
  for (const VsdKind kind : VsdKinds) {
    const VsdKindTexts& texts = VsdTexts[kind];
    auto* button = new QToolButton(view);
    // The group makes it exclusive; this tells so, and before anything else is told of the button.
    button->setAutoExclusive(true);
    button->setObjectName(MemberName(u"CmdB_VsdKind", static_cast<int>(kind)));
    button->setText(texts.abbreviation.toString());
    button->setToolTip(texts.title.toString());
    button->setCheckable(true);
    button->setFocusPolicy(Qt::StrongFocus);
    // Screen readers mark a button without a click.
    connect(button, &QToolButton::toggled, this, [this, kind](bool on) {
      if (on) ShowList(kind);
    });
    // Dark styles hardly show which button is pressed.
    connect(button, &QToolButton::toggled, button, [button](bool on) { SetBold(button, on); });
    kindGroup_.addButton(button);
    kindRow->addWidget(button);
    kinds_[kind] = button;
  }
  kindRow->addStretch();

  MSFlexGrid1 = new ElementGrid(view);
  Label8 = PlainLabel(LabelName(ValidationLabel), QString(), view);
  MakeSelectable(*Label8);
  auto* layout = new QVBoxLayout(view);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(kindRow);
  layout->addWidget(MSFlexGrid1, 1);
  layout->addWidget(Label8);
  return view;
}

QWidget* Form_egK_Info::NewXmlView() {
  auto* view = new QWidget(views_);
  auto* indents = new QCheckBox(QStringLiteral("&Eingerückt anzeigen"), view);
  indents->setObjectName(QStringLiteral("Chck_Eingerueckt"));
  indents->setToolTip(QStringLiteral("Zeigt jedes Element in einer eigenen Zeile."));
  indents->setEnabled(!info_.indentedXmlTexts.isEmpty());
  connect(indents, &QCheckBox::toggled, this,
          [this](bool on) { Text1->setPlainText(on ? info_.indentedXmlTexts : info_.xmlTexts); });
  Text1 = new QPlainTextEdit(view);
  Text1->setObjectName(QStringLiteral("Text1"));
  Text1->setAccessibleName(XmlTextsHeading.toString());
  Text1->setFont(FixedPitchFont(Text1->font()));
  Text1->setReadOnly(true);
  Text1->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  Text1->setTabChangesFocus(true);
  Text1->setPlainText(info_.xmlTexts);
  auto* layout = new QVBoxLayout(view);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(indents);
  layout->addWidget(Text1, 1);
  return view;
}

QWidget* Form_egK_Info::NewInfoView() {
  Frame2 = new QGroupBox(info_.infoCaption.toString(), views_);
  Frame2->setObjectName(QStringLiteral("Frame2"));
  auto* lines = new QWidget(Frame2);
  auto* lineLayout = new QVBoxLayout(lines);
  lineLayout->setContentsMargins(0, 0, 0, 0);
  for (int number = 2; number < InfoLineCount; ++number) {
    if (number == ValidationLabel) {
      lineLayout->addSpacing(fontMetrics().lineSpacing());
    } else {
      lineLayout->addWidget(NewInfoLine(number, lines));
    }
  }
  lineLayout->addStretch();
  auto* layout = new QVBoxLayout(Frame2);
  layout->addWidget(Scrolling(lines, Frame2));
  return Frame2;
}

QLabel* Form_egK_Info::NewInfoLine(int number, QWidget* parent) {
  const InfoLine& line = info_.lines.at(static_cast<std::size_t>(number));
  auto* label = new WrappingLabel(LabelName(number), InfoCharacters, parent);
  label->setText(line.text);
  label->setFont(FixedPitchFont(label->font()));
  label->setToolTip(line.toolTip.toString());
  label->setAccessibleDescription(line.toolTip.toString());
  MakeSelectable(*label);
  return label;
}

void Form_egK_Info::AddCommands(QVBoxLayout* layout) {
  auto* row = new QHBoxLayout;
  QPushButton* lists = NewCommand(1, u"Elementliste", u"element_list", row);
  connect(lists, &QPushButton::toggled, this, [this](bool on) {
    if (on) ShowList(kind_);
  });
  QPushButton* texts = NewCommand(2, u"XML-Texte", u"xml_text", row);
  connect(texts, &QPushButton::toggled, this, [this](bool on) {
    if (on) ShowXmlTexts();
  });
  QPushButton* facts = NewCommand(4, info_.infoCommand, u"chip_info", row);
  facts->setToolTip(info_.infoCommandToolTip.toString());
  connect(facts, &QPushButton::toggled, this, [this](bool on) {
    if (on) ShowInfo();
  });
  for (QPushButton* command : {lists, texts, facts}) {
    command->setCheckable(true);
    command->setAutoExclusive(true);
  }
  lists->setChecked(true);
  row->addStretch();
  QPushButton* help = NewCommand(6, u"&Hilfe", u"help", row);
  connect(help, &QPushButton::clicked, this,
          [this] { boxes_.Tell(Icon::Information, Dialogs::Title.toString(), ValidationHelp()); });
  QPushButton* close = NewCommand(3, u"Schließen", u"close", row);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
  layout->addLayout(row);
  lists->setFocus();
}

QPushButton* Form_egK_Info::NewCommand(int number, QStringView caption, QStringView picture,
                                       QHBoxLayout* row) {
  auto* button = new QPushButton(PictureIcon(picture), caption.toString(), this);
  button->setObjectName(u"Command" + QString::number(number));
  button->setIconSize({PictureSize, PictureSize});
  row->addWidget(button);
  return button;
}

void Form_egK_Info::ShowList(VsdKind kind) {
  kind_ = kind;
  const ElementList& list = info_.lists[kind];
  kinds_[kind]->setChecked(true);
  SetLines(Label1, list.heading);
  SetLines(Label8, list.validationText);
  MSFlexGrid1->ShowList(list);
  Label1->setBuddy(MSFlexGrid1);
  Label1->show();
  views_->setCurrentIndex(static_cast<int>(View::List));
}

void Form_egK_Info::ShowXmlTexts() {
  SetLines(Label1, XmlTextsHeading.toString());
  Label1->setBuddy(Text1);
  Label1->show();
  views_->setCurrentIndex(static_cast<int>(View::Xml));
}

void Form_egK_Info::ShowInfo() {
  Label1->hide();
  views_->setCurrentIndex(static_cast<int>(View::Info));
}

}  // namespace kartocheck
