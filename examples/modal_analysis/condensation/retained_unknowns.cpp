// SPDX-License-Identifier: MIT
#include "condensation/retained_unknowns.h"

#include <limits>
#include <unordered_map>

#include "factorization/index.h"
#include "structure/text_lines.h"

namespace modal {
namespace {

class Reader {
 public:
  Reader(const std::string& path, const Structure& structure)
      : lines_(path), structure_(structure), first_line_(at(structure.stiffness.order), 0) {
    for (const std::int64_t tag : structure.mesh.tag) {
      node_of_tag_.emplace(tag, static_cast<std::int32_t>(node_of_tag_.size()));
    }
  }

  RetainedUnknowns read() {
    const bool of_mesh = !structure_.mesh.node.empty();
    while (lines_.next()) {
      if (result_.unknown.size() == most_retained) {
        lines_.fault("more than " + std::to_string(most_retained) + " unknowns are retained");
      }
      add(of_mesh ? mesh_unknown() : matrix_unknown());
    }
    if (result_.unknown.empty()) {
      lines_.fault("the file ends and names no unknown");
    }
    return std::move(result_);
  }

 private:
  void need_words(std::size_t words, const char* wanted) {
    if (lines_.words() != words) {
      lines_.fault(std::string("expected ") + wanted + ", found " + quoted_word(lines_.text()));
    }
  }

  std::int32_t matrix_unknown() {
    need_words(1, "the number of an unknown");
    const std::int64_t number = lines_.integer(0, "the unknown", 1, structure_.stiffness.order);
    result_.name.push_back(std::to_string(number));
    return static_cast<std::int32_t>(number - 1);
  }

  std::int32_t mesh_unknown() {
    need_words(2, "'NODE x' or 'NODE y'");
    const std::int64_t number = node_number();
    const std::int32_t node = node_of_number(number);
    if (lines_.word(1) != "x" && lines_.word(1) != "y") {
      lines_.fault("the direction " + quoted_word(lines_.word(1)) + " is neither x nor y");
    }
    const std::int32_t unknown = structure_.mesh.equation[at(node)][lines_.word(1) == "x" ? 0 : 1];
    if (unknown < 0) {
      lines_.fault("node " + std::to_string(number) + " is fixed");
    }
    result_.name.push_back(std::to_string(number) + ' ' + std::string(lines_.word(1)));
    return unknown;
  }

  std::int64_t node_number() const {
    const auto nodes = static_cast<std::int64_t>(structure_.mesh.node.size());
    return lines_.integer(0, "the node", 1,
                          structure_.mesh.tag.empty() ? nodes : std::numeric_limits<std::int64_t>::max());
  }

  std::int32_t node_of_number(std::int64_t number) const {
    if (structure_.mesh.tag.empty()) {
      return static_cast<std::int32_t>(number - 1);
    }
    const auto found = node_of_tag_.find(number);
    if (found == node_of_tag_.end()) {
      lines_.fault("no element has a node " + std::to_string(number));
    }
    return found->second;
  }

  void add(std::int32_t unknown) {
    std::int64_t& line = first_line_[at(unknown)];
    if (line != 0) {
      lines_.fault("the unknown is retained in line " + std::to_string(line) + " already");
    }
    line = lines_.number();
    result_.unknown.push_back(unknown);
  }

  TextLines lines_;
  const Structure& structure_;
  std::vector<std::int64_t> first_line_;  // per unknown: the line that retains it, 0 before
  std::unordered_map<std::int64_t, std::int32_t> node_of_tag_;
  RetainedUnknowns result_;
};

}  // namespace

RetainedUnknowns read_retained_unknowns(const std::string& path, const Structure& structure) {
  return Reader(path, structure).read();
}

}  // namespace modal
