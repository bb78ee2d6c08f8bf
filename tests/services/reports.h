// SPDX-License-Identifier: MIT
// What the library reports while a test runs: by its error-log hook, and as it is printed.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "ZORTavError.h"
#include "support/files.h"
#include "test_system.h"

namespace zortest {

// While it lives: catalogs of the test's own are in force, standard output is caught.
class Reports {
 public:
  // The diagnostics by "ERR_0302" and the like, for one catalog.
  using Messages = std::vector<std::pair<std::string, std::string>>;

  Reports(const std::string& catalog, const Messages& messages) {
    write(catalog, messages);
    zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", folder.path().c_str());
    zortest::set_variable("LC_ALL", "C");
    told.clear();
    SetErrorLog(&Reports::tell);
    testing::internal::CaptureStdout();
  }
  Reports(const Reports&) = delete;
  Reports& operator=(const Reports&) = delete;
  ~Reports() {
    testing::internal::GetCapturedStdout();
    SetErrorLog(nullptr);
    zortest::remove_variable("ZOR_MESSAGE_CATALOG_PATH");
  }

  // One more catalog, before anything is reported.
  void write(const std::string& catalog, const Messages& messages) const {
    std::string text;
    for (const auto& [id, diagnostic] : messages) {
      text += (text.empty() ? "{\"" : ",\n\"") + id + R"(": {"diagnostic": ")" + diagnostic + "\"}";
    }
    zortav::test::write(folder / (catalog + "_en.json"), text + "}\n");
  }

  // "<severity> <identifier> <message>" of each report that the hook was told of since the last call.
  std::vector<std::string> take() { return std::exchange(told, {}); }

  // What was printed since the last call.
  std::string printed() {
    std::string text = testing::internal::GetCapturedStdout();
    testing::internal::CaptureStdout();
    return text;
  }

  const zortav::test::ScratchFolder folder;

 private:
  static void tell(ZORTavError* error) {
    told.push_back(std::to_string(error->GetSeverity()) + " " + error->GetMsgId() + " " +
                   error->GetNLSMessage().GetText());
  }

  static inline std::vector<std::string> told;
};

}  // namespace zortest
