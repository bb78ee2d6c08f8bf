// SPDX-License-Identifier: MIT
#include "ZORTavTraces.h"

namespace {

constexpr int32_t mode = 0;
constexpr const char* output = "STDOUT";
constexpr int32_t buffer_size = 1024;

}  // namespace

ZORTrace Tra_TAVPrint("TAVPrint", "Tavrin traces for listing", mode, output, buffer_size);
ZORTrace Tra_TAVError("TAVError", "Tavrin traces for errors", mode, output, buffer_size);
ZORTrace Tra_TAVCompute("TAVCompute", "Tavrin traces for computation", mode, output, buffer_size);
ZORTrace Tra_TAVDefine("TAVDefine", "Tavrin traces for definition", mode, output, buffer_size);
ZORTrace Tra_TAVStorage("TAVStorage", "Tavrin traces for external storage", mode, output, buffer_size);
ZORTrace Tra_TAVAcquire("TAVAcquire", "Tavrin traces for acquisition", mode, output, buffer_size);
// The title of its neighbour and the blank at the end of the next but one are what people and scripts know them by.
ZORTrace Tra_TAVOutput("TAVOutput", "Tavrin traces for acquisition", mode, output, buffer_size);
ZORTrace Tra_TAVInfra("TAVInfra", "Tavrin traces for infrastructure", mode, output, buffer_size);
ZORTrace Tra_TAVStorageLink("TAVStorageLink", "Tavrin traces for external storage links ", mode, output, buffer_size);
ZORTrace Tra_TAVCpuElapse("TAVCpuElapse", "Tavrin traces for Cpu and Elapses", mode, output, buffer_size);
