// SPDX-License-Identifier: MIT
// A line-by-line look at a Matrix Market file that names the line at fault.
#pragma once

#include <cstdint>
#include <string>

namespace modal {

// Throws InputError unless the file is a real or integer, symmetric or general, square matrix whose every line is well
// formed. The library reader that follows is lenient by design: it takes a leading part of a malformed number, reads
// indices from 0 when it meets one, and stops at the announced count.
void check_matrix_market(const std::string& path);

// The line (from 1) of entry number k (from 0) of a file that has passed the check; 0 when there is none.
std::int64_t line_of_entry(const std::string& path, std::int64_t k);

// "K.mtx, line 7: ..." as an InputError.
[[noreturn]] void refuse_line(const std::string& path, std::int64_t line, const std::string& fault);

}  // namespace modal
