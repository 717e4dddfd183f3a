#include "ui/form_first_user.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QFile>
#include <QFrame>
#include <QPushButton>
#include <QScreen>
#include <QTextEdit>
#include <QVBoxLayout>

#include "ui/formatted_text.h"
#include "ui/picture.h"
#include "ui/plain_label.h"
#include "ui/screen_room.h"

namespace kartocheck {

namespace {

// Characters of a line of the document, and its lines, that are seen without scrolling.
constexpr int VisibleCharacters = 104;
constexpr int VisibleLines = 40;
// Around the document, in logical pixels.
constexpr int TextMargin = 10;
// Part of the screen's height that the document may take.
constexpr double HighestView = 0.75;

// The document's view, as large as the document wants to be where the screen has the room.
class DocumentView final : public QTextEdit {
 public:
  using QTextEdit::QTextEdit;

  [[nodiscard]] QSize sizeHint() const override {
    const QFontMetrics metrics = fontMetrics();
    const int highest = static_cast<int>(screen()->availableSize().height() * HighestView);
    return {metrics.averageCharWidth() * VisibleCharacters + 2 * TextMargin,
            qMin(metrics.lineSpacing() * VisibleLines + 2 * TextMargin, highest)};
  }
};

QByteArray Document() {
  QFile file(QStringLiteral(":/texts/benutzerinformation.rtf"));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

Form_FirstUser::Form_FirstUser(QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("Form_FirstUser"));
  setWindowTitle(QStringLiteral("Benutzer Information zu KartoCheck"));
  setWindowIcon(PictureIcon(u"kartocheck"));

  auto* frame = new QFrame(this);
  frame->setObjectName(QStringLiteral("Frame1"));
  frame->setFrameShape(QFrame::StyledPanel);
  RichTextBox1 = new DocumentView(frame);
  RichTextBox1->setObjectName(QStringLiteral("RichTextBox1"));
  RichTextBox1->setAccessibleName(QStringLiteral("Benutzer Information"));
  RichTextBox1->setFrameShape(QFrame::NoFrame);
  RichTextBox1->document()->setDocumentMargin(TextMargin);
  RichTextBox1->setReadOnly(true);
  RichTextBox1->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  RichTextBox1->setTabChangesFocus(true);
  auto* frameLayout = new QVBoxLayout(frame);
  frameLayout->setContentsMargins(0, 0, 0, 0);
  frameLayout->addWidget(RichTextBox1);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(frame, 1);
  AddButtons();
  ShowDocument();
  FitToScreen(*this);
}

void Form_FirstUser::AddButtons() {
  struct Description {
    QStringView caption;
    QStringView toolTip;
    bool goesOn;
  };
  constexpr std::array<Description, 2> Descriptions{{
      {u"&Beenden", u"Beendet KartoCheck", false},
      {u"Weiter mit KartoCheck", u"", true},
  }};
  auto* row = new QHBoxLayout;
  row->addStretch();
  for (int index = 0; index < static_cast<int>(Descriptions.size()); ++index) {
    const auto& [caption, toolTip, goesOn] = Descriptions.at(static_cast<std::size_t>(index));
    auto* button = new QPushButton(caption.toString(), this);
    button->setObjectName(MemberName(u"Command1", index));
    button->setToolTip(toolTip.toString());
    connect(button, &QPushButton::clicked, this, [this, goesOn = goesOn] {
      continueFlag_ = goesOn;
      close();
    });
    row->addWidget(button);
    Command1.at(static_cast<std::size_t>(index)) = button;
  }
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  Command1[1]->setDefault(true);
  Command1[1]->setFocus();
}

void Form_FirstUser::ShowDocument() {
  ShowFormattedText(*RichTextBox1, ReadRtf(Document()));
}

void Form_FirstUser::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::FontChange && RichTextBox1 != nullptr) ShowDocument();
}

}  // namespace kartocheck
