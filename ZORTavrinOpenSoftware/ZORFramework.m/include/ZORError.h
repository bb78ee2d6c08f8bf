/* SPDX-License-Identifier: MIT */
/* The base of every error. */
#ifndef ZOR_ERROR_H
#define ZOR_ERROR_H

#include <stdint.h>

#include "ZORBaseObject.h"
#include "ZORUnicodeString.h"

/** One line of a class's table of errors. */
struct ZORErrorTableEntry {
  uint32_t id;
  const char* message_id;
  const char* catalog;
};

/**
 * An error: a number, where it came from, and what to tell people about it. The texts themselves are a derived class's
 * business (ZORResourceError); here they are all empty.
 *
 * The order of the virtual operations is part of the binary interface. Text arguments are copied; null is the empty
 * text. A `const char*` that is returned is never null and stays valid until its value is set again or the error ends.
 *
 * Threads: references are counted from any thread; the rest is used by one thread at a time.
 */
class ZOR_EXPORT ZORError : public ZORBaseObject {
 public:
  explicit ZORError(uint32_t id = 0) noexcept;
  /** A copy tells the same and has one reference of its own. */
  ZORError(const ZORError& other) noexcept;
  /** Takes over what the other tells; references stay as they are. */
  ZORError& operator=(const ZORError& other) noexcept;
  ~ZORError() override;

  const ZORMetaClass* GetMetaObject() const override;
  const char* IsA() const override;
  int32_t IsAKindOf(const char* class_name) const override;

  virtual uint32_t GetId() const;
  /** The message identifier, such as "ERR_0302". */
  virtual const char* GetMsgId() const;
  /** The name of the catalog that holds the message. */
  virtual const char* GetMsgCatalog() const;
  virtual const char* GetSourceFileName() const;
  virtual void SetSourceFileName(const char* file);
  virtual int32_t GetSourceLineNumber() const;
  virtual void SetSourceLineNumber(int32_t line);
  /** The whole message as bytes: what GetNLSMessage tells. */
  virtual ZORString GetMessageText() const;
  /** The whole message in the user's language: those of the request, diagnostic and advice that are not empty, each
   * beginning a line; no line end after the last. */
  virtual ZORUnicodeString GetNLSMessage() const;
  /** What was to be done. */
  virtual ZORUnicodeString GetNLSRequest() const;
  /** What is wrong. Empty tells that the message is not in its catalog. */
  virtual ZORUnicodeString GetNLSDiagnostic() const;
  /** What the user can do. */
  virtual ZORUnicodeString GetNLSAdvice() const;
  /** Where the error came from: "file, line", or empty when the file is not set. */
  virtual ZORUnicodeString GetNLSSource() const;
  /** The file that tells more, or empty. */
  virtual ZORUnicodeString GetNLSHelpFile() const;
  /** The place in the help file, or empty. */
  virtual ZORUnicodeString GetNLSHelpContext() const;
  /** Writes the whole message and a line end to standard error. */
  virtual void Display() const;
  /** Writes one line to standard error that tells what is known of the error's origin: catalog, identifier, source and
   * context. */
  virtual void PrintHistory() const;
  /** For an error that nobody can answer: ends the process through ZORFatalError with the whole message and the place.
   * Does not return; no exception is thrown. */
  virtual void Throw(const char* file, int32_t line);
  /** The parameters of all three texts at once. A count below 1, or null, takes the parameters of that text away. */
  virtual void SetNLSParameters(int32_t request_count, const ZORUnicodeString* request, int32_t diagnostic_count,
                                const ZORUnicodeString* diagnostic, int32_t advice_count,
                                const ZORUnicodeString* advice);
  /** The parameters of the request, 1 to at most 25, in order; they replace those set before. */
  virtual void SetNLSRequestParams(int32_t count, const ZORUnicodeString* parameters);
  /** The parameters of the diagnostic. */
  virtual void SetNLSDiagnosticParams(int32_t count, const ZORUnicodeString* parameters);
  /** The parameters of the advice. */
  virtual void SetNLSAdviceParams(int32_t count, const ZORUnicodeString* parameters);
  /** A text of the raiser's own that tells the circumstances. */
  virtual void SetSourceContext(const char* context);
  virtual const char* GetSourceContext() const;
  /** The status that the raiser returns, 0 unless set. */
  virtual int32_t GetReturnCode() const;
  virtual void SetReturnCode(int32_t code);
  /** The kind of error, 0 unless set; 3 is one that does not stop the work. */
  virtual int32_t GetInformationOnErrorType() const;
  virtual void SetInformationOnErrorType(int32_t type);
  /** A new copy of the error, with one reference, the caller's; null when there is no memory for it. */
  virtual ZORError* CloneSelf() const;
  /** The class's table of errors and its length; here null and 0. */
  virtual const ZORErrorTableEntry* GetErrorTable(int32_t* length) const;

  /** Notes the source file and line where the error was made. Returns the error. */
  ZORError* Setup(const char* file, int32_t line);

  static const ZORMetaClass* MetaObject();
  static const char* ClassName();

 private:
  uint32_t id_;
  ZORString source_file_;
  int32_t source_line_;
  ZORString source_context_;
  int32_t return_code_;
  int32_t error_type_;
};

#endif
