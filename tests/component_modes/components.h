// SPDX-License-Identifier: MIT
// The whole program under mpirun.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "modal_analysis/gmsh_text.h"
#include "modal_analysis/temporary_folder.h"

namespace componenttest {

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

class Components : public modaltest::TemporaryFolder {
 protected:
  Outcome run(int ranks, const std::string& arguments) const {
    std::string command = "'" MPIRUN "' -n ";
    command += std::to_string(ranks) + " '" COMPONENT_PROGRAM "' " + arguments;
    return shell(command);
  }
  Outcome shell(const std::string& command) const {
    write("command.sh", command + "\n");
    Outcome outcome;
    outcome.status = zortest::run_program(folder_.string(), "", "/bin/bash", "command.sh", "out.txt", "err.txt");
    outcome.out = read("out.txt");
    outcome.err = read("err.txt");
    return outcome;
  }
  // The name of the file with a space before it.
  std::string part_file(const std::string& name, const modal::Mesh& mesh, double dy = 0.0) const {
    modal::Mesh moved = mesh;
    for (auto& node : moved.node) {
      node[1] += dy;
    }
    write(name, modaltest::gmsh_text(moved));
    return ' ' + name;
  }
};

// A column of the table of modes, from 0.
inline std::vector<double> column_of_modes(const std::string& out, int column) {
  std::vector<double> found;
  std::istringstream lines(out.substr(std::min(out.find("  mode"), out.size())));
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line) && !line.empty()) {
    std::istringstream row(line);
    double value = 0.0;
    for (int i = 0; i <= column; ++i) {
      row >> value;
    }
    found.push_back(value);
  }
  return found;
}

}  // namespace componenttest
