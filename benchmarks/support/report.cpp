// SPDX-License-Identifier: MIT
#include "support/report.h"

#include <algorithm>
#include <cstdarg>
#include <cstdlib>

#include "support/blas_library.h"

namespace zorbench {
namespace {

// A ratio within this of its target is noise, not a miss.
constexpr double tolerance = 0.02;

[[gnu::format(printf, 1, 2)]] std::string text(const char* format, ...) {
  char buffer[256];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  return buffer;
}

// The fastest of the peers that `wanted` accepts, 0 when there is none.
template <class Wanted>
std::size_t fastest(const Case& c, const std::vector<Timing>& timings, Wanted wanted) {
  std::size_t best = 0;
  for (std::size_t i = 1; i < timings.size(); ++i) {
    if (wanted(c.contenders()[i]) && (best == 0 || timings[i].ratio < timings[best].ratio)) {
      best = i;
    }
  }
  return best;
}

// Named targets are over OpenBLAS's AVX-512 kernels, where the processor has AVX-512; "best" and "same" over both choices.
std::size_t named_peer(const Case& c, const std::vector<Timing>& timings, const Target& target) {
  const auto meant = [&](const Contender& peer) { return target.means(peer); };
  const bool any_choice = target.of == "best" || target.of == "same";
  const std::size_t peer = fastest(c, timings, [&](const Contender& other) {
    return meant(other) && (any_choice || other.library != "OpenBLAS-Haswell");
  });
  return peer != 0 ? peer : fastest(c, timings, meant);
}

std::string ratio_text(const Case& c, const std::vector<Timing>& timings, std::size_t peer) {
  return peer == 0 ? "-" : text("%.2f %s", timings[peer].ratio, c.contenders()[peer].name().c_str());
}

std::string limit_text(const Case& c, const std::vector<Timing>& timings) {
  return c.least_seconds() == 0.0
             ? "-"
             : text("%.0f%% %s", 100.0 * c.least_seconds() / timings[0].seconds, c.limit_name().c_str());
}

}  // namespace

Report::Report(const Options& options) : options_(options) {
  if (!options_.csv.empty()) {
    csv_ = std::fopen(options_.csv.c_str(), "w");
    if (csv_ == nullptr) {
      std::perror(options_.csv.c_str());
      std::exit(1);
    }
    std::fputs("routine,size,threads,data,contender,storage,seconds,rate,unit,ratio,samples,limit_share,limit\n", csv_);
  }
  std::printf("%-11s %-22s %s %-4s %16s  %-32s %-32s %-24s %s\n", "routine", "size", "thr", "data", "ours",
              "over same storage", "over all", "of the limit", "targets; all peers");
}

Report::~Report() {
  if (csv_ != nullptr) {
    std::fclose(csv_);
  }
}

bool Report::wants(const std::string& routine) const {
  return options_.routines.empty() ||
         std::any_of(options_.routines.begin(), options_.routines.end(),
                     [&](const std::string& beginning) { return routine.starts_with(beginning); });
}

void Report::measure(const Case& c) {
  set_threads_of_all(c.thread_count());
  const std::vector<Timing> timings = zorbench::measure(c, options_.quick ? quick_effort : full_effort);
  set_threads_of_all(1);
  print_line(c, timings);
  if (csv_ != nullptr) {
    print_csv(c, timings);
  }
}

std::string Report::verdicts(const Case& c, const std::vector<Timing>& timings) {
  std::string all;
  for (const Target& target : c.targets()) {
    double reached = 0.0;
    bool disturbed = timings[0].disturbed;
    if (target.of == "limit") {
      reached = c.least_seconds() / timings[0].seconds;
    } else {
      const std::size_t peer = named_peer(c, timings, target);
      if (peer == 0) {
        continue;
      }
      reached = timings[peer].ratio;
      disturbed = disturbed || timings[peer].disturbed;
    }
    const bool met = reached >= target.least - tolerance;
    const char* const verdict = disturbed ? "disturbed" : met ? "met" : "MISSED";
    all += text("%s %.2f of %s: %.2f;  ", verdict, target.least, target.of.c_str(), reached);
    if (disturbed) {
      ++undecided_;
    } else if (met) {
      ++met_;
    } else {
      missed_.push_back(
          {reached / target.least,
           text("%-11s %-22s %d %-4s  %.2f instead of %.2f of %s", c.routine().c_str(), c.size().c_str(),
                c.thread_count(), c.is_cold() ? "cold" : "warm", reached, target.least, target.of.c_str())});
    }
  }
  return all;
}

void Report::print_line(const Case& c, const std::vector<Timing>& timings) {
  const std::size_t same = fastest(c, timings, [](const Contender& peer) { return peer.storage == Storage::same; });
  const std::size_t all = fastest(c, timings, [](const Contender&) { return true; });
  std::printf("%-11s %-22s %3d %-4s %16s  %-32s %-32s %-24s ", c.routine().c_str(), c.size().c_str(), c.thread_count(),
              c.is_cold() ? "cold" : "warm", text("%.4g %s", c.rate_of(timings[0].seconds), c.rate().c_str()).c_str(),
              ratio_text(c, timings, same).c_str(), ratio_text(c, timings, all).c_str(),
              limit_text(c, timings).c_str());
  std::printf("%s[", verdicts(c, timings).c_str());
  for (std::size_t i = 1; i < timings.size(); ++i) {
    std::printf("%s%s %.4g", i == 1 ? "" : ", ", c.contenders()[i].name().c_str(), c.rate_of(timings[i].seconds));
  }
  std::printf("]\n");
  std::fflush(stdout);
}

void Report::print_csv(const Case& c, const std::vector<Timing>& timings) const {
  for (std::size_t i = 0; i < timings.size(); ++i) {
    const Contender& contender = c.contenders()[i];
    std::fprintf(csv_, "%s,\"%s\",%d,%s,%s,%s,%.4g,%.5g,%s,%.4f,%zu,%.4f,%s\n", c.routine().c_str(), c.size().c_str(),
                 c.thread_count(), c.is_cold() ? "cold" : "warm", contender.name().c_str(),
                 contender.storage == Storage::same ? "same" : "other", timings[i].seconds,
                 c.rate_of(timings[i].seconds), c.rate().c_str(), timings[i].ratio, timings[i].samples,
                 c.least_seconds() / timings[i].seconds, c.limit_name().c_str());
  }
  std::fflush(csv_);
}

void Report::summary() const {
  std::vector<Miss> misses = missed_;
  std::stable_sort(misses.begin(), misses.end(), [](const Miss& a, const Miss& b) { return a.share < b.share; });
  std::printf("\n%zu targets met, %zu missed", met_, misses.size());
  if (undecided_ != 0) {
    std::printf(", %zu undecided: other programs disturbed every sample of two threads", undecided_);
  }
  std::printf("\n");
  for (const Miss& miss : misses) {
    std::printf("  %3.0f%%  %s\n", 100.0 * miss.share, miss.text.c_str());
  }
}

}  // namespace zorbench
