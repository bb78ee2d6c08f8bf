// SPDX-License-Identifier: MIT
#include "parallel/ranks.h"

#include <mpi.h>

#include <chrono>
#include <cstdlib>
#include <limits>
#include <new>
#include <thread>

namespace component {
namespace {

constexpr int message_tag = 1;
constexpr int root = 0;
// How long a rank that has failed waits for the others before it ends them.
constexpr std::chrono::seconds patience{4};
constexpr std::chrono::milliseconds between_looks{5};

int count_of(std::size_t values) {
  if (values > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw std::bad_array_new_length();  // MPI counts in int
  }
  return static_cast<int>(values);
}

}  // namespace

Ranks::Ranks(int& argc, char**& argv) {
  int provided = MPI_THREAD_SINGLE;
  MPI_Init_thread(&argc, &argv, MPI_THREAD_FUNNELED, &provided);
  MPI_Comm_rank(MPI_COMM_WORLD, &rank_);
  MPI_Comm_size(MPI_COMM_WORLD, &size_);
}

Ranks::~Ranks() {
  MPI_Finalize();
}

void Ranks::send(int to, std::span<const double> message) {
  MPI_Send(message.data(), count_of(message.size()), MPI_DOUBLE, to, message_tag, MPI_COMM_WORLD);
  bytes_sent_ += static_cast<double>(message.size_bytes());
}

modal::Array<double> Ranks::receive(int from) {
  MPI_Message matched = MPI_MESSAGE_NULL;
  MPI_Status status;
  int count = 0;
  MPI_Mprobe(from, message_tag, MPI_COMM_WORLD, &matched, &status);
  MPI_Get_count(&status, MPI_DOUBLE, &count);
  modal::Array<double> message(static_cast<std::size_t>(count));
  MPI_Mrecv(message.data(), count, MPI_DOUBLE, &matched, &status);
  return message;
}

void Ranks::broadcast(std::span<double> values) {
  MPI_Bcast(values.data(), count_of(values.size()), MPI_DOUBLE, root, MPI_COMM_WORLD);
  bytes_sent_ += is_root() ? static_cast<double>(values.size_bytes()) * (size_ - 1) : 0.0;
}

void Ranks::sum(std::span<double> values) {
  MPI_Allreduce(MPI_IN_PLACE, values.data(), count_of(values.size()), MPI_DOUBLE, MPI_SUM, MPI_COMM_WORLD);
  bytes_sent_ += size_ > 1 ? static_cast<double>(values.size_bytes()) : 0.0;
}

void Ranks::largest(std::span<double> values) {
  MPI_Allreduce(MPI_IN_PLACE, values.data(), count_of(values.size()), MPI_DOUBLE, MPI_MAX, MPI_COMM_WORLD);
  bytes_sent_ += size_ > 1 ? static_cast<double>(values.size_bytes()) : 0.0;
}

modal::Array<double> Ranks::gather(std::span<const double> values) {
  modal::Array<double> all(is_root() ? values.size() * static_cast<std::size_t>(size_) : 0);
  const int count = count_of(values.size());
  MPI_Gather(values.data(), count, MPI_DOUBLE, all.data(), count, MPI_DOUBLE, root, MPI_COMM_WORLD);
  bytes_sent_ += is_root() ? 0.0 : static_cast<double>(values.size_bytes());
  return all;
}

void Ranks::agree(bool well) {
  const int mine = well ? 0 : 1;
  int worst = 0;
  MPI_Request request = MPI_REQUEST_NULL;
  MPI_Iallreduce(&mine, &worst, 1, MPI_INT, MPI_MAX, MPI_COMM_WORLD, &request);
  if (well) {
    MPI_Wait(&request, MPI_STATUS_IGNORE);
  } else {
    const auto end = std::chrono::steady_clock::now() + patience;
    for (int done = 0; done == 0;) {
      MPI_Test(&request, &done, MPI_STATUS_IGNORE);
      if (done == 0 && std::chrono::steady_clock::now() > end) {
        MPI_Abort(MPI_COMM_WORLD, EXIT_FAILURE);
      }
      std::this_thread::sleep_for(between_looks);
    }
  }
  if (worst != 0) {
    throw Stopped();
  }
}

}  // namespace component
