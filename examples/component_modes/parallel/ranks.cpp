// SPDX-License-Identifier: MIT
#include "parallel/ranks.h"

#include <mpi.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <new>
#include <thread>
#include <utility>

namespace component {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int message_tag = 1;
constexpr int root = 0;
// How long a rank that has failed waits for the others before it ends them.
constexpr std::chrono::seconds patience{4};

int count_of(std::size_t values) {
  if (values > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw std::bad_array_new_length();  // MPI counts in int
  }
  return static_cast<int>(values);
}

// Looks until look() is true, or until `end`. MPI's own waiting keeps a core busy that another rank, where there are
// more of them than cores, or a thread of another rank could use: this one sleeps between looks, the longer it waits the
// longer.
template <class Look>
bool wait_until(const Look& look, Clock::time_point end = Clock::time_point::max()) {
  constexpr std::chrono::microseconds shortest{2};
  constexpr std::chrono::microseconds longest{500};
  for (auto pause = shortest; !look(); pause = std::min(2 * pause, longest)) {
    if (Clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(pause);
  }
  return true;
}

bool is_done(MPI_Request& request) {
  int done = 0;
  MPI_Test(&request, &done, MPI_STATUS_IGNORE);
  return done != 0;
}

void wait(MPI_Request& request) {
  wait_until([&] { return is_done(request); });
}

}  // namespace

// Every request ends in is_done(), which the checker does not take for a wait.
// NOLINTBEGIN(clang-analyzer-optin.mpi.MPI-Checker)

struct Ranks::Sending {
  modal::Array<double> message;
  MPI_Request request = MPI_REQUEST_NULL;
};

Ranks::Ranks(int& argc, char**& argv) {
  int provided = MPI_THREAD_SINGLE;
  MPI_Init_thread(&argc, &argv, MPI_THREAD_FUNNELED, &provided);
  MPI_Comm_rank(MPI_COMM_WORLD, &rank_);
  MPI_Comm_size(MPI_COMM_WORLD, &size_);
}

Ranks::~Ranks() {
  MPI_Finalize();
}

void Ranks::send(int to, modal::Array<double> message) {
  const int count = count_of(message.size());
  Sending& sending = sending_.emplace_back();
  sending.message = std::move(message);
  MPI_Isend(sending.message.data(), count, MPI_DOUBLE, to, message_tag, MPI_COMM_WORLD, &sending.request);
  bytes_sent_ += static_cast<double>(sizeof(double)) * count;
}

modal::Array<double> Ranks::receive(int from) {
  MPI_Message matched = MPI_MESSAGE_NULL;
  MPI_Status status;
  wait_until([&] {
    int found = 0;
    MPI_Improbe(from, message_tag, MPI_COMM_WORLD, &found, &matched, &status);
    return found != 0;
  });
  int count = 0;
  MPI_Get_count(&status, MPI_DOUBLE, &count);
  modal::Array<double> message(static_cast<std::size_t>(count));
  MPI_Mrecv(message.data(), count, MPI_DOUBLE, &matched, &status);
  return message;
}

void Ranks::broadcast(std::span<double> values) {
  MPI_Request request = MPI_REQUEST_NULL;
  MPI_Ibcast(values.data(), count_of(values.size()), MPI_DOUBLE, root, MPI_COMM_WORLD, &request);
  wait(request);
  bytes_sent_ += is_root() ? static_cast<double>(values.size_bytes()) * (size_ - 1) : 0.0;
}

void Ranks::sum(std::span<double> values) {
  MPI_Request request = MPI_REQUEST_NULL;
  MPI_Iallreduce(MPI_IN_PLACE, values.data(), count_of(values.size()), MPI_DOUBLE, MPI_SUM, MPI_COMM_WORLD, &request);
  wait(request);
  bytes_sent_ += size_ > 1 ? static_cast<double>(values.size_bytes()) : 0.0;
}

void Ranks::largest(std::span<double> values) {
  MPI_Request request = MPI_REQUEST_NULL;
  MPI_Iallreduce(MPI_IN_PLACE, values.data(), count_of(values.size()), MPI_DOUBLE, MPI_MAX, MPI_COMM_WORLD, &request);
  wait(request);
  bytes_sent_ += size_ > 1 ? static_cast<double>(values.size_bytes()) : 0.0;
}

modal::Array<double> Ranks::gather(std::span<const double> values) {
  modal::Array<double> all(is_root() ? values.size() * static_cast<std::size_t>(size_) : 0);
  const int count = count_of(values.size());
  MPI_Request request = MPI_REQUEST_NULL;
  MPI_Igather(values.data(), count, MPI_DOUBLE, all.data(), count, MPI_DOUBLE, root, MPI_COMM_WORLD, &request);
  wait(request);
  bytes_sent_ += is_root() ? 0.0 : static_cast<double>(values.size_bytes());
  return all;
}

void Ranks::agree(bool well) {
  if (well) {
    for (Sending& sending : sending_) {
      wait(sending.request);
    }
    sending_.clear();
  }
  const int mine = well ? 0 : 1;
  int worst = 0;
  MPI_Request request = MPI_REQUEST_NULL;
  MPI_Iallreduce(&mine, &worst, 1, MPI_INT, MPI_MAX, MPI_COMM_WORLD, &request);
  const auto end = well ? Clock::time_point::max() : Clock::now() + patience;
  if (!wait_until([&] { return is_done(request); }, end)) {
    MPI_Abort(MPI_COMM_WORLD, EXIT_FAILURE);
  }
  if (worst != 0) {
    throw Stopped();
  }
}

// NOLINTEND(clang-analyzer-optin.mpi.MPI-Checker)

}  // namespace component
