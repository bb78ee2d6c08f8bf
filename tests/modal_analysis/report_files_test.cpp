// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "modal_analysis/temporary_folder.h"
#include "report/mode_files.h"
#include "report/mode_svg.h"
#include "report/output_folder.h"
#include "structure/input_error.h"
#include "structure/tapered_membrane.h"

namespace {

namespace fs = std::filesystem;

// Two made-up modes: growing along x, and the last unknown alone.
struct Example {
  modal::Structure structure;
  modal::ModalResult result;

  Example(int nx, int ny) : structure(modal::tapered_membrane(nx, ny)) {
    structure.title = "R&D <test>\n2 modes";
    result.eigenvalue = {400.0, 900.0};
    result.mode.assign(2 * static_cast<std::size_t>(structure.stiffness.order), 0.0);
    for (std::size_t i = 0; i < structure.mesh.node.size(); ++i) {
      if (structure.mesh.equation[i][1] >= 0) {
        result.mode[static_cast<std::size_t>(structure.mesh.equation[i][1])] = 0.002 * structure.mesh.node[i][0];
      }
    }
    result.mode.back() = -1.0 / 3.0;
  }
  template <class Write>
  std::string written(Write write) const {
    std::ostringstream out;
    write(out, structure, result);
    return out.str();
  }
};

std::vector<std::string> words(const std::string& text) {
  std::istringstream in(text);
  return {std::istream_iterator<std::string>(in), {}};
}

std::ptrdiff_t count(const std::string& text, const std::string& pattern) {
  const std::regex regex(pattern);
  return std::distance(std::sregex_iterator(text.begin(), text.end(), regex), {});
}

TEST(ModeFiles, VtkHoldsTheMeshAndOneVectorFieldAMode) {
  const std::string vtk = Example(1, 1).written(modal::write_vtk);
  EXPECT_EQ(vtk.rfind("# vtk DataFile Version 3.0\nR&D <test>?2 modes\nASCII\nDATASET UNSTRUCTURED_GRID\n", 0), 0U);
  EXPECT_EQ(words(vtk.substr(vtk.find("POINTS"))),
            words("POINTS 8 double  0 -2.5 0  0 0 0  0 2.5 0  5 -1.5 0  5 1.5 0  10 -0.5 0  10 0 0  10 0.5 0 "
                  "CELLS 1 9  8 0 5 7 2 3 6 4 1 "
                  "CELL_TYPES 1  23 "
                  "POINT_DATA 8 "
                  "VECTORS mode_1_3.18310_Hz double "
                  "0.000000 0.000000 0  0.000000 0.000000 0  0.000000 0.000000 0  0.000000 0.500000 0 "
                  "0.000000 0.500000 0  0.000000 1.000000 0  0.000000 1.000000 0  0.000000 1.000000 0 "
                  "VECTORS mode_2_4.77465_Hz double "
                  "0.000000 0.000000 0  0.000000 0.000000 0  0.000000 0.000000 0  0.000000 0.000000 0 "
                  "0.000000 0.000000 0  0.000000 0.000000 0  0.000000 0.000000 0  0.000000 -1.000000 0"));
}

TEST(ModeFiles, TheMatrixOfModesKeepsEveryBit) {
  const Example example(3, 2);
  const std::string text = example.written(modal::write_mode_matrix);
  EXPECT_EQ(text.rfind("%%MatrixMarket matrix array real general\n%", 0), 0U);
  const std::vector<std::string> numbers = words(text.substr(text.find("\n48 2\n")));
  ASSERT_EQ(numbers.size(), 2 + example.result.mode.size());
  for (std::size_t i = 0; i < example.result.mode.size(); ++i) {
    EXPECT_EQ(std::stod(numbers[i + 2]), example.result.mode[i]);
  }
}

TEST(ModeSvg, IsWellFormedWithAPanelAMode) {
  const std::string svg = Example(3, 2).written(modal::write_svg);
  std::vector<std::string> open;
  const std::regex pattern("<(/?)([^ />]+)[^>]*?(/?)>");
  for (std::sregex_iterator tag(svg.begin(), svg.end(), pattern); tag != std::sregex_iterator(); ++tag) {
    if (tag->length(1) > 0) {
      ASSERT_FALSE(open.empty());
      ASSERT_EQ(open.back(), tag->str(2));
      open.pop_back();
    } else if (tag->length(3) == 0) {
      open.push_back(tag->str(2));
    }
  }
  EXPECT_TRUE(open.empty());
  EXPECT_EQ(count(svg, "nan|inf"), 0);
  EXPECT_EQ(count(svg, ">Mode "), 2);
  EXPECT_EQ(count(svg, ">3\\.18310 Hz<"), 1);
  EXPECT_GE(count(svg, "R&amp;D &lt;test&gt;"), 1);
  // 6 elements, the deformed and the resting outline: each a subpath in each panel.
  EXPECT_EQ(count(svg, "Z"), 2 * (6 + 1 + 1));
}

class Folder : public modaltest::TemporaryFolder {
 protected:
  std::map<std::string, std::string> contents(const std::string& folder) const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(path(folder))) {
      const std::string name = entry.path().filename().string();
      files[name] = read((fs::path(folder) / name).string());
    }
    return files;
  }
};

TEST_F(Folder, FilesAppearTogetherAndComplete) {
  {
    modal::OutputFolder folder(path("a/b"));
    folder.write("one", [](std::ostream& out) { out << "1"; });
    folder.write("two", [](std::ostream& out) { out << "2"; });
    EXPECT_FALSE(fs::exists(path("a/b/one")));
    folder.publish();
  }
  EXPECT_EQ(contents("a/b"), (std::map<std::string, std::string>{{"one", "1"}, {"two", "2"}}));
}

TEST_F(Folder, AFailureLeavesWhatWasThere) {
  write("one", "old");
  EXPECT_THROW(
      {
        modal::OutputFolder folder(folder_.string());
        folder.write("one", [](std::ostream& out) { out << "new"; });
        folder.write("two", [](std::ostream& out) { out.setstate(std::ios::badbit); });  // as a full disk does
      },
      modal::InputError);
  EXPECT_EQ(contents(""), (std::map<std::string, std::string>{{"one", "old"}}));
  { const modal::OutputFolder unused(path("new/deep")); }
  EXPECT_FALSE(fs::exists(path("new"))) << "an empty folder was left";
  const std::string too_long(300, 'x');  // longer than a file system takes
  EXPECT_THROW(modal::OutputFolder(path("new/deep/" + too_long)), modal::InputError);
  EXPECT_FALSE(fs::exists(path("new"))) << "the folders made on the way were left";
}

}  // namespace
