// SPDX-License-Identifier: MIT
#include "ZORError.h"

#include <cstdio>
#include <new>

#include "ZORRuntime.h"

ZORError::ZORError(uint32_t id) noexcept : id_(id), source_line_(0), return_code_(0), error_type_(0) {}

ZORError::ZORError(const ZORError&) noexcept = default;

ZORError& ZORError::operator=(const ZORError&) noexcept = default;

ZORError::~ZORError() = default;

const ZORMetaClass* ZORError::GetMetaObject() const {
  return MetaObject();
}

const char* ZORError::IsA() const {
  return ClassName();
}

int32_t ZORError::IsAKindOf(const char* class_name) const {
  return MetaObject()->IsAKindOf(class_name) ? 1 : 0;
}

uint32_t ZORError::GetId() const {
  return id_;
}

const char* ZORError::GetMsgId() const {
  return "";
}

const char* ZORError::GetMsgCatalog() const {
  return "";
}

const char* ZORError::GetSourceFileName() const {
  return source_file_.GetText();
}

void ZORError::SetSourceFileName(const char* file) {
  source_file_ = file;
}

int32_t ZORError::GetSourceLineNumber() const {
  return source_line_;
}

void ZORError::SetSourceLineNumber(int32_t line) {
  source_line_ = line;
}

ZORString ZORError::GetMessageText() const {
  return GetNLSMessage().GetText();
}

ZORUnicodeString ZORError::GetNLSMessage() const {
  ZORUnicodeString message;
  for (const ZORUnicodeString& part : {GetNLSRequest(), GetNLSDiagnostic(), GetNLSAdvice()}) {
    if (!part.IsEmpty()) {
      message.Append(message.IsEmpty() ? "" : "\n");
      message.Append(part);
    }
  }
  return message;
}

ZORUnicodeString ZORError::GetNLSRequest() const {
  return {};
}

ZORUnicodeString ZORError::GetNLSDiagnostic() const {
  return {};
}

ZORUnicodeString ZORError::GetNLSAdvice() const {
  return {};
}

ZORUnicodeString ZORError::GetNLSSource() const {
  if (source_file_.IsEmpty()) {
    return {};
  }
  char line[16];
  std::snprintf(line, sizeof line, ", %d", static_cast<int>(source_line_));
  return ZORUnicodeString(source_file_) + line;
}

ZORUnicodeString ZORError::GetNLSHelpFile() const {
  return {};
}

ZORUnicodeString ZORError::GetNLSHelpContext() const {
  return {};
}

void ZORError::Display() const {
  std::fprintf(stderr, "%s\n", GetNLSMessage().GetText());
}

void ZORError::PrintHistory() const {
  std::fprintf(stderr, "%s %s (%s) %s\n", GetMsgCatalog(), GetMsgId(), GetNLSSource().GetText(), GetSourceContext());
}

void ZORError::Throw(const char* file, int32_t line) {
  Setup(file, line);
  ZORFatalError(GetMessageText().GetText(), GetSourceFileName(), line);
}

void ZORError::SetNLSParameters(int32_t request_count, const ZORUnicodeString* request, int32_t diagnostic_count,
                                const ZORUnicodeString* diagnostic, int32_t advice_count,
                                const ZORUnicodeString* advice) {
  SetNLSRequestParams(request_count, request);
  SetNLSDiagnosticParams(diagnostic_count, diagnostic);
  SetNLSAdviceParams(advice_count, advice);
}

void ZORError::SetNLSRequestParams(int32_t, const ZORUnicodeString*) {}

void ZORError::SetNLSDiagnosticParams(int32_t, const ZORUnicodeString*) {}

void ZORError::SetNLSAdviceParams(int32_t, const ZORUnicodeString*) {}

void ZORError::SetSourceContext(const char* context) {
  source_context_ = context;
}

const char* ZORError::GetSourceContext() const {
  return source_context_.GetText();
}

int32_t ZORError::GetReturnCode() const {
  return return_code_;
}

void ZORError::SetReturnCode(int32_t code) {
  return_code_ = code;
}

int32_t ZORError::GetInformationOnErrorType() const {
  return error_type_;
}

void ZORError::SetInformationOnErrorType(int32_t type) {
  error_type_ = type;
}

ZORError* ZORError::CloneSelf() const {
  return new (std::nothrow) ZORError(*this);
}

const ZORErrorTableEntry* ZORError::GetErrorTable(int32_t* length) const {
  *length = 0;
  return nullptr;
}

ZORError* ZORError::Setup(const char* file, int32_t line) {
  SetSourceFileName(file);
  SetSourceLineNumber(line);
  return this;
}

const ZORMetaClass* ZORError::MetaObject() {
  static const ZORMetaClass description("ZORError", ZORBaseObject::MetaObject(), "ZORNull", "ZORFramework");
  return &description;
}

const char* ZORError::ClassName() {
  return MetaObject()->GetName();
}
