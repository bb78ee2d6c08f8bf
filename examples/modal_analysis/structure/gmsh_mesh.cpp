// SPDX-License-Identifier: MIT
// The format: C. Geuzaine and J.-F. Remacle, Gmsh reference manual, chapter on the MSH file format, version 4.1. Its
// eight-node quadrilateral lists the corners and then the mid-side nodes as this program does.
#include "structure/gmsh_mesh.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include "structure/text_lines.h"
#include "structure/unknown_numbers.h"

namespace modal {
namespace {

constexpr const char* clamped_name = "\"clamped\"";
constexpr std::int64_t any_tag = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t any_count = std::numeric_limits<std::int32_t>::max() / 2;  // two unknowns a node
constexpr int eight_node_quadrilateral = 16;

struct ElementType {
  int code;
  std::size_t nodes;
};
// What may stand beside the quadrilaterals: lines of two and three nodes, and points.
constexpr std::array<ElementType, 4> known_types{{{1, 2}, {8, 3}, {15, 1}, {eight_node_quadrilateral, 8}}};

class Reader {
 public:
  Reader(const std::string& path, Support support) : lines_(path), support_(support) {}

  Mesh read() {
    read_format();
    while (lines_.next()) {
      const std::string name(lines_.word(0));
      if (name.front() != '$' || name.compare(0, 4, "$End") == 0 || lines_.words() != 1) {
        lines_.fault("expected the begin of a section, found " + quoted_word(lines_.text()));
      }
      if (name == "$PhysicalNames") {
        read_names();
      } else if (name == "$Entities") {
        read_entities();
      } else if (name == "$Nodes") {
        read_nodes();
      } else if (name == "$Elements") {
        read_elements();
      } else {
        skip_section(name);
        continue;
      }
      lines_.need(("$End" + name.substr(1)).c_str(), 1);
      if (lines_.word(0) != "$End" + name.substr(1)) {
        lines_.fault("expected $End" + name.substr(1) + ", found " + quoted_word(lines_.text()));
      }
    }
    if (mesh_.element.empty()) {
      lines_.fault("the file has no eight-node quadrilaterals");
    }
    return used_nodes();
  }

 private:
  using Entity = std::pair<std::int64_t, std::int64_t>;  // dimension and tag

  void read_format() {
    lines_.need("$MeshFormat");
    if (lines_.word(0) != "$MeshFormat") {
      lines_.fault("not a Gmsh mesh: expected $MeshFormat, found " + quoted_word(lines_.text()));
    }
    lines_.need("'4.1 0 8'", 3);
    if (lines_.word(0) != "4.1") {
      lines_.fault("the version of the format is " + quoted_word(lines_.word(0)) + ", expected 4.1");
    }
    if (lines_.word(1) != "0") {
      lines_.fault("the file is binary, expected a text file");
    }
    lines_.need("$EndMeshFormat", 1);
    if (lines_.word(0) != "$EndMeshFormat") {
      lines_.fault("expected $EndMeshFormat, found " + quoted_word(lines_.text()));
    }
  }

  void skip_section(const std::string& name) {
    const std::int64_t begin = lines_.number();
    const std::string end = "$End" + name.substr(1);
    do {
      if (!lines_.next()) {
        lines_.fault_at(begin, "the section " + quoted_word(name) + " has no end");
      }
    } while (lines_.word(0) != end);
  }

  void read_names() {
    lines_.need("the number of physical names", 1);
    const std::int64_t count = lines_.integer(0, "the number of physical names", 0, any_count);
    for (std::int64_t i = 0; i < count; ++i) {
      lines_.need("'dimension tag \"name\"'");
      if (lines_.words() < 3 || lines_.word(2).front() != '"') {
        lines_.fault("expected 'dimension tag \"name\"', found " + quoted_word(lines_.text()));
      }
      const std::int64_t dimension = lines_.integer(0, "the dimension", 0, 3);
      const std::int64_t tag = lines_.integer(1, "the tag", 1, any_tag);
      if (lines_.words() == 3 && lines_.word(2) == clamped_name) {
        if (dimension > 1) {
          lines_.fault("the group \"clamped\" must be of points or curves");
        }
        clamped_group_.insert({dimension, tag});
      }
    }
  }

