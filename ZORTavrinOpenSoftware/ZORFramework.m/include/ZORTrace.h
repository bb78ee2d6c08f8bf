/* SPDX-License-Identifier: MIT */
/* Trace channels, and how they are switched by name. */
#ifndef ZOR_TRACE_H
#define ZOR_TRACE_H

#include <stdint.h>
#include <stdio.h>

#include "ZORString.h"

struct ZORTraceState;

/**
 * A named channel that writes texts to an output of the process while the channel is on.
 *
 * The on/off flag and the highest level belong to the name: channels of the same name share them, and they can be set
 * before a channel of that name exists and stay set when it has gone. A channel is on, with no limit to its level,
 * until a ZORTraControle says otherwise.
 *
 * Every write goes through the C stream of its output and is flushed before the method returns, in order with what
 * others have written to that stream. A write that fails (the output is closed, the disk is full) is lost in silence.
 *
 * Threads: one channel is used by one thread at a time.
 */
class ZOR_EXPORT ZORTrace {
 public:
  /**
   * @param name        [in] zero-terminated; copied, as are the other texts.
   * @param title       [in] what the channel is for, for people.
   * @param mode        [in] reserved, 0.
   * @param output      [in] "STDOUT", the standard output stream, or "STDERR", the standard error stream; any other
   *                    name is taken as "STDOUT".
   * @param buffer_size [in] the usual size of a text in bytes. Longer ones are written whole.
   */
  ZORTrace(const char* name, const char* title, int32_t mode, const char* output, int32_t buffer_size) noexcept;
  ZORTrace(const ZORTrace&) = delete;
  ZORTrace& operator=(const ZORTrace&) = delete;
  ~ZORTrace();

  const char* GetName() const noexcept;
  const char* GetTitle() const noexcept;
  int32_t GetMode() const noexcept;
  const char* GetOutput() const noexcept;
  int32_t GetBufferSize() const noexcept;

  /** The level of the writes that name none, 0 at first. */
  int32_t GetLevel() const noexcept;
  void SetLevel(int32_t level) noexcept;

  /** Writes the text as it stands. Null is the empty text, here and below. */
  void TraPut(const char* text) noexcept;
  /** Writes the text and a line end. */
  void TraPutLN(const char* text) noexcept;
  /** Writes the text, at once after it the value in decimal, and a line end. */
  void TraPutLN(const char* text, int32_t value) noexcept;
  /** Writes what printf makes of the format and the values, at the given level; no line end is added. The format must
   * fit the values. */
  void TraPrint(int32_t level, const char* format, ...) noexcept;

 private:
  bool Writes(int32_t level) const noexcept;
  FILE* Stream() const noexcept;
  void Write(const char* text, const char* end) const noexcept;

  ZORString name_;
  ZORString title_;
  ZORString output_;
  bool to_standard_error_;  // not asked of the text: a program's last handlers may write when it has gone
  int32_t mode_;
  int32_t buffer_size_;
  int32_t level_;
  ZORTraceState* state_;
};

/**
 * Switches the channels of a name. A name that no channel has yet is remembered for one to come. What a controller has
 * set outlives it.
 *
 * Threads: while no other thread writes to, makes or switches a channel.
 */
class ZOR_EXPORT ZORTraControle {
 public:
  /** @param name [in] zero-terminated; null is the empty name. */
  explicit ZORTraControle(const char* name) noexcept;
  ZORTraControle(const ZORTraControle&) = delete;
  ZORTraControle& operator=(const ZORTraControle&) = delete;

  /** Switches the channels of the name: 0 is off, any other value on. */
  void TraPutFlg(int32_t flag) noexcept;
  /** 1 when they are on, else 0. */
  int32_t TraGetFlg() const noexcept;
  /** Sets the highest level that is written; writes at a higher level are dropped. */
  void TraPutLevel(int32_t highest) noexcept;
  int32_t TraGetLevel() const noexcept;

 private:
  ZORTraceState* state_;
};

#endif
