// SPDX-License-Identifier: MIT
// The first that holds the message, of: the catalog's file and the compiled-in catalog in the user's language, then the
// same two in English; for the internal error, all of these again for the catalog that every program has.
#include "find_message.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

#include "ZORSystem.h"
#include "catalog_files.h"
#include "compiled_catalogs.h"

namespace zortav {
namespace {

constexpr const char* english = "en";
constexpr const char* internal_error = "ERR_0001";
constexpr const char* internal_error_catalog = "ZORTavrinError";

struct Key {
  std::string search_path;
  std::string catalog;
  std::string language;
  bool operator<(const Key& other) const {
    return std::tie(search_path, catalog, language) < std::tie(other.search_path, other.catalog, other.language);
  }
};

MessageTable read_compiled_catalog(const std::string& catalog, const std::string& language) {
  std::size_t count = 0;
  const CompiledCatalog* const all = compiled_catalogs(&count);
  const auto* const found =
      std::find_if(all, all + count, [&](const auto& c) { return catalog == c.name && language == c.language; });
  if (found == all + count) {
    return {};
  }
  return parse_messages({reinterpret_cast<const char*>(found->bytes), found->size});
}

// The tables of a catalog and language, what is looked at first standing first. Kept, the absent ones too.
const std::array<MessageTable, 2>& tables(const Key& key) {
  static auto& kept = *new std::map<Key, std::array<MessageTable, 2>>;
  const auto known = kept.find(key);
  if (known != kept.end()) {
    return known->second;
  }
  auto from_file = read_catalog_file(key.search_path, key.catalog, key.language);
  std::array<MessageTable, 2> both{from_file ? *std::move(from_file) : MessageTable(),
                                   read_compiled_catalog(key.catalog, key.language)};
  return kept.emplace(key, std::move(both)).first->second;
}

// The text of an internal error stands in its only parameter.
bool keeps_its_text(const Message& message) {
  constexpr std::string_view parameter = "/p1";
  const std::string_view advice = message.advice;
  for (auto at = advice.find(parameter); at != std::string_view::npos; at = advice.find(parameter, at + 1)) {
    const std::size_t after = at + parameter.size();
    if (after == advice.size() || advice[after] < '0' || advice[after] > '9') {
      return true;
    }
  }
  return false;
}

}  // namespace

std::string user_language() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const value = ZORGetEnv(name);
    if (value == nullptr || *value == '\0') {
      continue;
    }
    const std::string_view locale = value;
    const std::string language(locale.substr(0, locale.find_first_of("_.@")));
    const bool names_language =
        language.size() >= 2 && language.size() <= 3 &&
        std::all_of(language.begin(), language.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    return names_language ? language : english;
  }
  return english;
}

const Message* find_message(const std::string& catalog, const std::string& id) {
  const std::string search_path = catalog_search_path();
  for (const std::string& language : {user_language(), std::string(english)}) {
    for (const MessageTable& table : tables({search_path, catalog, language})) {
      const auto message = table.find(id);
      if (message != table.end() &&
          (id != internal_error || catalog != internal_error_catalog || keeps_its_text(message->second))) {
        return &message->second;
      }
    }
  }
  if (id == internal_error && catalog != internal_error_catalog) {
    return find_message(internal_error_catalog, id);
  }
  return nullptr;
}

}  // namespace zortav
