/* SPDX-License-Identifier: MIT */
/* The solver log, the file that the listing is written to. */
#ifndef ZORTAV_LISTING_SERVICES_H
#define ZORTAV_LISTING_SERVICES_H

#include <stdint.h>

#include "ZORStatus.h"
#include "ZORUnicodeString.h"

/**
 * The solver log: one text file of the process, kept open while listing writes go to it.
 *
 * Its name is unlike any other:
 *
 *   TavrinSolverLog_<user>_<host>_d<day of the year>_h<hour>m<minute>_<identifier>.txt
 *
 * with "UnknownUser", "UnknownHost" and "UnknownTime" for what the system does not tell.
 *
 * The operations that return a status (32 bits, negative is failure) hand on what the framework's file services
 * reported (ZORFile.h). Nothing throws and nothing is printed.
 *
 * Threads: all state is the process's and has no lock; use it from the thread that writes the listing.
 */
class ZOR_EXPORT ZORTavListingServices {
 public:
  /**
   * Opens the log in a folder, or moves the open log there.
   *
   * @param directory [in] an existing folder that this process may read and write.
   * @return 0 when the log is open in the folder, also when it was already. Else negative:
   *         0x80070057 the folder is the empty text; 0x80070050 it has a file of the log's name; or what kept a file
   *         service from its work.
   *
   * A log that moves keeps its name and its contents. On failure nothing changes, with one exception: where the log
   * moves and the failure comes after its file was closed (the copy, the removal of the old file, the opening of the
   * new one), GetDescriptor still returns the old descriptor, which is closed.
   */
  static int32_t Set(const ZORUnicodeString& directory);

  /**
   * Closes the log.
   *
   * @return 0 when it is closed, also when none was open; negative when the system refuses, and then nothing changes.
   */
  static int32_t Reset();

  /** The descriptor of the open log; -1 when there is none. */
  static int32_t GetDescriptor();
  /** The folder of the open log as it was given to Set; empty when there is none. */
  static const ZORUnicodeString& GetDirectory();
  /** The name of the open log in its folder; empty when there is none. */
  static const ZORUnicodeString& GetFileName();

 private:
  static void ComputeFileName(ZORUnicodeString& name);
};

#endif
