#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <thread>
#include <unistd.h>
#include <vector>

#include "host/pcscd_fixture.h"
#include "host/virtual_egk.h"
#include "kvk/read_dispatcher.h"
#include "simulator/scenario.h"
#include "support/link_fixture.h"
#include "support/loaded_library.h"

// Reads of an eGK over the system's PC/SC service while one of the partners is killed: the service,
// the helper that holds the library, or the card. The next read works, and nothing is left over.

namespace kartocheck::test {
namespace {

namespace fs = std::filesystem;
using ctapi::test::Eventually;
using ctapi::test::PcscdService;
using ctapi::test::VirtualCard;

constexpr int FirstReader = 8192;
constexpr int Reads = 50;

// The processes that this one has started and that are there, by their names.
std::vector<std::pair<pid_t, std::string>> Children() {
  std::vector<std::pair<pid_t, std::string>> children;
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
    const std::string number = entry.path().filename();
    if (!std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; })) {
      continue;
    }
    std::ifstream file(entry.path() / "stat");
    std::string line;
    std::getline(file, line);
    const std::size_t begin = line.find('(');
    const std::size_t end = line.rfind(')');
    if (begin == std::string::npos || end == std::string::npos) continue;
    // Behind the name: the state, and the number of the parent.
    if (std::atoi(line.c_str() + end + 3) != ::getpid()) continue;
    children.emplace_back(std::stoi(number), line.substr(begin + 1, end - begin - 1));
  }
  return children;
}

std::ptrdiff_t OpenDescriptors() {
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

void KillHelper() {
  for (const auto& [process, name] : Children()) {
    if (name.starts_with("kartocheck-help")) ::kill(process, SIGKILL);
  }
}

class KilledPartnersTest : public ctapi::test::PcscdFixture {
 protected:
  void TearDown() override { card_.reset(); }

  void InsertCard() {
    card_ = std::make_unique<VirtualCard>(ctapi::test::CardOf(*practice_.TerminalAt(FirstReader)));
    ASSERT_TRUE(card_->IsIn());
  }

  // Done, or not; a library that dies ends the program, which the test does not.
  bool Read() {
    link_->dialogs.answerSafely = true;
    try {
      return ReadCardData({link_->session, Port(FirstReader), info_, insured_, egk_, validation_,
                           link_->dialogs, link_->display, link_->eventLoop}) ==
                 ReadOutcome::Done &&
             insured_[Element::LastName] == u"Größl-Öztürk";
    } catch (const Terminated&) {
      link_.emplace(library_);
      return false;
    }
  }

  void Kill(int victim) {
    switch (victim) {
      case 0:
        return service_->Kill();
      case 1:
        return KillHelper();
      default:
        return card_.reset();
    }
  }

  void Replace(int victim) {
    if (victim == 1) return;
    std::string reason;
    if (victim == 0) {
      service_.reset();
      service_ = PcscdService::Start(reason);
      card_.reset();
    }
    ASSERT_TRUE(service_) << reason;
    InsertCard();
  }

  // The driver of the virtual reader loses a card that comes while it notices that the last one has
  // gone; no program sees that card then, and it is put in once more.
  bool NextReadWorks(int victim) {
    constexpr std::chrono::seconds Noticed{2};
    if (Eventually([this] { return Read(); }, Noticed)) return true;
    if (victim == 1) return false;
    card_.reset();
    std::this_thread::sleep_for(Noticed);
    InsertCard();
    return Eventually([this] { return Read(); });
  }

  ctapi::SimulatedPractice practice_ = ctapi::LoadScenario(BUNDLED_SCENARIOS "/praxis.json");
  std::unique_ptr<VirtualCard> card_;
  CtApiLibrary library_ = LoadedLibrary({QStringLiteral(HOST_LIBRARY)});
  std::optional<Link> link_{std::in_place, library_};
  TerminalInfo info_;
  InsuredData insured_;
  EgkData egk_;
  ValidationSettings validation_;
};

TEST_F(KilledPartnersTest, TheNextReadWorksAndNothingIsLeftOver) {
  InsertCard();
  ASSERT_TRUE(Eventually([this] { return Read(); })) << "the first read";
  const std::ptrdiff_t descriptors = OpenDescriptors();
  const std::size_t children = Children().size();

  std::mt19937 random(20'261'121);
  std::uniform_int_distribution<int> victims(0, 2);
  std::uniform_int_distribution<int> moments(0,
                                             2'000);  // microseconds; a read takes a little longer
  int interrupted = 0;
  for (int read = 0; read < Reads; ++read) {
    const int victim = victims(random);
    SCOPED_TRACE(testing::Message() << "read " << read << ", victim " << victim);
    std::thread killer([this, victim, moment = std::chrono::microseconds(moments(random))] {
      std::this_thread::sleep_for(moment);
      Kill(victim);
    });
    if (!Read()) ++interrupted;
    killer.join();
    Replace(victim);
    ASSERT_TRUE(NextReadWorks(victim));
  }
  std::cout << interrupted << " of " << Reads << " reads were interrupted\n";
  EXPECT_GE(interrupted, Reads / 4) << "the moments lie in the reads";
  EXPECT_EQ(Children().size(), children);
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

}  // namespace
}  // namespace kartocheck::test
