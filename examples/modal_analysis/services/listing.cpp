// SPDX-License-Identifier: MIT
#include "services/listing.h"

#include <cstdlib>
#include <filesystem>

#include "ZORTAVListing.h"
#include "ZORTavListingServices.h"

namespace modal {
namespace {

constexpr const char* log_folder_variable = "ADL_ODT_OUT";
constexpr const char* listing_channel = "TAVPrint";

bool is_open() {
  return ZORTavListingServices::GetDescriptor() != -1;
}

}  // namespace

std::string open_listing() {
  SetTavTraces();
  if (is_open()) {
    return "";
  }
  ZORTAVTraceState(listing_channel, 0);
  const char* const folder = std::getenv(log_folder_variable);
  return folder == nullptr || *folder == '\0'
             ? ""
             : std::string(log_folder_variable) + ": no solver log can be opened in the folder " + folder;
}

std::string listing_path() {
  if (!is_open()) {
    return "";
  }
  return (std::filesystem::path(ZORTavListingServices::GetDirectory().GetText()) /
          ZORTavListingServices::GetFileName().GetText())
      .string();
}

void list(const std::string& line) {
  ehprint(line.c_str());
}

void list_title(const std::string& title) {
  list("");
  list(title);
  list(std::string(title.size(), '-'));
}

void list_number(const std::string& text, std::int32_t value) {
  ehprini(text.c_str(), &value);
}

void list_real(const char* format, double value) {
  ehprinr(format, &value);
}

}  // namespace modal
