// SPDX-License-Identifier: MIT
#include "ZORTavListingServices.h"

#include <new>

#include "ZORFile.h"
#include "ZORSystem.h"
#include "ZORTime.h"
#include "ZORUuid.h"

namespace {

constexpr int32_t no_descriptor = -1;
constexpr int32_t login_name_size = 36;
constexpr int32_t differ = 1;       // ZORIdenticaleFile
constexpr int32_t keep_target = 1;  // ZORFCopy

// Never destroyed: the log is written until the last static object of the process has gone. Needs no memory of its own:
// reports of its lack are written here.
struct Log {
  int32_t descriptor = no_descriptor;
  ZORUnicodeString directory;
  ZORUnicodeString file_name;
};

Log& solver_log() {
  alignas(Log) static unsigned char storage[sizeof(Log)];
  static auto& only = *new (storage) Log;
  return only;
}

// Takes the file of the open log to another path: the log is closed, copied and deleted.
int32_t move(const ZORUnicodeString& to) {
  ZORUnicodeString from;
  int32_t status = ZORMakePath(solver_log().directory, solver_log().file_name, from);
  if (status >= 0) {
    status = ZORFClose(solver_log().descriptor);
  }
  if (status >= 0) {
    status = ZORFCopy(from, to, keep_target);
  }
  return status >= 0 ? ZORDeleteFile(from) : status;
}

}  // namespace

int32_t ZORTavListingServices::Set(const ZORUnicodeString& directory) {
  if (directory.IsEmpty()) {
    return ZORStatusInvalidArgument;
  }
  const bool open = solver_log().descriptor != no_descriptor;
  int32_t status = ZORFileAccess(directory, ZORFileReadable + ZORFileWritable, 0);
  if (status < 0) {
    return status;
  }

  ZORUnicodeString name;
  if (open) {
    status = ZORIdenticaleFile(directory, solver_log().directory);
    if (status != differ) {
      return status;
    }
    name = solver_log().file_name;
  } else {
    ComputeFileName(name);
  }

  ZORUnicodeString path;
  status = ZORMakePath(directory, name, path);
  if (status < 0) {
    return status;
  }
  status = ZORFileAccess(path, ZORFileExists, 0);
  if (status >= 0) {
    return ZORStatusFileExists;
  }
  if (ZORStatusCause(status) != ZORCauseFileNotFound) {
    return status;
  }

  if (open) {
    status = move(path);
    if (status < 0) {
      return status;
    }
  }
  int32_t descriptor = no_descriptor;
  status = ZORFOpen(path, "a+c", &descriptor);
  if (status >= 0) {
    solver_log().descriptor = descriptor;
    solver_log().directory = directory;
    solver_log().file_name = name;
  }
  return status;
}

int32_t ZORTavListingServices::Reset() {
  if (solver_log().descriptor == no_descriptor) {
    return 0;
  }
  const int32_t status = ZORFClose(solver_log().descriptor);
  if (status >= 0) {
    solver_log() = Log();
  }
  return status;
}

int32_t ZORTavListingServices::GetDescriptor() {
  return solver_log().descriptor;
}

const ZORUnicodeString& ZORTavListingServices::GetDirectory() {
  return solver_log().directory;
}

const ZORUnicodeString& ZORTavListingServices::GetFileName() {
  return solver_log().file_name;
}

void ZORTavListingServices::ComputeFileName(ZORUnicodeString& name) {
  char user[login_name_size] = {};
  const bool user_known = ZORGetLoginName(user, login_name_size) >= 0 && *user != '\0';
  ZORSystemInfo machine;
  const bool host_known = ZORGetSystemInfo(&machine) >= 0 && *machine.host_name != '\0';
  const ZORString time = ZORTime().ConvertToString("d%j_h%Hm%M_");

  name = "TavrinSolverLog_";
  name.Append(user_known ? user : "UnknownUser");
  name.Append("_");
  name.Append(host_known ? machine.host_name : "UnknownHost");
  name.Append("_");
  name.Append(time.IsEmpty() ? "UnknownTime_" : time.GetText());
  name.Append(ZORUuid().ConvertToString().GetText());
  name.Append(".txt");
}
