#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "host/pcscd_service.h"

namespace ctapi::test {

// The network is left once a process; a test that needs it is skipped where that is not possible.
class OwnNetwork final : public testing::Environment {
 public:
  void SetUp() override { IsOwn = EnterOwnNetwork(); }
  static inline bool IsOwn = false;
};
inline const auto* const TheNetwork = testing::AddGlobalTestEnvironment(new OwnNetwork);

// A test with the system's PC/SC service. Skipped by name where it cannot start; an error there
// where CI=true.
class PcscdFixture : public testing::Test {
 protected:
  void SetUp() override {
    std::string reason = "no network namespace";
    if (OwnNetwork::IsOwn) service_ = PcscdService::Start(reason);
    if (service_) return;
    const char* const ci = std::getenv("CI");
    if (ci != nullptr && std::string(ci) == "true") FAIL() << reason;
    GTEST_SKIP() << reason;
  }

  std::unique_ptr<PcscdService> service_;
};

}  // namespace ctapi::test
