// SPDX-License-Identifier: MIT
// What the targets share. A target takes any bytes; that it neither crashes nor breaks a promise is the test.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace zortest {

// Ends the process where a promise is broken, so that the fuzzer keeps the input.
inline void promise(bool kept, const char* what) {
  if (!kept) {
    std::fprintf(stderr, "broken promise: %s\n", what);
    std::abort();
  }
}

inline std::string text_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// The texts between the zero bytes.
inline std::vector<std::string> texts_of(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> texts(1);
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == 0) {
      texts.emplace_back();
    } else {
      texts.back() += static_cast<char>(data[i]);
    }
  }
  return texts;
}

// The bytes as a file, each time the same one.
inline const std::string& as_file(const std::uint8_t* data, std::size_t size) {
  static const zortav::test::ScratchFolder folder;
  static const std::string path = folder / "input";
  std::ofstream(path, std::ios::binary) << text_of(data, size);
  return path;
}

}  // namespace zortest
