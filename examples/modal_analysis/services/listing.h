// SPDX-License-Identifier: MIT
// The solver log of a run: the listing, which is written only where the user asked for it.
#pragma once

#include <cstdint>
#include <string>

namespace modal {

// Sets the trace channels and opens the log where the environment variable ADL_ODT_OUT names a folder. Without a log
// the channel of the listing is switched off, so that the terminal has the report alone. Returns what there is to say
// of a folder that cannot be used, else the empty text.
std::string open_listing();

// The path of the open log; empty when there is none.
std::string listing_path();

// A line of text, the empty one included.
void list(const std::string& line);
// A title with a rule under it.
void list_title(const std::string& title);
// "text value" and two empty lines: a number that ends a paragraph.
void list_number(const std::string& text, std::int32_t value);
// A real at the place of the format's one conversion, such as "%.3f MB", and an empty line.
void list_real(const char* format, double value);

}  // namespace modal
