// SPDX-License-Identifier: MIT
// accumulated := Σ over the start/stop intervals of (stop point − start point), in seconds.
#include "ZORTavTimer.h"

namespace {

constexpr double seconds_per_100_nanoseconds = 1e-7;
constexpr double milliseconds_per_second = 1000.0;

double elapsed_now() {
  return ZORGetTickCount() / milliseconds_per_second;
}

}  // namespace

ZORTavTimer::ZORTavTimer()
    : cpu_(0), elapsed_(0), running_(0), elapsed_start_(0), cpu_start_(0), process_(ZORGetCurrentProcess()) {}

ZORTavTimer::ZORTavTimer(const ZORTavTimer&) = default;

ZORTavTimer& ZORTavTimer::operator=(const ZORTavTimer&) = default;

ZORTavTimer::~ZORTavTimer() {
  cpu_ = 0;
  elapsed_ = 0;
  running_ = 0;
}

void ZORTavTimer::Start() {
  if (running_ == 0) {
    running_ = 1;
    cpu_start_ = CpuNow();
    elapsed_start_ = elapsed_now();
  }
}

void ZORTavTimer::Stop() {
  if (running_ != 0) {
    elapsed_ += elapsed_now() - elapsed_start_;
    cpu_ += CpuNow() - cpu_start_;
    running_ = 0;
  }
}

void ZORTavTimer::Reset() {
  cpu_ = 0;
  elapsed_ = 0;
  running_ = 0;
  elapsed_start_ = elapsed_now();
  cpu_start_ = CpuNow();
}

double ZORTavTimer::GetCPU() const {
  return running_ != 0 ? CpuNow() - cpu_start_ + cpu_ : cpu_;
}

double ZORTavTimer::GetElapsed() const {
  return running_ != 0 ? elapsed_now() - elapsed_start_ + elapsed_ : elapsed_;
}

double ZORTavTimer::CpuNow() const {
  uint64_t kernel = 0;
  uint64_t user = 0;
  ZORGetProcessTimes(process_, &kernel, &user);
  return FileTimeAdd(kernel, user);
}

double ZORTavTimer::FileTimeAdd(uint64_t first, uint64_t second) {
  return static_cast<double>(first + second) * seconds_per_100_nanoseconds;
}
