// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <ctime>

#include "ZORSystem.h"
#include "ZORTavTimer.h"
#include "services/timing/date_text.h"

void TavGetDate(char*& text) {
  text = static_cast<char*>(std::malloc(zortav::date_text_size));
  if (text != nullptr) {
    std::tm now{};
    ZORGetLocalTime(&now);
    zortav::write_date_text(now, text);
  }
}
