// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "ZORCollections.h"

namespace zortav {

// The text with "/p1" to "/p25" replaced by the parameters of these numbers.
std::string substitute_parameters(std::string_view text, const ZORListValZORUnicodeString& parameters);

}  // namespace zortav
