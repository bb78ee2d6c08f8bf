// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "structure/input_error.h"
#include "structure/matrix_market.h"

namespace {

using modal::SymmetricMatrix;

class MatrixMarket : public testing::Test {
 protected:
  void SetUp() override {
    const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    folder_ = std::filesystem::temp_directory_path() / ("modal-" + name + std::to_string(::getpid()));
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string file(const std::string& text, const std::string& name = "K.mtx") const {
    std::string path = (folder_ / name).string();
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  // The message without the folder; empty when the file was taken.
  std::string refusal(const std::string& text, std::int32_t order = 0) const {
    const std::string path = file(text);
    try {
      modal::read_symmetric_matrix(path, order);
    } catch (const modal::InputError& error) {
      const std::string message = error.what();
      EXPECT_EQ(message.rfind(path, 0), 0U) << message;
      EXPECT_EQ(message.find('\n'), std::string::npos) << message;
      return message.substr(path.size() - 5);
    }
    return {};
  }

  std::filesystem::path folder_;
};

const std::string coordinate = "%%MatrixMarket matrix coordinate real ";

TEST_F(MatrixMarket, EveryFormOfOneMatrixReadsTheSame) {
  // 4 . 1
  // . 5 -2.5e-1
  // 1 -2.5e-1 6
  const std::vector<std::string> forms{
      coordinate + "symmetric\n3 3 5\n1 1 4\n2 2 5\n3 3 6\n3 1 1\n3 2 -2.5e-1\n",
      coordinate + "symmetric\r\n% a comment\r\n\r\n3 3 5\r\n3 2 -0.25\r\n3 3 +6.0\r\n3 1 1\r\n\r\n2 2 5.\r\n1 1 4\r\n",
      coordinate + "general\n3 3 7\n1 1 4\n1 3 1\n3 1 1\n2 2 5\n2 3 -.25\n3 2 -.25\n3 3 6",
      "%%matrixmarket MATRIX Coordinate Real Symmetric\n  3\t3 5\n 1 1\t4 \n2 2 5\n3 3 6\n3 1 1\n% c\n3 2 -.25\n",
      "%%MatrixMarket matrix array real general\n3 3\n4\n0\n1\n0\n5\n-0.25\n1\n-0.25\n6\n",
      "%%MatrixMarket matrix array real symmetric\n3 3\n4\n0\n1\n5\n-0.25\n6\n",
  };
  for (const std::string& form : forms) {
    const SymmetricMatrix k = modal::read_symmetric_matrix(file(form), 3);
    EXPECT_EQ(k.order, 3) << form;
    EXPECT_EQ(k.row_end, (std::vector<std::int32_t>{0, 1, 2, 5})) << form;
    EXPECT_EQ(k.column, (std::vector<std::int32_t>{1, 2, 1, 2, 3})) << form;
    EXPECT_EQ(k.value, (std::vector<double>{4, 5, 1, -0.25, 6})) << form;
  }
}

TEST_F(MatrixMarket, IntegersMissingDiagonalsAndRoundedHalves) {
  const SymmetricMatrix integers = modal::read_symmetric_matrix(
      file("%%MatrixMarket matrix coordinate integer symmetric\n2 2 2\n1 1 -7\n2 1 3\n"), 2);
  EXPECT_EQ(integers.value, (std::vector<double>{-7, 3, 0})) << "a diagonal that is not given is stored as 0";
  const SymmetricMatrix one = modal::read_symmetric_matrix(file(coordinate + "general\n1 1 1\n1 1 2\n"), 0);
  EXPECT_EQ(one.value, (std::vector<double>{2}));
  // The halves may differ by rounding, measured against the diagonal where they are small themselves.
  EXPECT_EQ(refusal(coordinate + "general\n2 2 4\n1 1 1\n2 2 1\n1 2 1e-20\n2 1 -1e-17\n"), "");
  EXPECT_NE(refusal(coordinate + "general\n2 2 4\n1 1 1\n2 2 1\n1 2 0.5\n2 1 0.5000001\n"), "");
}

TEST_F(MatrixMarket, AFaultIsNamedWithItsLine) {
  struct Case {
    std::string text;
    std::string message;  // a part of it
  };
  const std::string general = coordinate + "general\n";
  const std::string symmetric = coordinate + "symmetric\n";
  const std::vector<Case> cases{
      {"", "line 1: the file is empty"},
      {"3 3 1\n1 1 1\n", "line 1: malformed header"},
      {"%%MatrixMarket matrix coordinate real\n", "line 1: malformed header"},
      {"%%MatrixMarket matrix sparse real general\n", "line 1: malformed header"},
      {"%%MatrixMarket matrix coordinate pattern symmetric\n1 1 1\n1 1\n", "line 1: header field 'pattern'"},
      {"%%MatrixMarket matrix coordinate complex general\n1 1 1\n1 1 1 0\n", "line 1: header field 'complex'"},
      {"%%MatrixMarket matrix coordinate real skew-symmetric\n", "line 1: header symmetry 'skew-symmetric'"},
      {symmetric + "% only a comment\n", "line 2: the file ends before"},
      {symmetric + "\n2 2\n", "line 3: malformed sizes"},
      {symmetric + "2 2 -1\n", "line 2: malformed sizes"},
      {symmetric + "2 2.5 1\n", "line 2: malformed sizes"},
      {symmetric + "2 3 1\n", "line 2: the matrix is not square"},
      {symmetric + "0 0 0\n", "line 2: order 0"},
      {symmetric + "3000000000 3000000000 1\n", "line 2: order 3000000000"},
      {symmetric + "2 2 2147483648\n", "line 2: more than 2147483647 entries"},
      {"%%MatrixMarket matrix array real general\n2000000000 2000000000\n", "line 2: more than 2147483647 entries"},
      {symmetric + "2 2 2\n1 1 1\n0 2 1\n", "line 4: row index 0 is out of range 1 .. 2"},
      {symmetric + "2 2 2\n1 1 1\n3 2 1\n", "line 4: row index 3 is out of range"},
      {general + "2 2 2\n1 1 1\n% c\n2 99999999999999999999 1\n", "line 5: malformed column index"},
      {general + "2 2 2\n1 1 1\n2 2.0 1\n", "line 4: malformed column index '2.0'"},
      {symmetric + "2 2 2\n1 1 1\n2 2 1,5\n", "line 4: malformed number '1,5'"},
      {symmetric + "2 2 2\n1 1 1\n2 2 0x10\n", "line 4: malformed number '0x10'"},
      {symmetric + "2 2 2\n1 1 1\n2 2 +-1\n", "line 4: malformed number '+-1'"},
      {symmetric + "2 2 2\n1 1 1\n2 2 1.0d3\n", "line 4: malformed number"},
      {symmetric + "2 2 2\n1 1 1\n2 2\n", "line 4: expected 'row column value', found 2 words"},
      {symmetric + "2 2 2\n1 1 1\n2 2 1 0\n", "line 4: expected 'row column value', found 4 words"},
      {symmetric + "2 2 2\n1 1 nan\n2 2 1\n", "line 3: the value 'nan' is not a finite number"},
      {symmetric + "2 2 2\n1 1 1\n2 2 -Inf\n", "line 4: the value '-Inf' is not a finite number"},
      {symmetric + "2 2 2\n1 1 1\n2 2 1e999\n", "line 4: the value '1e999' is not a finite number"},
      {"%%MatrixMarket matrix coordinate integer symmetric\n1 1 1\n1 1 1.5\n", "line 3: malformed integer '1.5'"},
      {symmetric + "2 2 2\n1 1 1\n1 2 1\n", "line 4: entry (1, 2) lies above the diagonal"},
      {symmetric + "2 2 3\n1 1 1\n2 2 1\n", "line 4: the file ends after 2 of 3 entries"},
      {symmetric + "2 2 2\n1 1 1\n2 2 1\n2 1 1\n", "line 5: more than the announced 2 entries"},
      {symmetric + "2 2 2147483647\n1 1 1\n", "line 3: the file ends after 1 of 2147483647 entries"},
      {"%%MatrixMarket matrix array real general\n2 2\n1\n2\n2\n", "line 5: the file ends after 3 of 4 entries"},
      {"%%MatrixMarket matrix array real general\n2 2\n1 2\n2 1\n", "line 3: expected one number, found 2 words"},
      {symmetric + "2 2 3\n1 1 1\n2 2 1\n2 2 1\n", "line 5: entry (2, 2) is given twice"},
      {general + "2 2 5\n1 1 1\n2 2 1\n1 2 3\n2 1 3\n1 2 3\n", "line 7: entry (1, 2) is given twice"},
      {general + "2 2 3\n1 1 1\n2 2 1\n2 1 3\n", "line 5: entry (2, 1) differs from its mirror image"},
      {general + "2 2 3\n1 1 1\n1 2 3\n2 2 1\n", "line 4: entry (1, 2) differs from its mirror image"},
      {"%%MatrixMarket matrix array real general\n2 2\n4\n1\n\n2\n4\n", "line 4: entry (2, 1) differs"},
      {symmetric + "% " + std::string(1100, 'x') + "\n1 1 1\n1 1 1\n", "line 2: longer than 1000 characters"},
      {symmetric + "9 9 1\n1 1 1\n", "1 entries cannot make a regular matrix of order 9"},
      {std::string("\x7f\x45LF\0\1\2", 7), "line 1: malformed header"},
  };
  for (const Case& c : cases) {
    const std::string message = refusal(c.text);
    EXPECT_NE(message.find(c.message), std::string::npos) << c.text << "gave: " << message;
  }
  EXPECT_NE(refusal(symmetric + "1 1 1\n1 1 1\n", 2).find("order 1, but the stiffness matrix has order 2"),
            std::string::npos);
}

TEST_F(MatrixMarket, FilesThatAreNotThereOrNoMass) {
  EXPECT_THROW(modal::read_symmetric_matrix((folder_ / "none.mtx").string(), 0), modal::InputError);
  EXPECT_THROW(modal::read_symmetric_matrix(folder_.string(), 0), modal::InputError);
  try {
    modal::read_symmetric_matrix("/dev/zero", 0);  // neither this nor a pipe can be read twice
    FAIL() << "not a file";
  } catch (const modal::InputError& error) {
    EXPECT_STREQ(error.what(), "/dev/zero: not a regular file");
  }
  const std::string k = file(coordinate + "symmetric\n2 2 2\n1 1 4\n2 2 9\n");
  const std::string head = coordinate + "symmetric\n2 2 2\n1 1 0\n2 2 ";
  EXPECT_THROW(modal::read_structure(k, file(head + "-1\n", "M.mtx")), modal::InputError);
  EXPECT_THROW(modal::read_structure(k, file(head + "0\n", "M.mtx")), modal::InputError);
  EXPECT_EQ(modal::read_structure(k, file(head + "3\n", "M.mtx")).mass.value, (std::vector<double>{0, 3}));
  EXPECT_EQ(modal::read_structure(k, "").mass.value, (std::vector<double>{1, 1}));
}

}  // namespace
