// Runs a fuzz target over the files of a folder, each as it is and cut at every byte. Usage:
// NAME_fuzz FOLDER

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::uint8_t> ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A copy of exactly that size, so that a sanitizer sees every byte read past its end.
void Run(const std::vector<std::uint8_t>& bytes, std::size_t size) {
  const std::vector<std::uint8_t> input(bytes.begin(),
                                        bytes.begin() + static_cast<std::ptrdiff_t>(size));
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  for (const auto& file : files) {
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    const std::vector<std::uint8_t> content = ContentOf(file);
    for (std::size_t size = 0; size <= content.size(); ++size) Run(content, size);
  }
  return files.empty() ? 1 : 0;
}
