// SPDX-License-Identifier: MIT
#include "ZORTAVListing.h"
#include "ZORTavTraces.h"
#include "services/listing/redirected_write.h"

void ehprint(const char* text) {
  zortav::redirected_write(Tra_TAVPrint, [&] { Tra_TAVPrint.TraPutLN(text); });
}
