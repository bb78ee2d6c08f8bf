// SPDX-License-Identifier: MIT
#include "ZORTavError.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "ZORSystem.h"
#include "ZORTAVListing.h"
#include "ZORTavTraces.h"
#include "services/errors/error_log.h"
#include "services/errors/message_id.h"
#include "services/listing/redirected_write.h"

namespace {

enum Severity : int { internal_error, error, warning, information };

// The framework's kind of error that does not stop the work.
constexpr int32_t continuing_error_type = 3;

constexpr char closing_line[] = "\n***********************************************\n\n";

const char* banner(int severity) {
  switch (severity) {
    case internal_error:
      return "\n**************** INTERNAL ERROR ***************\n";
    case error:
      return "\n******************** ERROR ********************\n";
    case warning:
      return "\n******************* WARNING *******************\n";
    case information:
      return "\n***************** INFORMATION *****************\n";
    default:
      return "\n******************* UNKNOWN ********************\n";
  }
}

}  // namespace

ZORTavError::ZORTavError(const ZORTavError& other) = default;

ZORTavError::ZORTavError(uint32_t id) : ZORResourceError(id), severity_(internal_error) {}

ZORTavError::ZORTavError(uint32_t id, const char* message_id, const char* catalog)
    : ZORResourceError(id, message_id, catalog), severity_(internal_error) {}

ZORTavError::ZORTavError(const char* message_id, const char* catalog)
    : ZORResourceError(message_id, catalog), severity_(internal_error) {}

ZORTavError::ZORTavError(const ZORUnicodeString* text)
    : ZORResourceError(zortav::internal_error_id, "ZORTavrinError"), severity_(internal_error) {
  SetNLSAdviceParams(1, text);
  PrintAndGiveUp();
}

ZORTavError::~ZORTavError() = default;

ZORTavError& ZORTavError::operator=(const ZORTavError& other) = default;

void ZORTavError::Activate() {
  PrintAndGiveUp();
}

void ZORTavError::CreateTavrinError(int id, const ZORRawCollint& integers, const ZORRawColldouble& reals,
                                    const ZORListValZORUnicodeString& texts) {
  GetSeverityFromCatalog(id);
  SetParameters(integers, reals, texts);
  PrintAndGiveUp();
}

void ZORTavError::CreateTavrinError(int id, const char*, const ZORUnicodeString* parameters) {
  constexpr int32_t parameter_count = 25;
  GetSeverityFromCatalog(id);
  SetNLSDiagnosticParams(parameter_count, parameters);
  PrintAndGiveUp();
}

int ZORTavError::GetSeverity() const {
  return severity_;
}

void ZORTavError::GetSeverityFromCatalog(int id) {
  struct Kind {
    const char* prefix;
    Severity severity;
  };
  for (const Kind kind : {Kind{"ERR", error}, Kind{"WARN", warning}, Kind{"INFO", information}}) {
    zortav::MessageId message_id;
    zortav::write_message_id(message_id, kind.prefix, id);
    SetMsgId(message_id);
    severity_ = kind.severity;
    if (!GetNLSDiagnostic().IsEmpty()) {
      if (kind.severity != error) {
        SetInformationOnErrorType(continuing_error_type);
      }
      return;
    }
  }
  severity_ = internal_error;
  SetMsgId(zortav::internal_error_id);
  char number[sizeof "-2147483648"];
  std::snprintf(number, sizeof number, "%d", id);
  const ZORUnicodeString advice =
      ZORUnicodeString("Message not found\nCatalog: ") + GetMsgCatalog() + "\nIdentifier: " + ZORUnicodeString(number);
  SetNLSAdviceParams(1, &advice);
}

// Integers are parameters 1 to 10, reals 11 to 20, texts 21 to 25.
void ZORTavError::SetParameters(const ZORRawCollint& integers, const ZORRawColldouble& reals,
                                const ZORListValZORUnicodeString& texts) {
  constexpr int32_t first_real = 10;
  constexpr int32_t first_text = 20;
  constexpr int32_t slot_count = 25;
  constexpr std::size_t number_size = 32;
  ZORUnicodeString slots[slot_count];
  char number[number_size];
  for (int32_t i = 0; i < std::min(integers.Size(), first_real); ++i) {
    std::snprintf(number, number_size, "%d", integers[i + 1]);
    slots[i] = number;
  }
  for (int32_t i = 0; i < std::min(reals.Size(), first_text - first_real); ++i) {
    std::snprintf(number, number_size, "%g", reals[i + 1]);
    slots[first_real + i] = number;
  }
  for (int32_t i = 0; i < std::min(texts.Size(), slot_count - first_text); ++i) {
    slots[first_text + i] = texts[i + 1];
  }
  SetNLSDiagnosticParams(slot_count, slots);
}

void ZORTavError::Print() {
  zortav::redirected_put(Tra_TAVPrint, banner(severity_));
  zortav::redirected_put(Tra_TAVPrint, GetNLSMessage().GetText());
  zortav::redirected_put(Tra_TAVPrint, closing_line);
  if (ZORTavErrorLog log = zortav::error_log(); log != nullptr && severity_ != information) {
    log(this);
  }
}

void ZORTavError::PrintStack() const {}

// Nothing is printed: callers rely on it being silent and on the flush.
void ZORTavError::PrintMsgError(int, const ZORUnicodeString&, int) const {
  eyflsh();
}

ZORTavError* ZORTavError::Setup(const char* file, int32_t line) {
  ZORResourceError::Setup(file, line);
  return this;
}

ZORTavError* ZORTavError::Self() {
  return this;
}

const ZORMetaClass* ZORTavError::GetMetaObject() const {
  return MetaObject();
}

const char* ZORTavError::IsA() const {
  return ClassName();
}

int32_t ZORTavError::IsAKindOf(const char* class_name) const {
  return MetaObject()->IsAKindOf(class_name) ? 1 : 0;
}

ZORTavError* ZORTavError::CloneSelf() const {
  return new (std::nothrow) ZORTavError(*this);
}

const ZORErrorTableEntry* ZORTavError::GetErrorTable(int32_t* length) const {
  *length = 0;
  return nullptr;
}

const ZORMetaClass* ZORTavError::ClassId() {
  return MetaObject();
}

const ZORMetaClass* ZORTavError::MetaObject() {
  static const ZORMetaClass meta("ZORTavError", ZORResourceError::MetaObject(), "ZORNull", "ZORTavrinOpenSoftware");
  return &meta;
}

const char* ZORTavError::ClassName() {
  return MetaObject()->GetName();
}

ZORBaseObject* ZORTavError::CreateItself() {
  return nullptr;
}

void ZORTavError::PrintAndGiveUp() {
  Print();
  if (ZORGetEnv("NoTavCallStack") == nullptr) {
    PrintStack();
  }
  if (severity_ != information) {
    Release();
  }
}
