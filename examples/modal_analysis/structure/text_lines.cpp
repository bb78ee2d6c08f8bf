// SPDX-License-Identifier: MIT
#include "structure/text_lines.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <filesystem>

#include "structure/input_error.h"

namespace modal {
namespace {

constexpr std::size_t longest_line = 1 << 20;  // one record; an entity lists the tags of all that bounds it
constexpr double largest_coordinate = 1e100;

}  // namespace

std::string quoted_word(std::string_view word) {
  constexpr std::size_t longest_quote = 24;
  std::string text = "'";
  for (const char c : word.substr(0, longest_quote)) {
    text += std::isprint(static_cast<unsigned char>(c)) != 0 ? c : '?';
  }
  return text + (word.size() > longest_quote ? "...'" : "'");
}

void split_words(std::string_view line, std::vector<std::string_view>& words) {
  words.clear();
  constexpr std::string_view blank = " \t\r\v\f";
  std::size_t at = line.find_first_not_of(blank);
  while (at != std::string_view::npos) {
    const std::size_t end = std::min(line.find_first_of(blank, at), line.size());
    words.push_back(line.substr(at, end - at));
    at = line.find_first_not_of(blank, end);
  }
}

TextLines::TextLines(const std::string& path) : path_(path), file_(path, std::ios::binary) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) {
    throw InputError(path + ": no such file");
  }
  if (std::filesystem::is_directory(path, error) || !file_) {
    throw InputError(path + ": the file cannot be read");
  }
}

bool TextLines::next() {
  word_.clear();
  while (word_.empty()) {
    if (!std::getline(file_, text_)) {
      return false;
    }
    ++number_;
    if (text_.size() > longest_line) {
      fault("longer than " + std::to_string(longest_line) + " characters");
    }
    split_words(text_, word_);
  }
  return true;
}

void TextLines::need(const char* wanted) {
  if (!next()) {
    fault(std::string("the file ends before ") + wanted);
  }
}

void TextLines::need(const char* wanted, std::size_t words) {
  need(wanted);
  if (word_.size() != words) {
    fault(std::string("expected ") + wanted + ", found " + quoted_word(text_));
  }
}

std::int64_t TextLines::integer(std::size_t i, const char* name, std::int64_t low, std::int64_t high) const {
  std::int64_t value = 0;
  const char* const end = word_[i].data() + word_[i].size();
  const auto [at, error] = std::from_chars(word_[i].data(), end, value);
  if (error != std::errc() || at != end || value < low || value > high) {
    fault(std::string(name) + " " + quoted_word(word_[i]) + " is not a whole number " + std::to_string(low) + " .. " +
          std::to_string(high));
  }
  return value;
}

double TextLines::coordinate(std::size_t i) const {
  double value = 0;
  const char* const end = word_[i].data() + word_[i].size();
  const auto [at, error] = std::from_chars(word_[i].data(), end, value);
  // Out of range is what is too large, and what is so small that it counts as 0.
  if (error == std::errc::invalid_argument || at != end || !(std::fabs(value) <= largest_coordinate) ||
      (error == std::errc::result_out_of_range && word_[i].find("e-") == std::string_view::npos &&
       word_[i].find("E-") == std::string_view::npos)) {
    fault("the coordinate " + quoted_word(word_[i]) + " is not a number up to 1e100 in magnitude");
  }
  return value;
}

void TextLines::fault_at(std::int64_t line, const std::string& text) const {
  throw InputError(path_, std::max<std::int64_t>(line, 1), text);
}

}  // namespace modal
