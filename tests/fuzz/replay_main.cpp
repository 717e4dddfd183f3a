// Runs every input of the directories named once; after "--cut" also each input cut at every byte.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_input.h"

namespace {

std::vector<std::uint8_t> ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// On a copy of exactly that size, so that a sanitizer sees every byte read past its end.
void Run(const std::vector<std::uint8_t>& content, std::size_t size) {
  const std::vector<std::uint8_t> input(content.begin(),
                                        content.begin() + static_cast<std::ptrdiff_t>(size));
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  bool cuts = false;
  int inputs = 0;
  for (int i = 1; i < argc; ++i) {
    if (argv[i] == std::string_view("--cut")) {
      cuts = true;
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      const std::vector<std::uint8_t> content = ContentOf(entry.path());
      for (std::size_t size = cuts ? 0 : content.size(); size <= content.size(); ++size) {
        Run(content, size);
      }
      ++inputs;
    }
  }
  std::cout << inputs << " inputs\n";
  return inputs > 0 ? 0 : 1;
}
