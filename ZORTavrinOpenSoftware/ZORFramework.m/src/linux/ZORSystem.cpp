// SPDX-License-Identifier: MIT
#include "ZORSystem.h"

#include <cstdlib>

const char* ZORGetEnv(const char* name) { return std::getenv(name); }