  // Keeps the points and curves that belong to a clamped group.
  void read_entities() {
    lines_.need("four numbers of entities", 4);
    std::array<std::int64_t, 4> count{};
    for (std::size_t d = 0; d < 4; ++d) {
      count[d] = lines_.integer(d, "the number of entities", 0, any_count);
    }
    for (std::int64_t d = 0; d < 4; ++d) {
      // The tag, then a position or the corners of a box, then the groups.
      const std::size_t groups = d == 0 ? 4 : 7;
      for (std::int64_t i = 0; i < count[static_cast<std::size_t>(d)]; ++i) {
        lines_.need("an entity");
        if (lines_.words() <= groups) {
          lines_.fault("an entity of dimension " + std::to_string(d) + " has at least " + std::to_string(groups + 1) +
                       " numbers, found " + std::to_string(lines_.words()));
        }
        const std::int64_t tag = lines_.integer(0, "the tag", -any_tag, any_tag);
        const auto left = static_cast<std::int64_t>(lines_.words() - groups - 1);
        const std::int64_t belongs_to = lines_.integer(groups, "the number of physical groups", 0, left);
        for (std::int64_t g = 1; g <= belongs_to; ++g) {
          const std::int64_t group =
              lines_.integer(groups + static_cast<std::size_t>(g), "the physical group", -any_tag, any_tag);
          if (clamped_group_.count({d, group < 0 ? -group : group}) != 0) {
            clamped_entity_.insert({d, tag});
          }
        }
      }
    }
  }

  void read_nodes() {
    if (!mesh_.node.empty()) {
      lines_.fault("a second section $Nodes");
    }
    const auto [blocks, total] = read_totals("'blocks nodes lowest-tag highest-tag'");
    for (std::int64_t b = 0; b < blocks; ++b) {
      lines_.need("'dimension entity parametric nodes'", 4);
      const Entity entity = read_entity();
      const std::int64_t parameters = lines_.integer(2, "the parametric flag", 0, 1) != 0 ? entity.first : 0;
      const std::int64_t count = lines_.integer(3, "the number of nodes", 0, total - node_count());
      const std::int64_t first = node_count();
      for (std::int64_t i = 0; i < count; ++i) {
        lines_.need("the tag of a node", 1);
        const std::int64_t tag = lines_.integer(0, "the tag of a node", 1, std::numeric_limits<std::int64_t>::max());
        if (!number_of_tag_.emplace(tag, static_cast<std::int32_t>(first + i)).second) {
          lines_.fault("node " + std::to_string(tag) + " is given twice");
        }
        mesh_.tag.push_back(tag);
      }
      for (std::int64_t i = 0; i < count; ++i) {
        lines_.need("'x y z' of a node", static_cast<std::size_t>(3 + parameters));
        if (lines_.coordinate(2) != 0) {
          lines_.fault("the node lies outside the plane z = 0");
        }
        mesh_.node.push_back({lines_.coordinate(0), lines_.coordinate(1)});
        clamped_.push_back(clamped_entity_.count(entity) != 0);
      }
    }
    if (node_count() != total) {
      lines_.fault("the section has " + std::to_string(node_count()) + " nodes, announced were " +
                   std::to_string(total));
    }
  }

  void read_elements() {
    if (mesh_.node.empty()) {
      lines_.fault("the section $Nodes with at least one node must stand before $Elements");
    }
    const auto [blocks, total] = read_totals("'blocks elements lowest-tag highest-tag'");
    std::int64_t read = 0;
    for (std::int64_t b = 0; b < blocks; ++b) {
      lines_.need("'dimension entity type elements'", 4);
      const Entity entity = read_entity();
      const std::int64_t code = lines_.integer(2, "the element type", 1, any_tag);
      const auto* const type = std::find_if(known_types.begin(), known_types.end(),
                                            [code](const ElementType& known) { return known.code == code; });
      if (type == known_types.end()) {
        lines_.fault("element type " + std::to_string(code) + ", expected eight-node quadrilaterals (type 16)");
      }
      const std::int64_t count = lines_.integer(3, "the number of elements", 0, total - read);
      const bool clamps = entity.first < 2 && clamped_entity_.count(entity) != 0;
      for (std::int64_t i = 0; i < count; ++i) {
        read_element(*type, clamps);
      }
      read += count;
    }
    if (read != total) {
      lines_.fault("the section has " + std::to_string(read) + " elements, announced were " + std::to_string(total));
    }
  }

