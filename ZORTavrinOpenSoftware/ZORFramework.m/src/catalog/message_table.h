// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace zortav {

// The texts of one message, their parameters not yet put in; any may be empty.
struct Message {
  std::string request;
  std::string diagnostic;
  std::string advice;
  std::string help_file;
  std::string help_context;
};

// Messages by their identifiers.
using MessageTable = std::map<std::string, Message>;

// The messages of a catalog file's bytes: a JSON object of objects of texts. What the fields of a message are not known
// by is left out. Throws std::exception, which tells what is wrong, for anything else.
MessageTable parse_messages(std::string_view bytes);

}  // namespace zortav
