// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <regex>
#include <string>

#include "ZORFile.h"
#include "ZORTAVListing.h"
#include "ZORTavListingServices.h"
#include "ZORTavTraces.h"
#include "support/files.h"
#include "test_system.h"

namespace {

using Log = ZORTavListingServices;
using zortav::test::captured;
using zortav::test::contents;
using zortest::is_open;

constexpr int32_t file_not_found = static_cast<int32_t>(0x80070002U);

int open_descriptors() {
  int count = 0;
  for (int descriptor = 0; descriptor < 256; ++descriptor) {
    count += is_open(descriptor) ? 1 : 0;
  }
  return count;
}

// The state when no log is open, or has become so.
void expect_no_log() {
  EXPECT_EQ(Log::GetDescriptor(), -1);
  EXPECT_TRUE(Log::GetDirectory().IsEmpty() && Log::GetFileName().IsEmpty());
}

class Listing : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(std::filesystem::create_directories(here()) && std::filesystem::create_directories(there()));
  }
  void TearDown() override { EXPECT_EQ(Log::Reset(), 0); }

  std::string here() const { return folder_ / "here"; }
  std::string there() const { return folder_ / "there"; }
  // The log's file, were it in this folder.
  static std::string file_in(const std::string& folder) { return folder + "/" + Log::GetFileName().GetText(); }
  static std::string logged() { return contents(file_in(Log::GetDirectory().GetText())); }

 private:
  zortav::test::ScratchFolder folder_;
};

TEST_F(Listing, TheLogsNameTellsUserHostTimeAndIsUnique) {
  ASSERT_EQ(Log::Set(here().c_str()), 0);
  const std::string name = Log::GetFileName().GetText();
  const std::string head = "TavrinSolverLog_" + zortest::user_name() + "_" + zortest::host_name() + "_d";
  ASSERT_EQ(name.substr(0, head.size()), head);
  EXPECT_TRUE(
      std::regex_match(name.substr(head.size()),
                       std::regex("[0-9]{3}_h[0-9]{2}m[0-9]{2}_[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\.txt")))
      << name;
  EXPECT_EQ(Log::Reset(), 0);
  ASSERT_EQ(Log::Set(here().c_str()), 0);
  EXPECT_NE(name, Log::GetFileName().GetText());
}

TEST_F(Listing, AFolderThatCannotHoldTheLogIsRefused) {
  const auto expect_refusals = [this] {
    zortav::test::write(there() + "/file", "");
    EXPECT_EQ(Log::Set(""), ZORStatusInvalidArgument);
    EXPECT_EQ(Log::Set((there() + "/none").c_str()), file_not_found);
    EXPECT_EQ(ZORStatusCause(Log::Set((there() + "/file").c_str())), ZORCausePathNotFound);
  };
  expect_refusals();
  expect_no_log();
  ASSERT_EQ(Log::Set(here().c_str()), 0);
  const int32_t descriptor = Log::GetDescriptor();
  expect_refusals();
  zortav::test::write(file_in(there()), "somebody else's");
  EXPECT_EQ(Log::Set(there().c_str()), ZORStatusFileExists);
  EXPECT_EQ(Log::GetDescriptor(), descriptor);
  ehprint("still here");
  EXPECT_EQ(contents(file_in(here())), "still here\n");
  EXPECT_EQ(contents(file_in(there())), "somebody else's");
}

TEST_F(Listing, TheSameFolderAgainChangesNothing) {
  ASSERT_EQ(Log::Set(here().c_str()), 0);
  const int32_t descriptor = Log::GetDescriptor();
  const std::string name = Log::GetFileName().GetText();
  for (const std::string& again : {here(), here() + "/../here/."}) {
    EXPECT_EQ(Log::Set(again.c_str()), 0);
  }
  EXPECT_TRUE(Log::GetDescriptor() == descriptor && Log::GetFileName() == name.c_str());
  EXPECT_STREQ(Log::GetDirectory().GetText(), here().c_str());
}

TEST_F(Listing, TheLogMovesWithItsContentsAndIsClosed) {
  ASSERT_EQ(Log::Set(here().c_str()), 0);
  const std::string name = Log::GetFileName().GetText();
  ehprint("here");
  EXPECT_EQ(Log::Set((there() + "/").c_str()), 0);
  ehprint("there");
  EXPECT_EQ(name, Log::GetFileName().GetText());
  EXPECT_EQ(Log::GetDirectory(), (there() + "/").c_str());
  EXPECT_EQ(logged(), "here\nthere\n");
  EXPECT_TRUE(std::filesystem::is_empty(here()));
  const int32_t descriptor = Log::GetDescriptor();
  for (int reset = 0; reset < 2; ++reset) {
    EXPECT_EQ(Log::Reset(), 0);
    EXPECT_FALSE(is_open(descriptor));
    expect_no_log();
  }
}

