#pragma once

#include <cctype>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace kartocheck::test {

// Names a parametrised test by its row's sentence (the row's operator<<), with '_' for what a test
// name cannot hold.
struct SentenceName {
  template <typename Row>
  std::string operator()(const testing::TestParamInfo<Row>& row) const {
    std::ostringstream sentence;
    sentence << row.param;
    std::string name;
    for (const char character : sentence.str()) {
      const bool fits = std::isalnum(static_cast<unsigned char>(character)) != 0;
      if (fits) {
        name += character;
      } else if (!name.empty() && name.back() != '_') {
        name += '_';
      }
    }
    return name;
  }
};

}  // namespace kartocheck::test
