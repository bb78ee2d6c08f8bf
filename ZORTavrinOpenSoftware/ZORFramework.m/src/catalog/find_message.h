// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "message_table.h"

namespace zortav {

// The language of the user, such as "fr": the first part of the first of LC_ALL, LC_MESSAGES and LANG that is set and
// not empty; "en" when none is, or it names no language.
std::string user_language();

// The message of a catalog in the user's language, else in English; null when the catalog has no such message. It lives
// as long as the process.
const Message* find_message(const std::string& catalog, const std::string& id);

}  // namespace zortav
