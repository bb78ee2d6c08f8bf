// SPDX-License-Identifier: MIT
#include "ZORTavErrorTools.h"

#include <cstdio>
#include <new>

#include "ZORRuntime.h"
#include "ZORTavError.h"
#include "services/errors/message_id.h"

namespace {

constexpr char default_catalog[] = "ZORTavrinError";

// One for all calls: errors are raised from one thread.
zortav::MessageId message_id;

void raise(const char* kind, int id, const char* catalog,
           std::initializer_list<const ZORTavTypeEncapError*> parameters) {
  for (const ZORTavTypeEncapError* parameter : parameters) {
    if (!parameter->IsEmpty()) {
      parameter->Dump();
    }
  }
  zortav::write_message_id(message_id, kind, id);
  auto* error = new (std::nothrow) ZORTavError(message_id, catalog);
  if (error == nullptr) {
    ZORFatalError("no memory for an error report", __FILE__, __LINE__);
  }
  ZORRawCollint integers;
  ZORRawColldouble reals;
  ZORListValZORUnicodeString texts;
  for (const ZORTavTypeEncapError* parameter : parameters) {
    parameter->AddParameterInList(integers, reals, texts);
  }
  error->CreateTavrinError(id, integers, reals, texts);
}

}  // namespace

void ZORTavErrorTools::Create(int id, const ZORTavTypeEncapError& p1, const ZORTavTypeEncapError& p2,
                              const ZORTavTypeEncapError& p3, const ZORTavTypeEncapError& p4,
                              const ZORTavTypeEncapError& p5, const ZORTavTypeEncapError& p6,
                              const ZORTavTypeEncapError& p7, const ZORTavTypeEncapError& p8,
                              const ZORTavTypeEncapError& p9) {
  CreateError(id, default_catalog, p1, p2, p3, p4, p5, p6, p7, p8, p9);
}

void ZORTavErrorTools::Create(const char* text) {
  const ZORUnicodeString message(text);
  if (new (std::nothrow) ZORTavError(&message) == nullptr) {
    ZORFatalError("no memory for an error report", __FILE__, __LINE__);
  }
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the report has given the error up

void ZORTavErrorTools::CreateError(int id, const char* catalog, const ZORTavTypeEncapError& p1,
                                   const ZORTavTypeEncapError& p2, const ZORTavTypeEncapError& p3,
                                   const ZORTavTypeEncapError& p4, const ZORTavTypeEncapError& p5,
                                   const ZORTavTypeEncapError& p6, const ZORTavTypeEncapError& p7,
                                   const ZORTavTypeEncapError& p8, const ZORTavTypeEncapError& p9) {
  raise("ERR", id, catalog, {&p1, &p2, &p3, &p4, &p5, &p6, &p7, &p8, &p9});
}

void ZORTavErrorTools::CreateWarning(int id, const char* catalog, const ZORTavTypeEncapError& p1,
                                     const ZORTavTypeEncapError& p2, const ZORTavTypeEncapError& p3,
                                     const ZORTavTypeEncapError& p4, const ZORTavTypeEncapError& p5,
                                     const ZORTavTypeEncapError& p6, const ZORTavTypeEncapError& p7,
                                     const ZORTavTypeEncapError& p8, const ZORTavTypeEncapError& p9) {
  raise("WARN", id, catalog, {&p1, &p2, &p3, &p4, &p5, &p6, &p7, &p8, &p9});
}
