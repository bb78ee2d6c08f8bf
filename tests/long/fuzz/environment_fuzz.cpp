// SPDX-License-Identifier: MIT
// The configuration's variables, their values separated by zero bytes; what is not given is not set.
#include <array>
#include <climits>

#include "ZORTAVConfiguration.h"
#include "ZORTavErrorTools.h"
#include "hostile_input.h"
#include "test_system.h"

namespace {

constexpr std::array variables{"TAV_MAX_ALLOC",   "OMP_NUM_THREADS", "LC_ALL",
                               "TAV_REAL_MEMORY", "ADL_ODT_OUT",     "ReplayPurify"};

// The largest array in words, by wide arithmetic; the text's number as C's strtol has it.
std::int64_t allowed(const std::string& text) {
  constexpr std::int64_t wrap = std::int64_t{1} << 32;
  const auto megabytes = static_cast<std::int32_t>(std::strtol(text.c_str(), nullptr, 10));
  std::int64_t bytes = (megabytes * std::int64_t{1024144} % wrap + wrap) % wrap;
  bytes -= bytes > INT_MAX ? wrap : 0;
  return bytes > 0 ? std::min<std::int64_t>(bytes / 8, 2147400000) : 2147400000;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool quiet = std::freopen("/dev/null", "w", stdout) != nullptr;
  const std::vector<std::string> values = zortest::texts_of(data, size);
  for (std::size_t i = 0; i < variables.size(); ++i) {
    i < values.size() ? zortest::set_variable(variables[i], values[i]) : zortest::remove_variable(variables[i]);
  }
  std::int32_t mode = -1;
  std::int32_t second = -1;
  std::int32_t third = -1;
  getblas(&mode, &second, &third);
  zortest::promise(quiet && (mode == 0 || mode == 2) && second == 0 && third == 0, "a threading mode");
  std::int32_t words = -1;
  ehalmxc(&words);
  zortest::promise(words == allowed(values[0]), "the largest array");
  ehumem(&words);
  zortest::promise(words >= 536000000 && words <= 2144000000, "the working memory");
  std::int32_t threads = -1;
  ehucpu(&threads);
  // In the language that the environment names.
  ZORTavErrorTools::CreateError(302, "ZORTAVMathKernelError", threads, words);
  return 0;
}
