// SPDX-License-Identifier: MIT
#include "message_table.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

namespace zortav {
namespace {

using nlohmann::json;

// The depth of the texts' containers: the catalog is 0, a message 1. Nothing may open deeper, so that no depth of
// nesting costs anything.
constexpr int deepest_container = 1;

bool keep(int depth, json::parse_event_t event, json&) {
  const bool opens = event == json::parse_event_t::object_start || event == json::parse_event_t::array_start;
  if (opens && depth > deepest_container) {
    throw std::runtime_error("nested too deep");
  }
  return true;
}

Message parse_message(const std::string& id, const json& fields) {
  if (!fields.is_object()) {
    throw std::runtime_error(id + " is not an object");
  }
  const auto text = [&](const char* name) {
    const auto field = fields.find(name);
    if (field == fields.end()) {
      return std::string();
    }
    if (!field->is_string()) {
      throw std::runtime_error(id + ": " + name + " is not a text");
    }
    return field->get<std::string>();
  };
  return {text("request"), text("diagnostic"), text("advice"), text("help_file"), text("help_context")};
}

}  // namespace

MessageTable parse_messages(std::string_view bytes) {
  const json catalog = json::parse(bytes.begin(), bytes.end(), keep);
  if (!catalog.is_object()) {
    throw std::runtime_error("not an object of messages");
  }
  MessageTable messages;
  for (const auto& [id, fields] : catalog.items()) {
    messages.emplace(id, parse_message(id, fields));
  }
  return messages;
}

}  // namespace zortav
