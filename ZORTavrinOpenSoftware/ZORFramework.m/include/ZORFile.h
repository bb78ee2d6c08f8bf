/* SPDX-License-Identifier: MIT */
/* Files and folders by name. Every operation returns a status (ZORStatus.h): 0 or more is success, and a failure that
 * the system reported carries its cause in the low 16 bits; a file that does not exist has 2 there. Names are UTF-8. A
 * file is opened as the platform's text: on Windows a line ends with two bytes there. Nothing throws. All may be called
 * from any thread. */
#ifndef ZOR_FILE_H
#define ZOR_FILE_H

#include <stdint.h>

#include "ZORStatus.h"
#include "ZORUnicodeString.h"

/** What ZORFileAccess asks for; reading and writing together is their sum, 6. */
inline constexpr int32_t ZORFileExists = 0;
inline constexpr int32_t ZORFileWritable = 2;
inline constexpr int32_t ZORFileReadable = 4;

/**
 * Whether this process may use a file or folder.
 *
 * @param path   [in] its name.
 * @param mode   [in] 0: it exists; 2: it can be written; 4: it can be read; 6: both. Other bits are not valid.
 * @param option [in] reserved, 0.
 * @return 0 when it may, else negative.
 */
ZOR_EXPORT int32_t ZORFileAccess(const ZORUnicodeString& path, int32_t mode, int32_t option) noexcept;

/**
 * Whether two names lead to the same file or folder, however they are written (links, "." and ".." are followed).
 *
 * @return 0 when they do, 1 when they differ, negative when one of them cannot be looked at.
 */
ZOR_EXPORT int32_t ZORIdenticaleFile(const ZORUnicodeString& a, const ZORUnicodeString& b) noexcept;

/**
 * Joins a folder and a name into a path.
 *
 * @param folder [in] a trailing separator is kept and none is added; empty means the current folder.
 * @param name   [in] not empty.
 * @param path   [out] the path; unchanged on failure. It may be one of the two others.
 * @return 0, or ZORStatusInvalidArgument when name is empty.
 */
ZOR_EXPORT int32_t ZORMakePath(const ZORUnicodeString& folder, const ZORUnicodeString& name,
                               ZORUnicodeString& path) noexcept;

/**
 * Opens a file.
 *
 * @param path       [in] its name.
 * @param mode       [in] "r" reads an existing file; "w" writes an empty one; "a" writes at the end; "w" and "a" make
 *                   the file when there is none. A "+" adds reading or writing; a "c" asks that what was written be
 *                   committed to the disk, which ZORFClose does for every file.
 * @param descriptor [out] the file descriptor, 3 or more, not inherited by programs that the process starts; -1 on
 *                   failure.
 * @return 0, or negative: ZORStatusInvalidArgument for another mode, else what the system reported.
 */
ZOR_EXPORT int32_t ZORFOpen(const ZORUnicodeString& path, const char* mode, int32_t* descriptor) noexcept;

/**
 * Commits what was written to the disk and closes a file.
 *
 * @return 0, or negative. When the contents could not be committed the file stays open, so that the caller can make
 *         room and try again.
 */
ZOR_EXPORT int32_t ZORFClose(int32_t descriptor) noexcept;

/**
 * Copies the contents and the access mode of a file.
 *
 * @param from        [in] an existing file.
 * @param to          [in] another name.
 * @param keep_target [in] not 0: fails with ZORStatusFileExists when `to` exists; 0: replaces it, unless it is `from`
 *                    itself.
 * @return 0, or negative, and then a new file that is incomplete is taken away again.
 */
ZOR_EXPORT int32_t ZORFCopy(const ZORUnicodeString& from, const ZORUnicodeString& to, int32_t keep_target) noexcept;

/** Deletes a file (not a folder). Returns 0, or negative. */
ZOR_EXPORT int32_t ZORDeleteFile(const ZORUnicodeString& path) noexcept;

#endif
