// SPDX-License-Identifier: MIT
// The parser's events become messages at once. No tree of values is built: its destructor allocates, and would end the
// process where memory is short.
#include "message_table.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace zortav {
namespace {

using nlohmann::json;

class MessageReader final : public nlohmann::json_sax<json> {
 public:
  MessageTable take() { return std::move(messages_); }

  bool null() override { return other_value(); }
  bool boolean(bool) override { return other_value(); }
  bool number_integer(json::number_integer_t) override { return other_value(); }
  bool number_unsigned(json::number_unsigned_t) override { return other_value(); }
  bool number_float(json::number_float_t, const std::string&) override { return other_value(); }
  bool binary(json::binary_t&) override { return other_value(); }
  bool string(std::string& text) override {
    if (text_ == nullptr) {
      return other_value();
    }
    *text_ = std::move(text);
    return true;
  }
  bool key(std::string& name) override {
    if (depth_ == in_catalog) {
      id_ = std::move(name);
    } else {
      field_ = std::move(name);
      text_ = text_of(messages_[id_]);
    }
    return true;
  }
  bool start_object(std::size_t) override {
    if (depth_ == in_message) {
      throw std::runtime_error("nested too deep");
    }
    if (depth_ == in_catalog) {
      messages_[id_] = Message();  // of two with one identifier the last one counts
    }
    ++depth_;
    return true;
  }
  bool end_object() override {
    --depth_;
    text_ = nullptr;
    return true;
  }
  bool start_array(std::size_t) override {
    return depth_ == in_message ? throw std::runtime_error("nested too deep") : other_value();
  }
  bool end_array() override { return true; }
  bool parse_error(std::size_t, const std::string&, const json::exception& error) override {
    throw std::runtime_error(error.what());
  }

 private:
  // How many objects are open.
  static constexpr int in_catalog = 1;
  static constexpr int in_message = 2;

  std::string* text_of(Message& message) const {
    return field_ == "request"        ? &message.request
           : field_ == "diagnostic"   ? &message.diagnostic
           : field_ == "advice"       ? &message.advice
           : field_ == "help_file"    ? &message.help_file
           : field_ == "help_context" ? &message.help_context
                                      : nullptr;
  }
  // A value that is no text, or is one where none is looked for: only a field that nobody knows may have it.
  bool other_value() const {
    if (depth_ < in_catalog) {
      throw std::runtime_error("not an object of messages");
    }
    if (depth_ == in_catalog) {
      throw std::runtime_error(id_ + " is not an object");
    }
    if (text_ != nullptr) {
      throw std::runtime_error(id_ + ": " + field_ + " is not a text");
    }
    return true;
  }

  MessageTable messages_;
  std::string id_;
  std::string field_;
  std::string* text_ = nullptr;  // of the field that was named last; null for one that is left out
  int depth_ = 0;
};

}  // namespace

MessageTable parse_messages(std::string_view bytes) {
  MessageReader reader;
  json::sax_parse(bytes.begin(), bytes.end(), &reader);
  return reader.take();
}

}  // namespace zortav
