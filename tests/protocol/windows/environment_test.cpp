#include "protocol/environment.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace ctapi {
namespace {

constexpr const char* Name = "KARTOCHECK_TEST_VARIABLE";
constexpr const wchar_t* WideName = L"KARTOCHECK_TEST_VARIABLE";

TEST(EnvironmentText, IsUtf8WhateverTheCodePageHolds) {
  ::SetEnvironmentVariableW(WideName, L"C:\\J\u00F6rg\\\u0416");
  EXPECT_EQ(EnvironmentText(Name), "C:\\Jörg\\Ж");
  ::SetEnvironmentVariableW(WideName, nullptr);
}

TEST(EnvironmentText, IsNothingWithoutTheVariable) {
  EXPECT_EQ(EnvironmentText(Name), std::nullopt);
}

}  // namespace
}  // namespace ctapi
