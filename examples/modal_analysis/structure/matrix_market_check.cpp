// SPDX-License-Identifier: MIT
// The format: R. F. Boisvert, R. Pozo and K. A. Remington, The Matrix Market Exchange Formats: Initial Design,
// NISTIR 5935.
#include "structure/matrix_market_check.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string_view>
#include <vector>

#include "structure/input_error.h"
#include "structure/text_lines.h"

namespace modal {
namespace {

// The library reader takes a line in pieces beyond 1024 characters, and numbers from 1e308 on as infinite.
constexpr std::size_t longest_line = 1000;
constexpr double largest_value = 1e308;
constexpr std::int64_t largest_count = std::numeric_limits<std::int32_t>::max();

struct Header {
  bool coordinate = false;
  bool integer = false;
  bool symmetric = false;
  std::int64_t order = 0;
  std::int64_t entries = 0;
};

using Words = std::vector<std::string_view>;

std::string lower_case(std::string_view word) {
  std::string text(word);
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

bool parse_integer(std::string_view word, std::int64_t& value) {
  if (!word.empty() && word.front() == '+') {
    word.remove_prefix(1);
    if (!word.empty() && word.front() == '-') {
      return false;
    }
  }
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  return error == std::errc() && end == word.data() + word.size();
}

class Lines {
 public:
  explicit Lines(const std::string& path) : path_(path), file_(path, std::ios::binary) {
    if (!std::filesystem::exists(path)) {
      throw InputError(path + ": no such file");
    }
    // A pipe could be read only once, and the file is read twice.
    if (!std::filesystem::is_regular_file(path)) {
      throw InputError(path + ": not a regular file");
    }
    if (!file_) {
      throw InputError(path + ": the file cannot be read");
    }
  }
  // The next line; false at the end of the file.
  bool next(Words& words) {
    if (!std::getline(file_, text_)) {
      return false;
    }
    ++number_;
    if (text_.size() > longest_line) {
      fault("longer than " + std::to_string(longest_line) + " characters");
    }
    split_words(text_, words);
    return true;
  }
  // The next line that is neither blank nor a comment.
  bool next_data(Words& words) {
    while (next(words)) {
      if (!words.empty() && words.front().front() != '%') {
        return true;
      }
    }
    return false;
  }
  [[noreturn]] void fault(const std::string& text) const {
    refuse_line(path_, std::max<std::int64_t>(number_, 1), text);
  }

 private:
  const std::string& path_;
  std::ifstream file_;
  std::string text_;
  std::int64_t number_ = 0;
};

Header read_banner(Lines& lines) {
  Words words;
  if (!lines.next(words)) {
    lines.fault("the file is empty");
  }
  if (words.size() != 5 || lower_case(words[0]) != "%%matrixmarket" || lower_case(words[1]) != "matrix") {
    lines.fault("malformed header, expected '%%MatrixMarket matrix coordinate|array real|integer symmetric|general'");
  }
  Header header;
  const std::string layout = lower_case(words[2]);
  const std::string field = lower_case(words[3]);
  const std::string symmetry = lower_case(words[4]);
  if (layout != "coordinate" && layout != "array") {
    lines.fault("malformed header, layout " + quoted_word(words[2]) + " is neither coordinate nor array");
  }
  if (field != "real" && field != "integer") {
    lines.fault("header field " + quoted_word(words[3]) + " is neither real nor integer");
  }
  if (symmetry != "symmetric" && symmetry != "general") {
    lines.fault("header symmetry " + quoted_word(words[4]) + " is neither symmetric nor general");
  }
  header.coordinate = layout == "coordinate";
  header.integer = field == "integer";
  header.symmetric = symmetry == "symmetric";
  return header;
}

void read_sizes(Lines& lines, Header& header) {
  Words words;
  if (!lines.next_data(words)) {
    lines.fault("the file ends before the line of sizes");
  }
  const std::size_t wanted = header.coordinate ? 3 : 2;
  std::array<std::int64_t, 3> size{};
  bool well_formed = words.size() == wanted;
  for (std::size_t i = 0; well_formed && i < wanted; ++i) {
    well_formed = parse_integer(words[i], size[i]) && size[i] >= 0;
  }
  if (!well_formed) {
    lines.fault(header.coordinate ? "malformed sizes, expected 'rows columns entries'"
                                  : "malformed sizes, expected 'rows columns'");
  }
  if (size[0] != size[1]) {
    lines.fault("the matrix is not square, " + std::to_string(size[0]) + " rows and " + std::to_string(size[1]) +
                " columns");
  }
  if (size[0] < 1 || size[0] > largest_count) {
    lines.fault("order " + std::to_string(size[0]) + " is outside 1 .. " + std::to_string(largest_count));
  }
  header.order = size[0];
  // An array of an order whose square does not fit is too large anyway.
  const std::int64_t n = std::min(size[0], largest_count / 2);
  header.entries = header.coordinate ? size[2] : header.symmetric ? n * (n + 1) / 2 : n * n;
  if (header.entries > largest_count) {
    lines.fault("more than " + std::to_string(largest_count) + " entries");
  }
}

void check_index(const Lines& lines, const Header& header, const char* name, std::string_view word,
                 std::int64_t& index) {
  if (!parse_integer(word, index)) {
    lines.fault(std::string("malformed ") + name + " index " + quoted_word(word));
  }
  if (index < 1 || index > header.order) {
    lines.fault(std::string(name) + " index " + std::to_string(index) + " is out of range 1 .. " +
                std::to_string(header.order));
  }
}

void check_value(const Lines& lines, const Header& header, std::string_view word) {
  const std::string_view digits = word.substr(!word.empty() && word.front() == '+' ? 1 : 0);
  const bool doubly_signed = digits.size() < word.size() && !digits.empty() && digits.front() == '-';
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (end != digits.data() + digits.size() || error == std::errc::invalid_argument || doubly_signed) {
    lines.fault("malformed number " + quoted_word(word));
  }
  if (error == std::errc::result_out_of_range) {  // too large, or so small that it rounds to 0
    value = std::strtod(std::string(digits).c_str(), nullptr);
  }
  if (!(std::fabs(value) < largest_value)) {
    lines.fault("the value " + quoted_word(word) + " is not a finite number below 1e308");
  }
  std::int64_t whole = 0;
  if (header.integer && !parse_integer(word, whole)) {
    lines.fault("malformed integer " + quoted_word(word));
  }
}

void check_entry(const Lines& lines, const Header& header, const Words& words) {
  if (!header.coordinate) {
    if (words.size() != 1) {
      lines.fault("expected one number, found " + std::to_string(words.size()) + " words");
    }
    check_value(lines, header, words[0]);
    return;
  }
  if (words.size() != 3) {
    lines.fault("expected 'row column value', found " + std::to_string(words.size()) + " words");
  }
  std::int64_t row = 0;
  std::int64_t column = 0;
  check_index(lines, header, "row", words[0], row);
  check_index(lines, header, "column", words[1], column);
  if (header.symmetric && column > row) {
    lines.fault("entry (" + std::to_string(row) + ", " + std::to_string(column) +
                ") lies above the diagonal, but the header says symmetric");
  }
  check_value(lines, header, words[2]);
}

}  // namespace

void refuse_line(const std::string& path, std::int64_t line, const std::string& fault) {
  throw InputError(path, line, fault);
}

void check_matrix_market(const std::string& path) {
  Lines lines(path);
  Header header = read_banner(lines);
  read_sizes(lines, header);
  Words words;
  for (std::int64_t k = 0; k < header.entries; ++k) {
    if (!lines.next_data(words)) {
      lines.fault("the file ends after " + std::to_string(k) + " of " + std::to_string(header.entries) + " entries");
    }
    check_entry(lines, header, words);
  }
  if (lines.next_data(words)) {
    lines.fault("more than the announced " + std::to_string(header.entries) + " entries");
  }
}

std::int64_t line_of_entry(const std::string& path, std::int64_t k) {
  std::ifstream file(path, std::ios::binary);
  std::string text;
  Words words;
  std::int64_t data_lines = -1;  // the line of sizes comes first
  for (std::int64_t number = 1; std::getline(file, text); ++number) {
    split_words(text, words);
    if (!words.empty() && words.front().front() != '%' && data_lines++ == k) {
      return number;
    }
  }
  return 0;
}

}  // namespace modal
