// SPDX-License-Identifier: MIT
// One line of the table: a routine at one size, its peers, what the machine allows, and what is asked of it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zorbench {

// Whether a peer works on the storage that ours works on (packed, say) or on another one (full).
enum class Storage { same, other };

struct Contender {
  std::string library;
  std::string routine;
  Storage storage = Storage::same;
  std::function<void(std::size_t)> run;  // so many calls, one after the other
  std::function<void()> prepare;         // restores what a call destroys; not timed, and then calls are timed singly

  std::string name() const { return routine.empty() ? library : library + " " + routine; }
};

// Ours is to be `least` times as fast as the fastest of those meant.
struct Target {
  // "best": all peers; "same": those with the same storage; "limit": what the machine allows; else a library's or a
  // routine's name.
  std::string of;
  double least = 1.0;

  bool means(const Contender& peer) const {
    return of == "best" || (of == "same" && peer.storage == Storage::same) || peer.routine == of ||
           peer.library.starts_with(of);
  }
};

class Case {
 public:
  // work: what one call does, in units such as flops, bytes, entries; rate: "Gflop/s", "GB/s", "Mentry/s".
  Case(std::string routine, std::string size, double work, std::string rate)
      : routine_(std::move(routine)), size_(std::move(size)), work_(work), rate_(std::move(rate)) {}

  template <class Call>
  void ours(Call call) {
    contenders_.insert(contenders_.begin(), {"ours", "", Storage::same, repeated(std::move(call)), {}});
  }
  template <class Prepare, class Call>
  void ours(Prepare prepare, Call call) {
    contenders_.insert(contenders_.begin(), {"ours", "", Storage::same, repeated(std::move(call)), std::move(prepare)});
  }
  template <class Call>
  void peer(std::string library, std::string routine, Storage storage, Call call) {
    contenders_.push_back({std::move(library), std::move(routine), storage, repeated(std::move(call)), {}});
  }
  template <class Prepare, class Call>
  void peer(std::string library, std::string routine, Storage storage, Prepare prepare, Call call) {
    contenders_.push_back(
        {std::move(library), std::move(routine), storage, repeated(std::move(call)), std::move(prepare)});
  }
  // No call on this machine takes fewer seconds, because of what `name` says.
  void limit(double seconds, std::string name) {
    least_seconds_ = seconds;
    limit_name_ = std::move(name);
  }
  void target(double least, std::string of) { targets_.push_back({std::move(of), least}); }
  void threads(int count) { threads_ = count; }
  void cold() { cold_ = true; }

  const std::string& routine() const { return routine_; }
  const std::string& size() const { return size_; }
  const std::string& rate() const { return rate_; }
  const std::string& limit_name() const { return limit_name_; }
  double least_seconds() const { return least_seconds_; }
  double rate_of(double seconds) const { return work_ / seconds * (rate_.front() == 'G' ? 1e-9 : 1e-6); }
  int thread_count() const { return threads_; }
  bool is_cold() const { return cold_; }
  const std::vector<Contender>& contenders() const { return contenders_; }  // ours first
  const std::vector<Target>& targets() const { return targets_; }

 private:
  template <class Call>
  static std::function<void(std::size_t)> repeated(Call call) {
    return [call = std::move(call)](std::size_t times) mutable {
      for (std::size_t i = 0; i < times; ++i) {
        call();
      }
    };
  }

  std::string routine_;
  std::string size_;
  double work_;
  std::string rate_;
  double least_seconds_ = 0.0;
  std::string limit_name_;
  int threads_ = 1;
  bool cold_ = false;
  std::vector<Contender> contenders_;
  std::vector<Target> targets_;
};

}  // namespace zorbench
