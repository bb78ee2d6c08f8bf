// SPDX-License-Identifier: MIT
// The lines of a text file, split into words, with messages that name the place.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace modal {

// The word as it may stand in a one-line message.
std::string quoted_word(std::string_view word);

// The words of the line, in the place of what `words` held.
void split_words(std::string_view line, std::vector<std::string_view>& words);

class TextLines {
 public:
  // Throws InputError for what is not a file that can be read.
  explicit TextLines(const std::string& path);

  // Goes to the next line that is not blank; false at the end of the file.
  bool next();
  // The same where there must be one: `wanted` says what.
  void need(const char* wanted);
  // The same, and it must have this many words.
  void need(const char* wanted, std::size_t words);

  const std::string& text() const { return text_; }
  std::size_t words() const { return word_.size(); }
  std::string_view word(std::size_t i) const { return word_[i]; }
  // Word i as a whole number low .. high; `name` says what it is.
  std::int64_t integer(std::size_t i, const char* name, std::int64_t low, std::int64_t high) const;
  // Word i as a coordinate: a finite number that can be squared and summed.
  double coordinate(std::size_t i) const;

  std::int64_t number() const { return number_; }
  [[noreturn]] void fault(const std::string& text) const { fault_at(number_, text); }
  [[noreturn]] void fault_at(std::int64_t line, const std::string& text) const;

 private:
  std::string path_;
  std::ifstream file_;
  std::string text_;
  std::vector<std::string_view> word_;
  std::int64_t number_ = 0;
};

}  // namespace modal
