/* SPDX-License-Identifier: MIT */
#ifndef ZORTAV_CONFIGURATION_H
#define ZORTAV_CONFIGURATION_H

#include "ZORTAVEntryPoint.h"

ZORTAV_ENTRY void getblas(int32_t* mode, int32_t* reserved1, int32_t* reserved2);
ZORTAV_ENTRY void ehaldb(int32_t* decision);
ZORTAV_ENTRY void ehucpu(int32_t* threads);
ZORTAV_ENTRY void ehalmxc(int32_t* words);
ZORTAV_ENTRY void ehumem(int32_t* words);
ZORTAV_ENTRY void GetMaxSlaveMemory(int32_t* words);
ZORTAV_ENTRY void getversionmkl(char* text, ZORTAV_HIDDEN_LENGTH(text_length));
ZORTAV_ENTRY void clrfpe(void);

#endif
