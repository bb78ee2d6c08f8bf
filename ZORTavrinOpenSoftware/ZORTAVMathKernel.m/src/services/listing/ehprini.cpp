// SPDX-License-Identifier: MIT
#include "ZORTAVListing.h"
#include "ZORTavTraces.h"
#include "services/listing/redirected_write.h"

void ehprini(const char* text, const int32_t* value) {
  zortav::redirected_write(Tra_TAVPrint, [&] { Tra_TAVPrint.TraPutLN(text, *value); });
  zortav::redirected_write(Tra_TAVPrint, [] { Tra_TAVPrint.TraPutLN("\n"); });
}
