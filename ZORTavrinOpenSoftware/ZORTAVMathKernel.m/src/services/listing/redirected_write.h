// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "ZORTrace.h"

namespace zortav {

// The level of everything that is written into the listing.
inline constexpr std::int32_t listing_level = 2;

// While it lives, standard output leads into the solver log, if one is open. What others have written to the stream
// before still goes to standard output. Where the descriptors are not to be had nothing is redirected. That the log could
// not be written, on a full disk say, is not held against the stream afterwards.
class ListingRedirection {
 public:
  ListingRedirection() noexcept;
  ListingRedirection(const ListingRedirection&) = delete;
  ListingRedirection& operator=(const ListingRedirection&) = delete;
  ~ListingRedirection();

 private:
  std::int32_t output_ = -1;
  std::int32_t saved_ = -1;
  bool replaced_ = false;
  bool failed_before_ = false;
};

// One write into the listing: calls write() with standard output redirected and the channel at the listing's level.
// Each write stands alone, so that a second one follows the log wherever it has moved.
template <class Write>
void redirected_write(ZORTrace& channel, Write write) noexcept {
  const ListingRedirection into_log;
  channel.SetLevel(listing_level);
  write();
}

// One write of a text as it stands.
inline void redirected_put(ZORTrace& channel, const char* text) noexcept {
  redirected_write(channel, [&] { channel.TraPut(text); });
}

}  // namespace zortav
