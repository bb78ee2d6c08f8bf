// SPDX-License-Identifier: MIT
// Meshes in parts and meshes from files.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "modal_analysis/gmsh_text.h"
#include "modal_analysis/temporary_folder.h"
#include "structure/gmsh_mesh.h"
#include "structure/input_error.h"
#include "structure/mesh_parts.h"
#include "structure/tapered_membrane.h"

namespace {

using modal::Mesh;

// A square of side 2 with its lower left corner there, as one element.
Mesh square(double x, double y, double scale = 1) {
  Mesh mesh;
  for (const auto& [dx, dy] : {std::pair{0, 0}, {2, 0}, {2, 2}, {0, 2}, {1, 0}, {2, 1}, {1, 2}, {0, 1}}) {
    mesh.node.push_back({scale * (x + dx), scale * (y + dy)});
  }
  mesh.element.push_back({0, 1, 2, 3, 4, 5, 6, 7});
  return mesh;
}

std::string gap(const std::vector<Mesh>& parts) {
  try {
    modal::joined_parts(parts);
  } catch (const modal::InputError& error) {
    return error.what();
  }
  return {};
}

TEST(MeshParts, JoinWhereTheyMeetAndNowhereElse) {
  for (const double scale : {1e-8, 1.0, 1e8}) {
    // Four around a point, the last one off by less than the tolerance, and one far away.
    const Mesh joined = modal::joined_parts({square(0, 0, scale), square(2, 0, scale), square(0, 2, scale),
                                             square(2 + 5e-7, 2 - 5e-7, scale), square(20, 0, scale)});
    EXPECT_EQ(joined.node.size(), 21U + 8U);
    ASSERT_EQ(joined.element.size(), 5U);
    EXPECT_EQ(joined.element[3][0], joined.element[0][2]);
    EXPECT_EQ(joined.element[1][7], joined.element[0][5]);
    EXPECT_EQ(joined.element[3][7], joined.element[2][5]);
    EXPECT_EQ(joined.element[2][4], joined.element[0][6]);
  }
  // A slit wider than the node spacing is none of a joint; a part whose corner falls between the nodes of another is.
  EXPECT_EQ(gap({square(0, 0), square(3.1, 0)}), "");
  EXPECT_EQ(gap({square(0, 0), square(2.001, 0)}),
            "a joint does not close: node 2 of part 1 and node 1 of part 2 are 0.001 m apart");
  EXPECT_EQ(gap({square(0, 0), square(2, 0), square(4 - 2e-6, 0)}),
            "a joint does not close: node 2 of part 2 and node 1 of part 3 are 2e-06 m apart");
  EXPECT_NE(gap({square(0, 0), square(2, 0.4)}), "");
}

TEST(MeshParts, OfTheMembraneGiveItsNodesBackToRounding) {
  const Mesh whole = modal::tapered_membrane(9, 4).mesh;
  for (const int parts : {2, 5, 9}) {
    const Mesh joined = modal::tapered_membrane(9, 4, parts).mesh;
    EXPECT_EQ(joined.element, whole.element);
    EXPECT_EQ(joined.equation, whole.equation);
    ASSERT_EQ(joined.node.size(), whole.node.size());
    for (std::size_t i = 0; i < whole.node.size(); ++i) {
      EXPECT_NEAR(joined.node[i][0], whole.node[i][0], 1e-14);
      EXPECT_NEAR(joined.node[i][1], whole.node[i][1], 1e-14);
    }
  }
}

class GmshMesh : public modaltest::TemporaryFolder {
 protected:
  // The message from the line number on; empty when the file was taken.
  std::string refusal(const std::string& text) const {
    const std::string file = write("a.msh", text);
    try {
      modal::read_gmsh_mesh(file);
    } catch (const modal::InputError& error) {
      const std::string message = error.what();
      EXPECT_EQ(message.rfind(file + ", line ", 0), 0U) << message;
      EXPECT_EQ(message.find('\n'), std::string::npos) << message;
      return message.substr(file.size() + 2);
    }
    return {};
  }
};

std::string replaced(std::string text, const std::string& old, const std::string& with) {
  const std::size_t at = text.find(old);
  EXPECT_NE(at, std::string::npos) << old;
  return at == std::string::npos ? text : text.replace(at, old.size(), with);
}

TEST_F(GmshMesh, ReadsWhatGmshWrites) {
  const Mesh whole = modal::tapered_membrane(3, 2).mesh;
  const std::string text = modaltest::gmsh_text(whole);
  const Mesh mesh = modal::read_gmsh_mesh(write("a.msh", text));
  EXPECT_EQ(mesh.node, whole.node);
  EXPECT_EQ(mesh.element, whole.element);
  EXPECT_EQ(mesh.equation, whole.equation);

  // Lines end in the manner of Windows; another section, an unused node on a curve with its parameter, a clamped point
  // with an element of its own, and an element that runs clockwise.
  const std::string other =
      "$MeshFormat\r\n4.1 0 8\r\n$EndMeshFormat\r\n$Comments\r\nanything $Nodes\r\n$EndComments\r\n"
      "$PhysicalNames\r\n1\r\n0 1 \"clamped\"\r\n$EndPhysicalNames\r\n"
      "$Entities\r\n1 0 1 0\r\n1 0 0 0 1 1\r\n1 0 0 0 2 2 0 0 0\r\n$EndEntities\r\n"
      "$Nodes\r\n2 9 1 5000000000\r\n1 2 1 1\r\n77\r\n9 9 0 0.5\r\n2 1 0 8\r\n1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n"
      "5000000000\r\n0 0 0\r\n0 2 0\r\n2 2 0\r\n2 0 0\r\n0 1 0\r\n1 2 0\r\n2 1 0\r\n1 0 -0\r\n$EndNodes\r\n"
      "$Elements\r\n2 2 1 2\r\n0 1 15 1\r\n1 4\r\n2 1 16 1\r\n2 1 2 3 4 5 6 7 5000000000\r\n$EndElements\r\n";
  const Mesh one = modal::read_gmsh_mesh(write("b.msh", other));
  EXPECT_EQ(one.node.size(), 8U);
  EXPECT_EQ(one.element, (modal::Array<std::array<std::int32_t, 8>>{{0, 3, 2, 1, 7, 6, 5, 4}}));
  EXPECT_EQ(one.equation[3], (std::array<std::int32_t, 2>{-1, -1}));
  EXPECT_EQ(one.equation[7], (std::array<std::int32_t, 2>{12, 13}));
}

TEST_F(GmshMesh, AFaultIsNamedWithItsLine) {
  const std::string good = modaltest::gmsh_text(square(0, 0));
  ASSERT_EQ(refusal(good), "");
  struct Case {
    std::string old;
    std::string with;
    std::string message;
  };
  for (const auto& [old, with, message] : {
           Case{"$MeshFormat", "$Mesh", "line 1: not a Gmsh mesh: expected $MeshFormat, found '$Mesh'"},
           {"4.1 0 8", "2.2 0 8", "line 2: the version of the format is '2.2', expected 4.1"},
           {"4.1 0 8", "4.1 1 8", "line 2: the file is binary, expected a text file"},
           {"1 7 \"clamped\"", "1 seven \"clamped\"", "line 6: the tag 'seven' is not"},
           {"1 7 \"clamped\"", "2 7 \"clamped\"", "line 6: the group \"clamped\" must be of points or curves"},
           {"1 7 \"clamped\"", "1 7 \"fixed\"", "line 41: the file ends, and no node is clamped"},
           {"$EndPhysicalNames", "3 1 \"more\"", "line 8: expected $EndPhysicalNames"},
           {"1 1 1 0\n", "1 1 1\n", "line 10: expected four numbers of entities"},
           {"3 0 1 7 2 1 -2", "3 0 99 7 2 1 -2", "line 12: the number of physical groups '99' is not"},
           {"1 8 10 100", "1 9 10 100", "line 33: the section has 8 nodes, announced were 9"},
           {"1 8 10 100", "1 7 10 100", "line 17: the number of nodes '8' is not a whole number 0 .. 7"},
           {"1 8 10 100", "1 99999999999999999999 10 100", "line 16: the number '9999"},
           {"\n20\n", "\n10\n", "line 19: node 10 is given twice"},
           {"\n2 0 0\n", "\n2 0 1e-3\n", "line 27: the node lies outside the plane z = 0"},
           {"\n2 0 0\n", "\n2 nan 0\n", "line 27: the coordinate 'nan' is not"},
           {"\n2 0 0\n", "\n2 0\n", "line 27: expected 'x y z' of a node, found '2 0'"},
           {"2 1 16 1", "2 1 10 1", "line 39: element type 10, expected eight-node quadrilaterals (type 16)"},
           {"2 10 20 30", "2 10 20 31", "line 40: there is no node 31"},
           {"2 10 20 30 40", "2 10 20 30", "line 40: expected an element, found"},
           {"2 10 20 30 40", "2 10 30 20 40", "line 40: the element is turned inside out, or too distorted"},
           {"$EndElements\n", "", "line 40: the file ends before $EndElements"},
           {"$EndElements\n", "$EndElements\n$Periodic\n0\n", "line 42: the section '$Periodic' has no end"},
           {"$EndElements\n", "$EndElements\nstray\n", "line 42: expected the begin of a section, found 'stray'"},
       }) {
    EXPECT_EQ(refusal(replaced(good, old, with)).rfind(message, 0), 0U) << message << "\n"
                                                                        << refusal(replaced(good, old, with));
  }
  EXPECT_EQ(refusal(good.substr(0, good.find("$Elements"))), "line 34: the file has no eight-node quadrilaterals");
  EXPECT_EQ(refusal(""), "line 1: the file ends before $MeshFormat");
  // No beginning of the file is taken for a mesh.
  for (std::size_t length = 0; length + 1 < good.size(); length += 5) {
    EXPECT_NE(refusal(good.substr(0, length)), "") << length;
  }
  EXPECT_THROW(modal::read_gmsh_mesh(path("none.msh")), modal::InputError);
  EXPECT_THROW(modal::read_gmsh_mesh(folder_.string()), modal::InputError);
}

}  // namespace