// In a child: what follows a failure in the middle of a move is not to be undone.
[[noreturn]] void move_a_log_whose_file_is_gone(const std::string& here, const std::string& there) {
  Log::Set(here.c_str());
  const int32_t descriptor = Log::GetDescriptor();
  ZORDeleteFile((here + "/" + Log::GetFileName().GetText()).c_str());
  const bool refused = Log::Set(there.c_str()) == file_not_found;
  const bool kept = Log::GetDescriptor() == descriptor && Log::GetDirectory() == here.c_str();
  const bool closed = !is_open(descriptor) && Log::Reset() < 0 && Log::GetDescriptor() == descriptor;
  const bool written = captured(stdout, [] { ehprint("to standard output"); }) == "to standard output\n";
  std::_Exit(refused && kept && closed && written && std::filesystem::is_empty(there) ? 0 : 1);
}

TEST_F(Listing, AFailureInTheMiddleOfAMove) {
  EXPECT_EXIT(move_a_log_whose_file_is_gone(here(), there()), testing::ExitedWithCode(0), "");
}

// Every plain entry once.
void print_all() {
  const int32_t integer = std::numeric_limits<int32_t>::min();
  const double real = -0.1;
  ehprint("100 %d");
  ehprini("N =", &integer);
  ehprinr("T = %.17g", &real);
  ehprint("");
}

const char* const all_printed = "100 %d\nN =-2147483648\n\n\nT = -0.10000000000000001\n\n\n";

TEST_F(Listing, WithoutALogItIsStandardOutput) {
  EXPECT_EQ(captured(stdout, print_all), all_printed);
  ZORTAVTraceState("TAVPrint", 0);
  EXPECT_EQ(captured(stdout, print_all), "");
  ZORTAVTraceState("TAVPrint", 1);
  // At level 2, whatever level the channel had before.
  ZORTraControle control("TAVPrint");
  const int32_t no_limit = control.TraGetLevel();
  Tra_TAVPrint.SetLevel(7);
  control.TraPutLevel(2);
  EXPECT_EQ(captured(stdout, print_all), all_printed);
  control.TraPutLevel(1);
  EXPECT_EQ(captured(stdout, print_all), "");
  control.TraPutLevel(no_limit);
}

TEST_F(Listing, WithALogNothingReachesStandardOutput) {
  ASSERT_EQ(Log::Set(here().c_str()), 0);
  const int open_before = open_descriptors();
  EXPECT_EQ(captured(stdout,
                     [] {
                       std::fputs("before,", stdout);  // still in the stream's buffer
                       print_all();
                       std::fputs("between,", stdout);
                       print_all();
                       std::fputs("after", stdout);
                     }),
            "before,between,after");
  EXPECT_EQ(logged(), std::string(all_printed) + all_printed);
  EXPECT_EQ(open_descriptors(), open_before);
  EXPECT_EQ(Log::Reset(), 0);
  EXPECT_EQ(captured(stdout, [] { ehprint("again"); }), "again\n");
}

TEST_F(Listing, ChannelsAreOnAtLoadAndSetTavTracesSetsSixOfThem) {
  const struct {
    ZORTrace& trace;
    const char* name;
    int32_t at_load_turned;  // what SetTavTraces makes of a channel that has been turned from the default to the other
  } channels[] = {{Tra_TAVPrint, "TAVPrint", 1},
                  {Tra_TAVError, "TAVError", 1},
                  {Tra_TAVCompute, "TAVCompute", 0},
                  {Tra_TAVDefine, "TAVDefine", 0},
                  {Tra_TAVStorage, "TAVStorage", 0},
                  {Tra_TAVAcquire, "TAVAcquire", 0},
                  {Tra_TAVOutput, "TAVOutput", -1},
                  {Tra_TAVInfra, "TAVInfra", -1},
                  {Tra_TAVStorageLink, "TAVStorageLink", -1},
                  {Tra_TAVCpuElapse, "TAVCpuElapse", -1}};
  for (auto& c : channels) {
    EXPECT_STREQ(c.trace.GetName(), c.name);
    EXPECT_EQ(captured(stdout, [&] { c.trace.TraPut("on"); }), "on") << c.name;
  }
  zortest::remove_variable("ADL_ODT_OUT");
  for (const int32_t before : {0, 1}) {
    for (auto& c : channels) {
      ZORTAVTraceState(c.name, before);
    }
    SetTavTraces();
    for (auto& c : channels) {
      EXPECT_EQ(ZORTraControle(c.name).TraGetFlg(), c.at_load_turned < 0 ? before : c.at_load_turned) << c.name;
    }
  }
  ZORTAVTraceState("TAVCompute", 1);
  EXPECT_EQ(captured(stdout, [] { Tra_TAVCompute.TraPutLN("on"); }), "on\n");
  EXPECT_STREQ(Tra_TAVOutput.GetTitle(), Tra_TAVAcquire.GetTitle());
  EXPECT_STREQ(Tra_TAVStorageLink.GetTitle(), "Tavrin traces for external storage links ");
}

TEST_F(Listing, SetTavTracesOpensTheLog) {
  for (const char* nothing : {static_cast<const char*>(nullptr), "", "/no/such/folder"}) {
    nothing != nullptr ? zortest::set_variable("ADL_ODT_OUT", nothing) : zortest::remove_variable("ADL_ODT_OUT");
    SetTavTraces();
    expect_no_log();
  }
  zortest::set_variable("ADL_ODT_OUT", here().c_str());
  SetTavTraces();
  zortest::remove_variable("ADL_ODT_OUT");
  SetTavTraces();
  ehprint("opened");
  EXPECT_EQ(logged(), "opened\n");
}

}  // namespace
