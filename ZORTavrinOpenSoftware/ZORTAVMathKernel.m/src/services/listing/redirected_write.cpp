// SPDX-License-Identifier: MIT
#include "services/listing/redirected_write.h"

#include <cstdio>

#include "ZORDescriptor.h"
#include "ZORTAVListing.h"
#include "ZORTavListingServices.h"

zortav::ListingRedirection::ListingRedirection() noexcept {
  const std::int32_t log = ZORTavListingServices::GetDescriptor();
  if (log == -1) {
    return;
  }
  // What the stream still holds was meant for standard output.
  eyflsh();
  failed_before_ = std::ferror(stdout) != 0;
  output_ = ZORGetOutputDescriptor();
  saved_ = ZORDuplicateDescriptor(output_);
  replaced_ = saved_ != -1 && ZORReplaceDescriptor(log, output_) == 0;
}

zortav::ListingRedirection::~ListingRedirection() {
  if (replaced_) {
    if (!failed_before_) {
      std::clearerr(stdout);
    }
    ZORReplaceDescriptor(saved_, output_);
  }
  if (saved_ != -1) {
    ZORReleaseDescriptor(saved_);
  }
}
