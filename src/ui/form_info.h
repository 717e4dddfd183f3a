#pragma once

#include <QDialog>

#include "ui/main_window/program_facts.h"

namespace kartocheck {

// What program this is, and what it works with.
class Form_Info final : public QDialog {
  Q_OBJECT

 public:
  Form_Info(const ProgramFacts& facts, QWidget* parent);
};

}  // namespace kartocheck
