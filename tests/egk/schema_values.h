#pragma once

#include <vector>

#include "egk/vsd_documents.h"

namespace kartocheck::test {

// A genuine document in which one element has another value, and what data model 5.2 says of it.
struct ValueCase : TestDocument {
  QString element;
  QString value;
  bool isValid = false;
};

// Every value of every class of values, for each element of that class.
[[nodiscard]] std::vector<ValueCase> ValueCases();

}  // namespace kartocheck::test
