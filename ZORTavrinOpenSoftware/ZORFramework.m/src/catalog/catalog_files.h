// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "message_table.h"

namespace zortav {

// The environment variable that lists folders of catalogs; empty when it is not set.
std::string catalog_search_path();

// The messages of the first file of this catalog and language that is found and understood; none when there is no such
// file. A file that is not understood is reported on standard error, once. Throws std::bad_alloc without the memory for
// it.
std::optional<MessageTable> read_catalog_file(const std::string& search_path, const std::string& catalog,
                                              const std::string& language);

}  // namespace zortav
