#include <array>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "ctnrv32.h"
#include "simulator/hex.h"

namespace ctapi {
namespace {

// The simulator's library as built, with its four entry points.
class Library {
 public:
  Library() : handle_(dlopen(SIMULATOR_LIBRARY, RTLD_NOW | RTLD_LOCAL), &dlclose) {
    if (!handle_) throw std::runtime_error(dlerror());
    Resolve(Init, "CTDENRVT1_init");
    Resolve(Data, "CTDENRVT1_data");
    Resolve(Close, "CTDENRVT1_close");
    Resolve(GetBaudrate, "CT_get_baudrate");
  }

  CTDENRVT1_init_t Init = nullptr;
  CTDENRVT1_data_t Data = nullptr;
  CTDENRVT1_close_t Close = nullptr;
  CT_get_baudrate_t GetBaudrate = nullptr;

  std::string Send(std::uint8_t unit, const std::vector<std::uint8_t>& command) {
    std::uint8_t dad = unit;
    std::uint8_t sad = 2;
    std::array<std::uint8_t, 4098> response{};
    auto length = static_cast<std::uint16_t>(response.size());
    const int code = Data(1, &dad, &sad, static_cast<std::uint16_t>(command.size()), command.data(),
                          &length, response.data());
    return code == 0 ? test::ToHex(std::span(response).first(length))
                     : "code " + std::to_string(code);
  }

 private:
  template <typename Function>
  void Resolve(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(handle_.get(), name));
    if (function == nullptr) throw std::runtime_error(std::string("missing ") + name);
  }

  std::unique_ptr<void, int (*)(void*)> handle_;
};

// The library reads its scenario once in a process, so each test runs it in a process of its own.
// The scenario is named in the environment; null: none is. The test's exit status is its verdict.
void InOwnProcess(const char* scenario, const std::function<void(Library&)>& body,
                  std::string* errors = nullptr) {
  const std::string file =
      testing::TempDir() + "simulator_library_stderr." + std::to_string(getpid());
  const pid_t child = fork();
  ASSERT_NE(child, -1);
  if (child == 0) {
    if (scenario != nullptr) {
      setenv("KARTOCHECK_SCENARIO", scenario, 1);
    } else {
      unsetenv("KARTOCHECK_SCENARIO");
    }
    if (errors != nullptr && std::freopen(file.c_str(), "w", stderr) == nullptr) _exit(2);
    Library library;
    body(library);
    std::fflush(stderr);
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0) << "see the failures above";
  if (errors != nullptr) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    *errors = text.str();
    std::remove(file.c_str());
  }
}

TEST(SimulatorLibrary, ReadsAKvk) {
  InOwnProcess(BUNDLED_SCENARIOS "/gamma.json", [](Library& library) {
    ASSERT_EQ(library.Init(1, 1), 0);
    std::int32_t baud = -1;
    EXPECT_EQ(library.GetBaudrate(1, &baud), 0);
    EXPECT_EQ(baud, 9600);
    EXPECT_EQ(library.Send(1, {0x20, 0x11, 0x00, 0x00, 0x00}), "9000");
    EXPECT_EQ(library.Send(1, {0x20, 0x12, 0x01, 0x00, 0x01, 0x01}), "9000");
    EXPECT_EQ(library.Send(1, {0x20, 0x11, 0x01, 0x00}), "9000");
    EXPECT_EQ(library.Send(0, {0x00, 0xA4, 0x04, 0x00, 0x06, 0xD2, 0x76, 0x00, 0x00, 0x01, 0x01}),
              "9000");
    const std::string record = library.Send(0, {0x00, 0xB0, 0x00, 0x00, 0x00});
    EXPECT_EQ(record.substr(0, 2), "60");
    // The family name of the person on the card.
    EXPECT_NE(record.find("870547727C7E6C"), std::string::npos) << record;
    EXPECT_EQ(record.substr(record.size() - 4), "9000");
    EXPECT_EQ(library.Close(1), 0);
  });
}

TEST(SimulatorLibrary, RefusesPortsThatAreNotThere) {
  InOwnProcess(BUNDLED_SCENARIOS "/gamma.json", [](Library& library) {
    EXPECT_EQ(library.Init(1, 2), -1);
    EXPECT_EQ(library.Init(1, 8192), -1);
  });
}

TEST(SimulatorLibrary, RefusesNullPointers) {
  InOwnProcess(BUNDLED_SCENARIOS "/gamma.json", [](Library& library) {
    ASSERT_EQ(library.Init(1, 1), 0);
    std::uint8_t unit = 1;
    std::uint8_t host = 2;
    std::uint16_t length = 8;
    const std::array<std::uint8_t, 5> command{0x20, 0x11, 0x00, 0x00, 0x00};
    std::array<std::uint8_t, 8> response{};
    EXPECT_EQ(library.Data(1, nullptr, &host, 5, command.data(), &length, response.data()), -1);
    EXPECT_EQ(library.Data(1, &unit, nullptr, 5, command.data(), &length, response.data()), -1);
    EXPECT_EQ(library.Data(1, &unit, &host, 5, nullptr, &length, response.data()), -1);
    EXPECT_EQ(library.Data(1, &unit, &host, 5, command.data(), nullptr, response.data()), -1);
    EXPECT_EQ(library.Data(1, &unit, &host, 5, command.data(), &length, nullptr), -1);
    EXPECT_EQ(library.Data(1, &unit, &host, 0, command.data(), &length, response.data()), -1);
    EXPECT_EQ(library.GetBaudrate(1, nullptr), -1);
  });
}

TEST(SimulatorLibrary, NeverWritesPastTheBuffer) {
  InOwnProcess(BUNDLED_SCENARIOS "/gamma.json", [](Library& library) {
    ASSERT_EQ(library.Init(1, 1), 0);
    std::uint8_t unit = 1;
    std::uint8_t host = 2;
    std::uint16_t length = 4;
    const std::array<std::uint8_t, 5> getStatus{0x20, 0x13, 0x00, 0x81, 0x00};
    std::array<std::uint8_t, 8> response{};
    response.fill(0xEE);
    EXPECT_EQ(library.Data(1, &unit, &host, 5, getStatus.data(), &length, response.data()), -11);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(test::ToHex(response), "EEEEEEEEEEEEEEEE");
  });
}

TEST(SimulatorLibrary, WithoutAScenarioIsOutOfOrder) {
  std::string errors;
  InOwnProcess(
      nullptr,
      [](Library& library) {
        EXPECT_EQ(library.Init(1, 1), -128);
        EXPECT_EQ(library.Init(1, 2), -128);
        EXPECT_EQ(library.Send(1, {0x20}), "code -128");
        EXPECT_EQ(library.Close(1), -128);
      },
      &errors);
  EXPECT_EQ(errors, "CTNRV32 (simulator): KARTOCHECK_SCENARIO names no scenario file\n");
}

TEST(SimulatorLibrary, TellsWhatIsWrongWithAScenarioOnce) {
  std::string errors;
  InOwnProcess(
      "/nowhere/x.json",
      [](Library& library) {
        EXPECT_EQ(library.Init(1, 1), -128);
        EXPECT_EQ(library.Init(1, 1), -128);
      },
      &errors);
  EXPECT_EQ(errors, "CTNRV32 (simulator): /nowhere/x.json: cannot read the file\n");
}

}  // namespace
}  // namespace ctapi
