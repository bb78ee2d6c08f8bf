// SPDX-License-Identifier: MIT
// Runs the configuration entry points named on its command line, in order, in a process of its own, and prints what
// each gives on one line. Other words: NAME=VALUE sets a variable, -NAME removes it, ?NAME prints it, one-processor
// shrinks the affinity mask, cores and team print what the framework and the OpenMP runtime say.
#include <omp.h>
#include <sched.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>

#include "ZORMathematics.h"
#include "ZORTAVConfiguration.h"

namespace {

std::string text(int32_t value) {
  return std::to_string(value);
}

std::string one_result(void (*entry)(int32_t*)) {
  int32_t result = 77;
  entry(&result);
  return text(result);
}

std::string all_of_getblas() {
  int32_t mode = 77;
  int32_t reserved1 = 77;
  int32_t reserved2 = 77;
  getblas(&mode, &reserved1, &reserved2);
  return text(mode) + "," + text(reserved1) + "," + text(reserved2);
}

std::string team_size() {
  int size = 0;
#pragma omp parallel
  {
#pragma omp single
    size = omp_get_num_threads();
  }
  return text(size);
}

std::string shrink_affinity() {
  cpu_set_t mask;
  sched_getaffinity(0, sizeof mask, &mask);
  bool found = false;
  for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu) {
    if (CPU_ISSET(cpu, &mask) && found) {
      CPU_CLR(cpu, &mask);
    }
    found = found || CPU_ISSET(cpu, &mask);
  }
  sched_setaffinity(0, sizeof mask, &mask);
  return "";
}

std::string variable(const std::string& word) {
  const std::string name = word.substr(1);
  if (word[0] == '?') {
    const char* value = std::getenv(name.c_str());
    return value != nullptr ? value : "unset";
  }
  if (word[0] == '-') {
    unsetenv(name.c_str());
    return "";
  }
  const std::size_t equals = word.find('=');
  if (equals == std::string::npos) {
    return "unknown word " + word;
  }
  setenv(word.substr(0, equals).c_str(), word.substr(equals + 1).c_str(), 1);
  return "";
}

}  // namespace

int main(int argc, char** argv) {
  const std::map<std::string, std::function<std::string()>> words = {
      {"getblas", all_of_getblas},
      {"ehaldb", [] { return one_result(ehaldb); }},
      {"ehucpu", [] { return one_result(ehucpu); }},
      {"ehalmxc", [] { return one_result(ehalmxc); }},
      {"ehumem", [] { return one_result(ehumem); }},
      {"cores", [] { return text(ZORCpuQuery::GetCores()); }},
      {"team", team_size},
      {"one-processor", shrink_affinity},
  };
  std::string line;
  for (int i = 1; i < argc; ++i) {
    const auto known = words.find(argv[i]);
    const std::string answer = known != words.end() ? known->second() : variable(argv[i]);
    if (!answer.empty()) {
      line += (line.empty() ? "" : " ") + answer;
    }
  }
  std::puts(line.c_str());
}
