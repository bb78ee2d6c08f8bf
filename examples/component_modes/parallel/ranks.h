// SPDX-License-Identifier: MIT
// The processes of a run: who this one is, messages between them, and how all of them end when one fails.
#pragma once

#include <exception>
#include <span>
#include <string>

#include "services/array_memory.h"

namespace component {

// A rank has failed; the rank concerned has said why.
struct Stopped : std::exception {};

class Ranks {
 public:
  // Starts MPI; the end of the one object ends it.
  Ranks(int& argc, char**& argv);
  ~Ranks();
  Ranks(const Ranks&) = delete;
  Ranks& operator=(const Ranks&) = delete;

  int rank() const { return rank_; }
  int size() const { return size_; }
  bool is_root() const { return rank_ == 0; }

  // Messages between two ranks arrive in the order in which they were sent.
  void send(int to, std::span<const double> message);
  modal::Array<double> receive(int from);

  // Called by all ranks together.
  void broadcast(std::span<double> values);                     // the root's values to all
  void sum(std::span<double> values);                           // every rank has the sums
  void largest(std::span<double> values);                       // every rank has the largest values
  modal::Array<double> gather(std::span<const double> values);  // at the root: the values of all ranks, equally many

  // What this rank has handed to MPI for others: a message once for every receiver, whatever way MPI sends it.
  double bytes_sent() const { return bytes_sent_; }

  // Called by all ranks together: throws Stopped on all of them when one is not well. A rank that is not well waits
  // some seconds for the others, which may be in the middle of long work or waiting for its message; then it ends them.
  void agree(bool well);

 private:
  int rank_ = 0;
  int size_ = 1;
  double bytes_sent_ = 0.0;
};

}  // namespace component
