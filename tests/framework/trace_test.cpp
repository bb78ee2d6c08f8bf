// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <string>

#include "ZORTrace.h"
#include "support/files.h"

namespace {

using zortav::test::captured;

TEST(Trace, WhatIsWritten) {
  ZORTrace trace("what", "title", 0, "STDOUT", 16);
  EXPECT_STREQ(trace.GetName(), "what");
  EXPECT_STREQ(trace.GetTitle(), "title");
  EXPECT_STREQ(trace.GetOutput(), "STDOUT");
  EXPECT_TRUE(trace.GetMode() == 0 && trace.GetBufferSize() == 16);
  const std::string long_text(5000, 'x');
  EXPECT_EQ(captured(stdout,
                     [&] {
                       std::fputs("before,", stdout);
                       trace.TraPut("put,");
                       trace.TraPutLN("100 %d\t");
                       trace.TraPutLN("n = ", INT_MIN);
                       trace.TraPutLN(nullptr);
                       trace.TraPrint(7, "%-6.2f|%s\n", 0.125, long_text.c_str());
                     }),
            "before,put,100 %d\t\nn = -2147483648\n\n0.12  |" + long_text + "\n");
  ZORTrace errors("errors", "title", 0, "STDERR", 16);
  EXPECT_EQ(captured(stderr, [&] { errors.TraPutLN("error"); }), "error\n");
}

TEST(Trace, TheStateBelongsToTheName) {
  ZORTraControle("state").TraPutFlg(0);
  {
    ZORTrace first("state", "made after it was switched off", 0, "STDOUT", 16);
    ZORTrace second("state", "the same name", 0, "STDOUT", 16);
    ZORTrace other("other", "another name", 0, "STDOUT", 16);
    const auto all = [&] {
      for (ZORTrace* trace : {&first, &second, &other}) {
        trace->TraPut(trace->GetName());
        trace->TraPutLN("", 1);
        trace->TraPrint(1, ",");
      }
    };
    EXPECT_EQ(captured(stdout, all), "other1\n,");
    ZORTraControle("state").TraPutFlg(7);
    EXPECT_EQ(captured(stdout, all), "state1\n,state1\n,other1\n,");
  }
  EXPECT_EQ(ZORTraControle("state").TraGetFlg(), 1);
  EXPECT_EQ(ZORTraControle(nullptr).TraGetFlg(), 1);
}

TEST(Trace, LevelsAboveTheLimitAreDropped) {
  ZORTrace trace("level", "title", 0, "STDOUT", 16);
  const auto write = [&] {
    trace.SetLevel(2);
    trace.TraPut("2");
    trace.SetLevel(3);
    trace.TraPut("3");
    trace.TraPrint(2, "p2");
    trace.TraPrint(3, "p3");
  };
  EXPECT_EQ(captured(stdout, write), "23p2p3");
  ZORTraControle control("level");
  control.TraPutLevel(2);
  EXPECT_EQ(captured(stdout, write), "2p2");
}

}  // namespace
