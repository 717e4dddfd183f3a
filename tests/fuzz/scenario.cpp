#include "simulator/scenario.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "fuzz/fuzz_input.h"

// A scenario file, in a folder where the cards and persons of the bundled scenarios are. It is
// loaded, and its terminals answer, or it is refused with a reason.

namespace ctapi {
namespace {

namespace fs = std::filesystem;
using kartocheck::fuzz::Require;

// A folder of this process, gone when it ends.
class Folder {
 public:
  Folder() {
    fs::create_directory(path_);
    for (const char* const name : {"kvk", "personen"}) {
      // A copy: not every system lets every user make links.
      fs::copy(fs::path(SCENARIOS) / name, path_ / name, fs::copy_options::recursive);
    }
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  [[nodiscard]] fs::path File() const { return path_ / "scenario.json"; }

 private:
  fs::path path_ =
      fs::temp_directory_path() / ("kartocheck-fuzz-scenario-" + std::to_string(::getpid()));
};

void Talk(SimulatedPractice& practice, std::uint16_t pn) {
  constexpr std::array<std::array<std::uint8_t, 5>, 4> Commands{{
      {0x20, 0x11, 0x00, 0x00, 0x00},
      {0x20, 0x13, 0x00, 0x46, 0x00},
      {0x20, 0x12, 0x01, 0x00, 0x00},
      {0x00, 0xB0, 0x81, 0x00, 0x00},
  }};
  // The time that an answer takes is of no interest.
  practice.PortAt(pn)->Delay = {};
  constexpr std::uint16_t Ctn = 1;
  if (practice.Init(Ctn, pn) != code::Success) return;
  for (const auto& command : Commands) {
    std::array<std::uint8_t, 4098> response{};
    std::uint8_t dad = command[0] == 0x00 ? 0 : 1;
    std::uint8_t sad = 2;
    std::uint16_t length = response.size();
    const std::int8_t code = practice.Data(Ctn, dad, sad, command, response, length);
    Require(code != code::Success || length <= response.size(), "a response fits its buffer");
  }
  (void)practice.Close(Ctn);
  Require(practice.OpenLinks() == 0, "the link is closed");
}

void LoadAndUse(const std::uint8_t* data, std::size_t size) {
  static const Folder folder;
  std::ofstream(folder.File(), std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  try {
    SimulatedPractice practice = LoadScenario(folder.File());
    for (const std::uint16_t pn : practice.AttachedPorts()) Talk(practice, pn);
  } catch (const ScenarioError& error) {
    const std::string_view reason(error.what());
    Require(reason.starts_with(folder.File().string() + ": "), "the reason names the file");
    Require(std::none_of(reason.begin(), reason.end(),
                         [](unsigned char character) { return std::iscntrl(character) != 0; }),
            "the reason is one line and drives no terminal");
  }
}

}  // namespace
}  // namespace ctapi

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A device or a pipe that a file names may never end; whoever wrote it wants it so.
  if (std::string_view(reinterpret_cast<const char*>(data), size).find("dev") !=
      std::string_view::npos) {
    return 0;
  }
  ctapi::LoadAndUse(data, size);
  return 0;
}