  void read_element(const ElementType& type, bool clamps) {
    lines_.need("an element", 1 + type.nodes);
    std::array<std::int32_t, 8> element{};
    for (std::size_t i = 0; i < type.nodes; ++i) {
      const std::int64_t tag = lines_.integer(1 + i, "node", 1, std::numeric_limits<std::int64_t>::max());
      const auto found = number_of_tag_.find(tag);
      if (found == number_of_tag_.end()) {
        lines_.fault("there is no node " + std::to_string(tag));
      }
      element[i] = found->second;
      if (clamps) {
        clamped_[static_cast<std::size_t>(element[i])] = true;
      }
    }
    if (type.code == eight_node_quadrilateral) {
      add_quadrilateral(element);
    }
  }

  void add_quadrilateral(std::array<std::int32_t, 8> element) {
    if (!convex(element)) {
      element = {element[0], element[3], element[2], element[1], element[7], element[6], element[5], element[4]};
      if (!convex(element)) {
        lines_.fault("the element is turned inside out, or too distorted");
      }
    }
    mesh_.element.push_back(element);
  }

  // Whether the sides, parabolas through their three nodes, leave every corner with the element on their left.
  bool convex(const std::array<std::int32_t, 8>& element) const {
    const auto at = [this, &element](std::size_t i) { return mesh_.node[static_cast<std::size_t>(element[i])]; };
    const auto tangent = [&at](std::size_t from, std::size_t middle, std::size_t to) {
      std::array<double, 2> t{};
      for (std::size_t d = 0; d < 2; ++d) {
        t[d] = 4 * (at(middle)[d] - at(from)[d]) - (at(to)[d] - at(from)[d]);
      }
      return t;
    };
    for (std::size_t i = 0; i < 4; ++i) {
      const auto out = tangent(i, 4 + i, (i + 1) % 4);
      const auto back = tangent(i, 4 + (i + 3) % 4, (i + 3) % 4);
      if (!(out[0] * back[1] - out[1] * back[0] > 0)) {
        return false;
      }
    }
    return true;
  }

  // Blocks and their contents.
  std::pair<std::int64_t, std::int64_t> read_totals(const char* wanted) {
    lines_.need(wanted, 4);
    return {lines_.integer(0, "the number of blocks", 0, any_count), lines_.integer(1, "the number", 0, any_count)};
  }

  Entity read_entity() {
    return {lines_.integer(0, "the dimension", 0, 2), lines_.integer(1, "the entity", -any_tag, any_tag)};
  }

  std::int64_t node_count() const { return static_cast<std::int64_t>(mesh_.node.size()); }

  Mesh used_nodes() {
    std::vector<std::int32_t> number(mesh_.node.size(), -1);
    for (const auto& element : mesh_.element) {
      for (const std::int32_t node : element) {
        number[static_cast<std::size_t>(node)] = 0;
      }
    }
    Mesh used;
    std::vector<bool> clamped;
    for (std::size_t i = 0; i < number.size(); ++i) {
      if (number[i] == 0) {
        number[i] = static_cast<std::int32_t>(used.node.size());
        used.node.push_back(mesh_.node[i]);
        used.tag.push_back(mesh_.tag[i]);
        clamped.push_back(clamped_[i]);
      }
    }
    if (support_ == Support::required && std::find(clamped.begin(), clamped.end(), true) == clamped.end()) {
      lines_.fault(
          "the file ends, and no node is clamped: name the physical points or curves of the support \"clamped\"");
    }
    for (auto& element : mesh_.element) {
      for (std::int32_t& node : element) {
        node = number[static_cast<std::size_t>(node)];
      }
    }
    if (std::find(clamped.begin(), clamped.end(), false) == clamped.end()) {
      lines_.fault("the file ends, and every node is clamped");
    }
    used.element = std::move(mesh_.element);
    number_unknowns(used, clamped);
    return used;
  }

  TextLines lines_;
  Support support_;
  std::set<Entity> clamped_group_;
  std::set<Entity> clamped_entity_;
  std::unordered_map<std::int64_t, std::int32_t> number_of_tag_;
  std::vector<bool> clamped_;  // per node
  Mesh mesh_;
};

}  // namespace

Mesh read_gmsh_mesh(const std::string& path, Support support) {
  return Reader(path, support).read();
}

}  // namespace modal
