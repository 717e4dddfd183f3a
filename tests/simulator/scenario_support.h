#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <unistd.h>

#include "simulator/hex.h"
#include "simulator/scenario.h"

namespace ctapi::test {

// A folder of the test's own, gone with it.
class Folder {
 public:
  Folder() {
    std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    std::replace(name.begin(), name.end(), '/', '_');
    path_ =
        std::filesystem::path(testing::TempDir()) / ("scenario_" + std::to_string(getpid()) + name);
    std::filesystem::create_directories(path_);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::filesystem::path Write(const std::filesystem::path& name, std::string_view text) const {
    const std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file;
  }

 private:
  std::filesystem::path path_;
};

inline SimulatedPractice Load(std::string_view text) {
  const Folder folder;
  return LoadScenario(folder.Write("test.json", text));
}

// What is wrong with a scenario, without the name of its file.
inline std::string ErrorOf(std::string_view text) {
  const Folder folder;
  const std::filesystem::path file = folder.Write("test.json", text);
  try {
    (void)LoadScenario(file);
  } catch (const ScenarioError& error) {
    const std::string message = error.what();
    const std::string prefix = file.string() + ": ";
    EXPECT_EQ(message.substr(0, prefix.size()), prefix);
    EXPECT_EQ(message.find('\n'), std::string::npos);
    return message.substr(std::min(prefix.size(), message.size()));
  }
  return "";
}

inline std::string Exchange(SimulatedPractice& practice, const char* command) {
  const Bytes bytes = *BytesFromHex(command);
  Bytes response(4098);
  std::uint8_t dad = bytes.front() == 0x20 ? 1 : 0;
  std::uint8_t sad = 2;
  std::uint16_t length = 0;
  const int code = practice.Data(1, dad, sad, bytes, response, length);
  return code == 0 ? ToHex(ByteView(response).first(length)) : "code " + std::to_string(code);
}

// A scenario with one port, with its terminal, with the KVK in it; what stands there besides.
inline std::string PortWith(const std::string& what) {
  return R"({"ports": [{"port": 1, )" + what + "}]}";
}

inline std::string TerminalWith(const std::string& what) {
  return PortWith(R"("terminal": {"family": "gamma", )" + what + "}");
}

inline std::string KvkWith(const std::string& what) {
  return TerminalWith(R"("card": {"kvk": {)" + what + "}}");
}

}  // namespace ctapi::test
