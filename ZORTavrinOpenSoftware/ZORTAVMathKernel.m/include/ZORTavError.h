/* SPDX-License-Identifier: MIT */
/* Errors, warnings and information messages of the solver. */
#ifndef ZORTAV_ERROR_H
#define ZORTAV_ERROR_H

#include <stdint.h>

#include "ZORCollections.h"
#include "ZORResourceError.h"
#include "ZORTAVErrorReporting.h"

/**
 * A message of a catalog, by number, and how bad it is. Raising it writes a framed report into the listing:
 *
 *   **************** INTERNAL ERROR ***************     severity 0
 *   ******************** ERROR ********************     severity 1, "ERR_0302" in the catalog
 *   ******************* WARNING *******************     severity 2, "WARN_0302"
 *   ***************** INFORMATION *****************     severity 3, "INFO_0302"
 *
 * then tells the error-log hook, except of an information, and gives up the reference of its maker, again except for an
 * information: a raised error must have been made with new and be used no more unless another reference was taken
 * before; an information stays alive until its maker releases it.
 *
 * Most callers raise their messages through ZORTavErrorTools. Numbers are written with at least four digits.
 *
 * Threads: errors are raised from one thread.
 */
class ZOR_EXPORT ZORTavError : public ZORResourceError {
 public:
  ZORTavError(const ZORTavError& other);
  /** Without a message yet. The severity is 0 until the catalog is asked, here and below. */
  explicit ZORTavError(uint32_t id);
  ZORTavError(uint32_t id, const char* message_id, const char* catalog);
  ZORTavError(const char* message_id, const char* catalog);
  /**
   * Raises an internal error with the text at once: `new ZORTavError(&text)` is a whole report, and the pointer it
   * gives is not to be used. Not for derived classes.
   */
  explicit ZORTavError(const ZORUnicodeString* text);
  ~ZORTavError() override;
  ZORTavError& operator=(const ZORTavError& other);

  /** Prints the error and gives it up. */
  void Activate();

  /**
   * Raises message `id` of the error's catalog with these parameters: integers are parameters 1 to 10, reals (as "%g"
   * writes them) 11 to 20, texts 21 to 25, each kind in list order; what does not fit is left out.
   */
  void CreateTavrinError(int id, const ZORRawCollint& integers, const ZORRawColldouble& reals,
                         const ZORListValZORUnicodeString& texts);
  /**
   * Raises message `id` of the error's catalog with 25 parameters.
   *
   * @param id         [in] number of the message.
   * @param unused     [in] not read.
   * @param parameters [in] array of 25.
   */
  void CreateTavrinError(int id, const char* unused, const ZORUnicodeString* parameters);

  /** 0 internal error, 1 error, 2 warning, 3 information. */
  int GetSeverity() const;
  /**
   * Makes message `id` of the catalog the error's, and sets the severity by the kind that the catalog holds under the
   * number: error before warning before information. A number that it does not hold makes an internal error that names
   * catalog and number.
   */
  void GetSeverityFromCatalog(int id);
  /** Sets the parameters of the diagnostic, as CreateTavrinError describes. */
  void SetParameters(const ZORRawCollint& integers, const ZORRawColldouble& reals,
                     const ZORListValZORUnicodeString& texts);
  /** Writes the report and calls the hook. */
  void Print();
  /** Does nothing. */
  void PrintStack() const;
  /** Flushes the standard output and prints nothing, whatever the arguments. */
  void PrintMsgError(int first, const ZORUnicodeString& text, int second) const;
  /** Notes the source file and line where the error was made. Returns the error. */
  ZORTavError* Setup(const char* file, int32_t line);
  /** The error itself. */
  ZORTavError* Self();

  const ZORMetaClass* GetMetaObject() const override;
  const char* IsA() const override;
  int32_t IsAKindOf(const char* class_name) const override;
  /** A new copy, with one reference, the caller's; null when there is no memory for it. */
  ZORTavError* CloneSelf() const override;
  /** The class has no table of errors: null, and *length := 0. */
  const ZORErrorTableEntry* GetErrorTable(int32_t* length) const override;

  static const ZORMetaClass* ClassId();
  static const ZORMetaClass* MetaObject();
  static const char* ClassName();
  /** Null: an error cannot be made by the name of its class. */
  static ZORBaseObject* CreateItself();

 private:
  void PrintAndGiveUp();

  int severity_;
};

#endif
