#pragma once

#include <QByteArrayView>
#include <QString>

#include <vector>

namespace kartocheck {

// A piece of text in one format.
struct TextRun {
  QString text;
  bool isBold = false;
  bool isItalic = false;
  int halfPoints = 24;  // font size
};

// Indents and spaces are in twips, 1/1440 of an inch.
struct TextParagraph {
  std::vector<TextRun> runs;
  bool isCentered = false;
  int leftIndent = 0;
  int firstLineIndent = 0;  // added to the left indent; negative where the first line hangs out
  int spaceBefore = 0;
  int spaceAfter = 0;

  [[nodiscard]] QString Text() const;
};

using FormattedText = std::vector<TextParagraph>;

// Reads a document in the Rich Text Format, code page 1252. It understands
//   \par \line \tab \~ \'xx \{ \} \\      text
//   \pard \qc \ql \li \fi \sb \sa         paragraphs
//   \plain \b \i \fs                      characters
// and passes over every other control word and over tables of fonts, colours, styles and facts.
// Whatever the bytes are, the result is what could be understood of them.
[[nodiscard]] FormattedText ReadRtf(QByteArrayView rtf);

}  // namespace kartocheck
