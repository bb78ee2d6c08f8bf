// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "report/mesh_outline.h"
#include "report/mode_files.h"
#include "report/mode_svg.h"
#include "report/output_folder.h"
#include "structure/input_error.h"
#include "structure/tapered_membrane.h"

namespace {

namespace fs = std::filesystem;
using modal::ModalResult;
using modal::Structure;

// Two made-up modes of a membrane of 3 × 2 elements: growing along x, and one unknown alone.
struct Example {
  Structure structure = modal::tapered_membrane(3, 2);
  ModalResult result;
  Example() {
    const auto n = static_cast<std::size_t>(structure.stiffness.order);
    result.eigenvalue = {400.0, 900.0};
    result.residual = {0, 0};
    result.mode.resize(2 * n);
    for (std::size_t i = 0; i < structure.mesh.node.size(); ++i) {
      if (structure.mesh.equation[i][1] >= 0) {
        result.mode[static_cast<std::size_t>(structure.mesh.equation[i][1])] = 0.002 * structure.mesh.node[i][0];
      }
    }
    result.mode[n + 7] = -1.0 / 3.0;
  }
};

TEST(ModeFiles, VtkHoldsTheMeshAndOneVectorFieldAMode) {
  const Example example;
  std::ostringstream out;
  modal::write_vtk(out, example.structure, example.result);
  std::istringstream in(out.str());
  std::string line;
  std::getline(in, line);
  EXPECT_EQ(line, "# vtk DataFile Version 3.0");
  std::getline(in, line);
  EXPECT_LT(line.size(), 256U);
  std::string word;
  std::size_t nodes = 0, cells = 0, numbers = 0;
  in >> word;
  EXPECT_EQ(word, "ASCII");
  in >> word >> word >> word >> nodes >> word;
  ASSERT_EQ(nodes, example.structure.mesh.node.size());
  for (std::size_t i = 0; i < nodes; ++i) {
    double x = -1, y = -1, z = -1;
    in >> x >> y >> z;
    EXPECT_NEAR(x, example.structure.mesh.node[i][0], 1e-8);
    EXPECT_NEAR(y, example.structure.mesh.node[i][1], 1e-8);
    EXPECT_EQ(z, 0);
  }
  in >> word >> cells >> numbers;
  ASSERT_EQ(word, "CELLS");
  EXPECT_EQ(numbers, 9 * cells);
  for (std::size_t e = 0; e < cells; ++e) {
    int count = 0;
    in >> count;
    EXPECT_EQ(count, 8);
    for (const std::int32_t node : example.structure.mesh.element[e]) {
      int read = -1;
      in >> read;
      EXPECT_EQ(read, node);
    }
  }
  in >> word >> cells;
  ASSERT_EQ(word, "CELL_TYPES");
  for (std::size_t e = 0; e < cells; ++e) {
    in >> word;
    EXPECT_EQ(word, "23");
  }
  in >> word >> nodes;
  ASSERT_EQ(word, "POINT_DATA");
  for (const char* name : {"mode_1_3.18310_Hz", "mode_2_4.77465_Hz"}) {
    std::string field, type;
    in >> word >> field >> type;
    EXPECT_EQ(word, "VECTORS");
    EXPECT_EQ(field, name);
    EXPECT_EQ(type, "double");
    double longest = 0;
    for (std::size_t i = 0; i < nodes; ++i) {
      double x = 9, y = 9, z = 9;
      in >> x >> y >> z;
      longest = std::max(longest, std::hypot(x, y));
      if (example.structure.mesh.node[i][0] == 0) {
        EXPECT_EQ(std::hypot(x, y), 0) << "a clamped node moves";
      }
    }
    EXPECT_NEAR(longest, 1.0, 1e-6);
  }
  EXPECT_TRUE(in.good());
  EXPECT_FALSE(in >> word) << "text after the last field: " << word;
  EXPECT_EQ(out.str().find("-0.000000"), std::string::npos);
}

TEST(ModeFiles, TheMatrixOfModesKeepsEveryBit) {
  Example example;
  example.structure.title = "a name\nwith a line end";
  std::ostringstream out;
  modal::write_mode_matrix(out, example.structure, example.result);
  std::istringstream in(out.str());
  std::string line;
  std::getline(in, line);
  EXPECT_EQ(line, "%%MatrixMarket matrix array real general");
  while (std::getline(in, line) && line.front() == '%') {
  }
  EXPECT_EQ(line, std::to_string(example.structure.stiffness.order) + " 2");
  for (const double expected : example.result.mode) {
    std::getline(in, line);
    EXPECT_EQ(std::stod(line), expected);
  }
  EXPECT_FALSE(std::getline(in, line));
}

// Tags nest and close, and every number is one.
void expect_well_formed(const std::string& svg) {
  std::vector<std::string> open;
  for (std::size_t at = svg.find('<'); at != std::string::npos; at = svg.find('<', at + 1)) {
    const std::size_t end = svg.find('>', at);
    ASSERT_NE(end, std::string::npos);
    const std::string tag = svg.substr(at + 1, end - at - 1);
    const std::string name = tag.substr(tag.front() == '/' ? 1 : 0, tag.find_first_of(" /", 1) - (tag.front() == '/'));
    if (tag.front() == '/') {
      ASSERT_FALSE(open.empty());
      ASSERT_EQ(open.back(), tag.substr(1));
      open.pop_back();
    } else if (tag.back() != '/') {
      open.push_back(name);
    }
  }
  EXPECT_TRUE(open.empty());
  EXPECT_EQ(svg.find("nan"), std::string::npos);
  EXPECT_EQ(svg.find("inf"), std::string::npos);
}

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t n = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++n;
  }
  return n;
}

