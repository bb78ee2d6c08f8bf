// SPDX-License-Identifier: MIT
// Feeds every file of the folders given, and every leading part of it, to the target: without a fuzzer, a test.
#include <filesystem>

#include "hostile_input.h"

int main(int argc, char** argv) {
  constexpr std::uintmax_t parts = 64;
  int files = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      for (std::uintmax_t part = 0; part <= parts; ++part) {
        const std::vector<std::uint8_t> input(bytes.begin(),
                                              bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() * part / parts));
        LLVMFuzzerTestOneInput(input.data(), input.size());
      }
      ++files;
    }
  }
  std::fprintf(stderr, "%d files\n", files);
  return files > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
