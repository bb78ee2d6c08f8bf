// SPDX-License-Identifier: MIT
#include "ZORTAVListing.h"
#include "ZORTavTraces.h"
#include "services/listing/redirected_write.h"

void ehprinr(const char* format, const double* value) {
  {
    // TraPrint brings its level along; the channel's own is left alone.
    const zortav::ListingRedirection into_log;
    Tra_TAVPrint.TraPrint(zortav::listing_level, format, *value);
  }
  zortav::redirected_write(Tra_TAVPrint, [] { Tra_TAVPrint.TraPutLN("\n"); });
}
