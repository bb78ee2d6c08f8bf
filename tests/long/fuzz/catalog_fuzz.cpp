// SPDX-License-Identifier: MIT
// Message catalogs: the file's bytes, then its texts with 25 parameters that themselves look like parameters.
#include <algorithm>
#include <exception>

#include "catalog/message_table.h"
#include "catalog/substitute_parameters.h"
#include "hostile_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t parameter_length = 4;
  ZORListValZORUnicodeString parameters;
  for (int i = 0; i < 25; ++i) {
    parameters.Append("/p25");
  }
  zortav::MessageTable messages;
  try {
    messages = zortav::parse_messages(zortest::text_of(data, size));
  } catch (const std::exception& refusal) {
    zortest::promise(*refusal.what() != '\0', "a refused catalog says why");
    return 0;
  }
  for (const auto& [id, message] : messages) {
    for (const std::string& text : {message.request, message.diagnostic, message.advice}) {
      // A mark and a digit at least make way for each parameter: at most 4/3 of the text comes out.
      const std::string result = zortav::substitute_parameters(text, parameters);
      zortest::promise(result.size() <= text.size() + text.size() / 3 * (parameter_length - 3),
                       "parameters are put in once");
    }
  }
  return 0;
}
