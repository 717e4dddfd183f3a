#pragma once

#include <QString>

namespace kartocheck {

// What the program tells of itself.
struct ProgramFacts {
  QString version{};
  QString library{};  // the CT-API library in use, or what stands in its place
  QString system{};   // operating system
  // When and why the program ended unexpectedly the last time; empty where it never did.
  QString lastFailure{};
};

}  // namespace kartocheck
