// SPDX-License-Identifier: MIT
// The log's names: user, host and folder, separated by zero bytes. The log lies in its folder and has its line, or there
// is none and the status says so.
#include <filesystem>

#include "ZORSystem.h"
#include "ZORTAVListing.h"
#include "ZORTavListingServices.h"
#include "hostile_input.h"

namespace {

namespace fs = std::filesystem;
using Log = ZORTavListingServices;

std::string user;
std::string host;

}  // namespace

// In the place of the framework's own.
int32_t ZORGetLoginName(char* name, int32_t capacity) noexcept {
  std::snprintf(name, static_cast<std::size_t>(capacity), "%s", user.c_str());
  return 0;
}
int32_t ZORGetSystemInfo(ZORSystemInfo* information) noexcept {
  *information = {};
  std::snprintf(information->host_name, sizeof information->host_name, "%s", host.c_str());
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const zortav::test::ScratchFolder scratch;
  std::vector<std::string> names = zortest::texts_of(data, size);
  names.resize(3);
  user = names[0];
  host = names[1];
  if (names[2].find("..") != std::string::npos) {
    return 0;  // it may lead anywhere, and rightly so
  }
  const std::string folder = scratch / "folder/" + names[2];
  std::error_code refused;
  fs::create_directories(folder, refused);

  const int32_t status = Log::Set(folder.c_str());
  zortest::promise(status <= 0 && (status == 0) == (Log::GetDescriptor() > 2), "a status and a log, or neither");
  if (status == 0) {
    ehprint("line");
    const std::string name = Log::GetFileName().GetText();
    const std::string head = "TavrinSolverLog_" + (user.empty() ? "UnknownUser" : user.substr(0, 35)) + "_";
    zortest::promise(name.compare(0, head.size(), head) == 0, "the log bears the user's name");
    const fs::path file = fs::path(folder) / name;
    zortest::promise(zortav::test::contents(file.string()) == "line\n", "the line is in the log");
    zortest::promise(fs::equivalent(file.parent_path(), folder), "the log is in its folder");
    zortest::promise(Log::Set(folder.c_str()) == 0, "the same folder again");
    zortest::promise(Log::Reset() == 0, "the log is closed");
  }
  fs::remove_all(scratch / "folder", refused);
  return 0;
}
