// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace modal {

// What the user gave cannot be used. The text is one line that names the file and line, or the option, at fault.
struct InputError : std::runtime_error {
  using std::runtime_error::runtime_error;
  InputError(std::string file_, std::int64_t line_, std::string fault_)
      : std::runtime_error(file_ + ", line " + std::to_string(line_) + ": " + fault_),
        file(std::move(file_)),
        line(line_),
        fault(std::move(fault_)) {}

  std::string file;  // empty where no line of a file is at fault
  std::int64_t line = 0;
  std::string fault;
};

}  // namespace modal
