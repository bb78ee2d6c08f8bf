// SPDX-License-Identifier: MIT
#include "ZORFile.h"

#include <windows.h>
// After it.
#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "ZORDescriptor.h"
#include "system_status.h"
#include "wide_text.h"

namespace {

// A file that is open may be read, written and deleted by others too, as everywhere else.
constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

int32_t last_status() noexcept {
  return zortav::system_status(GetLastError());
}

int32_t status_of(BOOL success) noexcept {
  return success != FALSE ? 0 : last_status();
}

// An open file of the system, closed with the object.
class File {
 public:
  File(const ZORUnicodeString& path, DWORD access, DWORD creation, DWORD flags)
      : handle_(CreateFileW(zortav::wide(path).c_str(), access, share_all, nullptr, creation, flags, nullptr)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (IsOpen()) {
      CloseHandle(handle_);
    }
  }
  bool IsOpen() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const noexcept { return handle_; }
  HANDLE Take() noexcept {
    const HANDLE taken = handle_;
    handle_ = INVALID_HANDLE_VALUE;
    return taken;
  }

 private:
  HANDLE handle_;
};

// What a mode such as "a+c" asks of the system, and of the C runtime.
struct Opening {
  DWORD access = 0;
  DWORD creation = 0;
  int runtime = 0;
};

// False for a mode that is not valid.
bool understand(const char* mode, Opening& opening) noexcept {
  if (mode == nullptr || *mode == '\0' || mode[1 + std::strspn(mode + 1, "+c")] != '\0') {
    return false;
  }
  const bool plus = std::strchr(mode, '+') != nullptr;
  const bool reads = *mode == 'r' || plus;
  const bool writes = *mode != 'r' || plus;
  opening.access = (reads ? GENERIC_READ : 0U) | (writes ? GENERIC_WRITE : 0U);
  opening.runtime = _O_TEXT | _O_NOINHERIT | (writes ? reads ? _O_RDWR : _O_WRONLY : _O_RDONLY);
  switch (*mode) {
    case 'r':
      opening.creation = OPEN_EXISTING;
      return true;
    case 'w':
      opening.creation = CREATE_ALWAYS;
      return true;
    case 'a':
      opening.creation = OPEN_ALWAYS;
      opening.runtime |= _O_APPEND;
      return true;
    default:
      return false;
  }
}

// Whether every name in a path is as short as file systems want it; some systems say of a longer one that there is no
// such file.
bool names_fit(const std::wstring& path) noexcept {
  constexpr std::size_t longest_name = 255;
  std::size_t begin = 0;
  while (begin < path.size()) {
    const std::size_t end = std::min(path.find_first_of(L"/\\", begin), path.size());
    if (end - begin > longest_name) {
      return false;
    }
    begin = end + 1;
  }
  return true;
}

bool is_separator(char c) noexcept {
  return c == '/' || c == '\\' || c == ':';
}

}  // namespace

int32_t ZORFileAccess(const ZORUnicodeString& path, int32_t mode, int32_t) noexcept {
  if ((mode & ~(ZORFileReadable | ZORFileWritable)) != 0) {
    return ZORStatusInvalidArgument;
  }
  if (!names_fit(zortav::wide(path))) {
    return zortav::system_status(ERROR_FILENAME_EXCED_RANGE);
  }
  // Only an attempt tells what the access lists allow; these two rights mean the same for files and folders.
  const DWORD readable = (mode & ZORFileReadable) != 0 ? FILE_READ_DATA : 0U;
  const DWORD writable = (mode & ZORFileWritable) != 0 ? FILE_WRITE_DATA : 0U;
  const File file(path, FILE_READ_ATTRIBUTES | readable | writable, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  return file.IsOpen() ? 0 : last_status();
}

int32_t ZORIdenticaleFile(const ZORUnicodeString& a, const ZORUnicodeString& b) noexcept {
  BY_HANDLE_FILE_INFORMATION of_a{};
  BY_HANDLE_FILE_INFORMATION of_b{};
  // Both stay open: only then are the numbers of two files sure to differ.
  const File file_a(a, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (!file_a.IsOpen() || GetFileInformationByHandle(file_a.Get(), &of_a) == FALSE) {
    return last_status();
  }
  const File file_b(b, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (!file_b.IsOpen() || GetFileInformationByHandle(file_b.Get(), &of_b) == FALSE) {
    return last_status();
  }
  const bool same = of_a.dwVolumeSerialNumber == of_b.dwVolumeSerialNumber &&
                    of_a.nFileIndexHigh == of_b.nFileIndexHigh && of_a.nFileIndexLow == of_b.nFileIndexLow;
  return same ? 0 : 1;
}

int32_t ZORMakePath(const ZORUnicodeString& folder, const ZORUnicodeString& name, ZORUnicodeString& path) noexcept {
  if (name.IsEmpty()) {
    return ZORStatusInvalidArgument;
  }
  const bool complete = folder.IsEmpty() || is_separator(folder.GetText()[folder.GetLength() - 1]);
  path = folder + (complete ? "" : "\\") + name;
  return 0;
}

int32_t ZORFOpen(const ZORUnicodeString& path, const char* mode, int32_t* descriptor) noexcept {
  *descriptor = -1;
  Opening opening;
  if (!understand(mode, opening)) {
    return ZORStatusInvalidArgument;
  }
  File file(path, opening.access, opening.creation, FILE_ATTRIBUTE_NORMAL);
  if (!file.IsOpen()) {
    return last_status();
  }
  const int lowest = _open_osfhandle(reinterpret_cast<intptr_t>(file.Get()), opening.runtime);
  if (lowest < 0) {
    return zortav::system_status(ERROR_TOO_MANY_OPEN_FILES);
  }
  file.Take();
  // Not one of the standard streams' numbers, which a later write to a closed stream must not find.
  *descriptor = lowest > 2 ? lowest : ZORDuplicateDescriptor(lowest);
  if (*descriptor != lowest) {
    _close(lowest);
  }
  return *descriptor >= 0 ? 0 : zortav::system_status(ERROR_TOO_MANY_OPEN_FILES);
}

int32_t ZORFClose(int32_t descriptor) noexcept {
  const intptr_t known = descriptor >= 0 ? _get_osfhandle(descriptor) : -1;
  if (known == -1) {
    return zortav::system_status(ERROR_INVALID_HANDLE);
  }
  const auto handle = reinterpret_cast<HANDLE>(known);
  // Pipes and consoles have no disk to commit to, and what was open for reading only has nothing to commit.
  if (GetFileType(handle) == FILE_TYPE_DISK && FlushFileBuffers(handle) == FALSE &&
      GetLastError() != ERROR_ACCESS_DENIED) {
    return last_status();
  }
  return _close(descriptor) == 0 ? 0 : zortav::system_status(ERROR_INVALID_HANDLE);
}

int32_t ZORFCopy(const ZORUnicodeString& from, const ZORUnicodeString& to, int32_t keep_target) noexcept {
  if (ZORIdenticaleFile(from, to) == 0) {
    return ZORStatusFileExists;
  }
  return status_of(CopyFileW(zortav::wide(from).c_str(), zortav::wide(to).c_str(), keep_target != 0 ? TRUE : FALSE));
}

int32_t ZORDeleteFile(const ZORUnicodeString& path) noexcept {
  return status_of(DeleteFileW(zortav::wide(path).c_str()));
}
