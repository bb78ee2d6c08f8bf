// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "modal_analysis/temporary_folder.h"
#include "structure/input_error.h"
#include "structure/matrix_market.h"

namespace {

using modal::SymmetricMatrix;

class MatrixMarket : public modaltest::TemporaryFolder {
 protected:
  // The message without the folder; empty when the file was taken.
  std::string refusal(const std::string& text, std::int32_t order = 0) const {
    const std::string file = write("K.mtx", text);
    try {
      modal::read_symmetric_matrix(file, order);
    } catch (const modal::InputError& error) {
      const std::string message = error.what();
      EXPECT_EQ(message.rfind(file, 0), 0U) << message;
      EXPECT_EQ(message.find('\n'), std::string::npos) << message;
      return message.substr(file.size());
    }
    return {};
  }
};

const std::string coordinate = "%%MatrixMarket matrix coordinate real ";
const std::string general = coordinate + "general\n";
const std::string symmetric = coordinate + "symmetric\n";
const std::string two_entries = symmetric + "2 2 2\n1 1 1\n";  // the second is to follow
const std::string array = "%%MatrixMarket matrix array real general\n";

TEST_F(MatrixMarket, EveryFormOfOneMatrixReadsTheSame) {
  // 4 . 1
  // . 5 -2.5e-1
  // 1 -2.5e-1 6
  const std::vector<std::string> forms{
      coordinate + "symmetric\n3 3 5\n1 1 4\n2 2 5\n3 3 6\n3 1 1\n3 2 -2.5e-1\n",
      coordinate + "symmetric\r\n% a comment\r\n\r\n3 3 5\r\n3 2 -0.25\r\n3 3 +6.0\r\n3 1 1\r\n\r\n2 2 5.\r\n1 1 4\r\n",
      coordinate + "general\n3 3 7\n1 1 4\n1 3 1\n3 1 1\n2 2 5\n2 3 -.25\n3 2 -.25\n3 3 6",
      "%%matrixMarket matrix array real symmetric\n3 3\n4\n0\n1\n5\n-0.25\n6\n",
      "\t%%matrixmarket Matrix ARRAY real symmetric \r\n3 3\n4\n0\n1\n5\n-0.25\n6\n",
      "%%matrixmarket MATRIX Coordinate Real Symmetric\n  3\t3 5\n 1 1\t4 \n2 2 5\n3 3 6\n3 1 1\n% c\n3 2 -.25\n",
      "%%MatrixMarket matrix array real general\n3 3\n4\n0\n1\n0\n5\n-0.25\n1\n-0.25\n6\n",
  };
  for (const std::string& form : forms) {
    const SymmetricMatrix k = modal::read_symmetric_matrix(write("K.mtx", form), 3);
    EXPECT_EQ(k.order, 3) << form;
    EXPECT_EQ(k.row_end, (modal::Array<std::int32_t>{0, 1, 2, 5})) << form;
    EXPECT_EQ(k.column, (modal::Array<std::int32_t>{1, 2, 1, 2, 3})) << form;
    EXPECT_EQ(k.value, (modal::Array<double>{4, 5, 1, -0.25, 6})) << form;
  }
}

TEST_F(MatrixMarket, IntegersMissingDiagonalsAndRoundedHalves) {
  const std::string integers = "%%MatrixMarket matrix coordinate integer symmetric\n2 2 2\n1 1 -7\n2 1 3\n";
  EXPECT_EQ(modal::read_symmetric_matrix(write("K.mtx", integers), 2).value, (modal::Array<double>{-7, 3, 0}))
      << "a diagonal that is not given is stored as 0";
  // The halves may differ by rounding, measured against the diagonal where they are small themselves.
  EXPECT_EQ(refusal(general + "2 2 4\n1 1 1\n2 2 1\n1 2 1e-20\n2 1 -1e-17\n"), "");
  EXPECT_NE(refusal(general + "2 2 4\n1 1 1\n2 2 1\n1 2 0.5\n2 1 0.5000001\n"), "");
}

TEST_F(MatrixMarket, AFaultIsNamedWithItsLine) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"", "line 1: the file is empty"},
      {"%%MatrixMarket matrix coordinate real\n", "line 1: malformed header"},
      {"%%MatrixMarket matrix coordinate pattern symmetric\n1 1 1\n1 1\n", "line 1: header field 'pattern'"},
      {"%%MatrixMarket matrix coordinate real skew-symmetric\n", "line 1: header symmetry 'skew-symmetric'"},
      {symmetric + "% only a comment\n", "line 2: the file ends before"},
      {symmetric + "\n2 2\n", "line 3: malformed sizes"},
      {symmetric + "2 2 -1\n", "line 2: malformed sizes"},
      {symmetric + "2 3 1\n", "line 2: the matrix is not square"},
      {symmetric + "0 0 0\n", "line 2: order 0"},
      {symmetric + "3000000000 3000000000 1\n", "line 2: order 3000000000"},
      {symmetric + "2 2 2147483648\n", "line 2: more than 2147483647 entries"},
      {array + "2000000000 2000000000\n", "line 2: more than 2147483647 entries"},
      {two_entries + "0 2 1\n", "line 4: row index 0 is out of range 1 .. 2"},
      {general + "2 2 2\n1 1 1\n% c\n2 99999999999999999999 1\n", "line 5: malformed column index"},
      {two_entries + "2 2 1,5\n", "line 4: malformed number '1,5'"},
      {two_entries + "2 2 0x10\n", "line 4: malformed number '0x10'"},
      {two_entries + "2 2\n", "line 4: expected 'row column value', found 2 words"},
      {symmetric + "2 2 2\n1 1 nan\n2 2 1\n", "line 3: the value 'nan' is not a finite number"},
      {two_entries + "2 2 1e999\n", "line 4: the value '1e999' is not a finite number"},
      {"%%MatrixMarket matrix coordinate integer symmetric\n1 1 1\n1 1 1.5\n", "line 3: malformed integer '1.5'"},
      {two_entries + "1 2 1\n", "line 4: entry (1, 2) lies above the diagonal"},
      {symmetric + "2 2 3\n1 1 1\n2 2 1\n", "line 4: the file ends after 2 of 3 entries"},
      {two_entries + "2 2 1\n2 1 1\n", "line 5: more than the announced 2 entries"},
      {array + "2 2\n1\n2\n2\n", "line 5: the file ends after 3 of 4 entries"},
      {array + "2 2\n1 2\n2 1\n", "line 3: expected one number, found 2 words"},
      {symmetric + "2 2 3\n1 1 1\n2 2 1\n2 2 1\n", "line 5: entry (2, 2) is given twice"},
      {general + "2 2 5\n1 1 1\n2 2 1\n1 2 3\n2 1 3\n1 2 3\n", "line 7: entry (1, 2) is given twice"},
      {general + "2 2 3\n1 1 1\n2 2 1\n2 1 3\n", "line 5: entry (2, 1) differs from its mirror image"},
      {general + "2 2 3\n1 1 1\n1 2 3\n2 2 1\n", "line 4: entry (1, 2) differs from its mirror image"},
      {array + "2 2\n4\n1\n\n2\n4\n", "line 4: entry (2, 1) differs"},
      {symmetric + "% " + std::string(1100, 'x') + "\n1 1 1\n1 1 1\n", "line 2: longer than 1000 characters"},
      {symmetric + "9 9 1\n1 1 1\n", "1 entries cannot make a regular matrix of order 9"},
      {std::string("\x7f\x45LF\0\1\2", 7), "line 1: malformed header"},
  };
  for (const auto& [text, part] : cases) {
    const std::string message = refusal(text);
    EXPECT_NE(message.find(part), std::string::npos) << text << "gave: " << message;
  }
  EXPECT_NE(refusal(symmetric + "1 1 1\n1 1 1\n", 2).find("order 1, but the stiffness matrix has order 2"),
            std::string::npos);
}

TEST_F(MatrixMarket, AMassMatrixHasMassAndNoNegativeDiagonal) {
  EXPECT_THROW(modal::read_symmetric_matrix(folder_.string(), 0), modal::InputError);
  EXPECT_THROW(modal::read_symmetric_matrix("/dev/zero", 0), modal::InputError) << "it cannot be read twice";
  const std::string k = write("K.mtx", symmetric + "2 2 2\n1 1 4\n2 2 9\n");
  const auto with_mass = [&](const std::string& last) {
    return modal::read_structure(k, write("M.mtx", symmetric + "2 2 2\n1 1 0\n2 2 " + last + "\n")).mass.value;
  };
  EXPECT_THROW(with_mass("-1"), modal::InputError);
  EXPECT_THROW(with_mass("0"), modal::InputError);
  EXPECT_EQ(with_mass("3"), (modal::Array<double>{0, 3}));
}

}  // namespace
