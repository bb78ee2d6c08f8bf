/* SPDX-License-Identifier: MIT */
/* Errors whose texts stand in message catalogs. */
#ifndef ZOR_RESOURCE_ERROR_H
#define ZOR_RESOURCE_ERROR_H

#include <stdint.h>

#include "ZORCollections.h"
#include "ZORError.h"

/**
 * An error whose texts stand in a message catalog under a message identifier.
 *
 * Catalogs. A catalog is one file for each language, named `<catalog>_<language>.json` (`ZORTAVMathKernelError_fr.json`):
 * an object that maps message identifiers to objects with the texts "request", "diagnostic", "advice", "help_file" and
 * "help_context", each of which may be missing. It is searched in
 *
 *   1. the folders that the environment variable ZOR_MESSAGE_CATALOG_PATH lists, in order (separated by ':' on Linux,
 *      ';' on Windows);
 *   2. the folder of the library, and "msgcatalog" in it;
 *   3. "../share/ZORTAVMathKernel/msgcatalog" and "../../share/ZORTAVMathKernel/msgcatalog" from the folder of the library,
 *      its places under an install prefix.
 *
 * The first file that is there and can be understood counts. The language is the first part of the first of LC_ALL,
 * LC_MESSAGES and LANG that is set and not empty ("fr" of "fr_CA.UTF-8"); "C", "POSIX" and none at all are English. A
 * message that is not there in that language is taken in English ("en"). The catalogs of this library, "ZORTavrinError"
 * and "ZORTAVMathKernelError", are also compiled in and stand behind their files, language by language.
 *
 * A catalog file is read once for each setting of the search path. One that cannot be understood (no JSON, not of this
 * form, not UTF-8, more than 16 MiB) is reported once on standard error and then taken as absent. A catalog's name must
 * consist of letters, digits, '_' and '-' to be looked for in a file.
 *
 * Parameters. "/p1" to "/p25" in a text stand for the parameters of that text; the longest number that is at most 25
 * counts, so that "/p12" is parameter 12 and "/p26" is parameter 2 and a 6. A parameter that was not given, or is
 * empty, leaves nothing. Any other '/' stands for itself; what a parameter brings in is not looked at again. A
 * diagnostic needs words of its own: one that is empty before its parameters are set counts as a missing message.
 *
 * The identifier "ERR_0001" is the internal error of every catalog: one that does not hold it has that of
 * "ZORTavrinError", whose advice is its parameter 1.
 *
 * Threads: the catalogs read so far are shared without locks; errors are raised from one thread.
 */
class ZOR_EXPORT ZORResourceError : public ZORError {
 public:
  /** An error without a message yet: identifier and catalog are empty. */
  explicit ZORResourceError(uint32_t id = 0) noexcept;
  ZORResourceError(uint32_t id, const char* message_id, const char* catalog) noexcept;
  /** An error with the number 0. */
  ZORResourceError(const char* message_id, const char* catalog) noexcept;
  ZORResourceError(const ZORResourceError& other) noexcept;
  ZORResourceError& operator=(const ZORResourceError& other) noexcept;
  ~ZORResourceError() override;

  const ZORMetaClass* GetMetaObject() const override;
  const char* IsA() const override;
  int32_t IsAKindOf(const char* class_name) const override;

  const char* GetMsgId() const override;
  const char* GetMsgCatalog() const override;
  ZORUnicodeString GetNLSRequest() const override;
  ZORUnicodeString GetNLSDiagnostic() const override;
  ZORUnicodeString GetNLSAdvice() const override;
  ZORUnicodeString GetNLSHelpFile() const override;
  ZORUnicodeString GetNLSHelpContext() const override;
  void SetNLSRequestParams(int32_t count, const ZORUnicodeString* parameters) override;
  void SetNLSDiagnosticParams(int32_t count, const ZORUnicodeString* parameters) override;
  void SetNLSAdviceParams(int32_t count, const ZORUnicodeString* parameters) override;
  ZORError* CloneSelf() const override;

  static const ZORMetaClass* MetaObject();
  static const char* ClassName();

 protected:
  /** Makes another message of the catalog the error's. */
  void SetMsgId(const char* message_id) noexcept;

 private:
  ZORString message_id_;
  ZORString catalog_;
  ZORListValZORUnicodeString request_parameters_;
  ZORListValZORUnicodeString diagnostic_parameters_;
  ZORListValZORUnicodeString advice_parameters_;
};

#endif
