#pragma once

#include "ui/rich_text/rtf_reader.h"

class QTextEdit;

namespace kartocheck {

// Shows the text in Arial and the view's own colours. Sizes follow the view's font: a document that
// is written for 10 points grows and shrinks with it.
void ShowFormattedText(QTextEdit& view, const FormattedText& text);

}  // namespace kartocheck