TEST(ModeSvg, HasAPanelAModeAndSurvivesHardTitles) {
  Example example;
  example.structure.title = "R&D <test>, 3 x 2 elements";
  std::ostringstream out;
  modal::write_svg(out, example.structure, example.result);
  expect_well_formed(out.str());
  EXPECT_EQ(count(out.str(), ">Mode "), 2U);
  EXPECT_NE(out.str().find(">3.18310 Hz<"), std::string::npos);
  EXPECT_NE(out.str().find("R&amp;D &lt;test&gt;"), std::string::npos);
  // 6 elements, the deformed and the resting outline: each a subpath in each panel.
  EXPECT_EQ(count(out.str(), "Z"), 2U * (6 + 1 + 1));
}

TEST(MeshOutline, IsOneLoopOnceAround) {
  const Structure structure = modal::tapered_membrane(3, 2);
  const auto loops = modal::mesh_outline(structure.mesh);
  ASSERT_EQ(loops.size(), 1U);
  ASSERT_EQ(loops[0].size(), 2U * (3 + 2));
  double around = 0;
  for (std::size_t i = 0; i < loops[0].size(); ++i) {
    const auto& side = loops[0][i];
    EXPECT_EQ(side[2], loops[0][(i + 1) % loops[0].size()][0]);
    const auto& a = structure.mesh.node[static_cast<std::size_t>(side[0])];
    const auto& b = structure.mesh.node[static_cast<std::size_t>(side[2])];
    around += std::hypot(b[0] - a[0], b[1] - a[1]);
  }
  EXPECT_NEAR(around, 5 + 1 + 2 * std::hypot(10, 2), 1e-12);
}

class Folder : public testing::Test {
 protected:
  void SetUp() override {
    root_ = fs::temp_directory_path() / ("modal-folder-" + std::to_string(::getpid()));
    fs::create_directories(root_);
  }
  void TearDown() override { fs::remove_all(root_); }
  std::map<std::string, std::string> contents(const fs::path& path) const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(path)) {
      std::ostringstream text;
      text << std::ifstream(entry.path()).rdbuf();
      files[entry.path().filename().string()] = text.str();
    }
    return files;
  }
  fs::path root_;
};

TEST_F(Folder, FilesAppearTogetherAndComplete) {
  const fs::path path = root_ / "a" / "b";
  {
    modal::OutputFolder folder(path.string());
    folder.write("one", [](std::ostream& out) { out << "1"; });
    folder.write("two", [](std::ostream& out) { out << "2"; });
    EXPECT_FALSE(fs::exists(path / "one"));
    folder.publish();
  }
  EXPECT_EQ(contents(path), (std::map<std::string, std::string>{{"one", "1"}, {"two", "2"}}));
}

TEST_F(Folder, AFailureLeavesWhatWasThere) {
  std::ofstream(root_ / "one") << "old";
  try {
    modal::OutputFolder folder(root_.string());
    folder.write("one", [](std::ostream& out) { out << "new"; });
    folder.write("two", [](std::ostream& out) { out.setstate(std::ios::badbit); });  // as a full disk does
    FAIL() << "a failed write went unnoticed";
  } catch (const modal::InputError&) {
  }
  EXPECT_EQ(contents(root_), (std::map<std::string, std::string>{{"one", "old"}}));
  { const modal::OutputFolder unused((root_ / "new" / "deep").string()); }
  EXPECT_FALSE(fs::exists(root_ / "new")) << "an empty folder was left";
  EXPECT_THROW(modal::OutputFolder((root_ / "one" / "x").string()), modal::InputError);
  const std::string no_name(300, 'x');  // longer than a file system takes
  EXPECT_THROW(modal::OutputFolder((root_ / "new" / "deep" / no_name).string()), modal::InputError);
  EXPECT_FALSE(fs::exists(root_ / "new")) << "the folders made on the way were left";
  EXPECT_THROW(modal::OutputFolder(""), modal::InputError);
  EXPECT_THROW(modal::OutputFolder("/proc/modes-out"), modal::InputError);
}

}  // namespace
