// SPDX-License-Identifier: MIT
#include "ZORResourceError.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "catalog/find_message.h"
#include "catalog/substitute_parameters.h"

namespace {

constexpr int32_t most_parameters = 25;

// One text of a message with its parameters; empty when the catalog does not have it.
ZORUnicodeString text_of(const ZORString& catalog, const ZORString& id, std::string zortav::Message::*text,
                         const ZORListValZORUnicodeString& parameters) {
  try {
    const zortav::Message* const message = zortav::find_message(catalog.GetText(), id.GetText());
    if (message != nullptr) {
      return zortav::substitute_parameters(message->*text, parameters).c_str();
    }
  } catch (...) {
    // Without the memory to read a catalog in, its messages are not to be had.
  }
  return {};
}

void set(ZORListValZORUnicodeString& list, int32_t count, const ZORUnicodeString* parameters) {
  ZORListValZORUnicodeString fresh;  // the parameters may come out of the list itself
  for (int32_t i = 0; parameters != nullptr && i < std::min(count, most_parameters); ++i) {
    fresh.Append(parameters[i]);
  }
  list = std::move(fresh);
}

}  // namespace

ZORResourceError::ZORResourceError(uint32_t id) noexcept : ZORError(id) {}

ZORResourceError::ZORResourceError(uint32_t id, const char* message_id, const char* catalog) noexcept
    : ZORError(id), message_id_(message_id), catalog_(catalog) {}

ZORResourceError::ZORResourceError(const char* message_id, const char* catalog) noexcept
    : ZORResourceError(0, message_id, catalog) {}

ZORResourceError::ZORResourceError(const ZORResourceError&) noexcept = default;

ZORResourceError& ZORResourceError::operator=(const ZORResourceError&) noexcept = default;

ZORResourceError::~ZORResourceError() = default;

const ZORMetaClass* ZORResourceError::GetMetaObject() const {
  return MetaObject();
}

const char* ZORResourceError::IsA() const {
  return ClassName();
}

int32_t ZORResourceError::IsAKindOf(const char* class_name) const {
  return MetaObject()->IsAKindOf(class_name) ? 1 : 0;
}

const char* ZORResourceError::GetMsgId() const {
  return message_id_.GetText();
}

const char* ZORResourceError::GetMsgCatalog() const {
  return catalog_.GetText();
}

ZORUnicodeString ZORResourceError::GetNLSRequest() const {
  return text_of(catalog_, message_id_, &zortav::Message::request, request_parameters_);
}

ZORUnicodeString ZORResourceError::GetNLSDiagnostic() const {
  return text_of(catalog_, message_id_, &zortav::Message::diagnostic, diagnostic_parameters_);
}

ZORUnicodeString ZORResourceError::GetNLSAdvice() const {
  return text_of(catalog_, message_id_, &zortav::Message::advice, advice_parameters_);
}

ZORUnicodeString ZORResourceError::GetNLSHelpFile() const {
  return text_of(catalog_, message_id_, &zortav::Message::help_file, {});
}

ZORUnicodeString ZORResourceError::GetNLSHelpContext() const {
  return text_of(catalog_, message_id_, &zortav::Message::help_context, {});
}

void ZORResourceError::SetNLSRequestParams(int32_t count, const ZORUnicodeString* parameters) {
  set(request_parameters_, count, parameters);
}

void ZORResourceError::SetNLSDiagnosticParams(int32_t count, const ZORUnicodeString* parameters) {
  set(diagnostic_parameters_, count, parameters);
}

void ZORResourceError::SetNLSAdviceParams(int32_t count, const ZORUnicodeString* parameters) {
  set(advice_parameters_, count, parameters);
}

ZORError* ZORResourceError::CloneSelf() const {
  return new (std::nothrow) ZORResourceError(*this);
}

const ZORMetaClass* ZORResourceError::MetaObject() {
  static const ZORMetaClass description("ZORResourceError", ZORError::MetaObject(), "ZORNull", "ZORFramework");
  return &description;
}

const char* ZORResourceError::ClassName() {
  return MetaObject()->GetName();
}

void ZORResourceError::SetMsgId(const char* message_id) noexcept {
  message_id_ = message_id;
}
