/* SPDX-License-Identifier: MIT */
/* Every plain entry point of the library, for C and C++. */
#ifndef ZORTAV_MATH_KERNEL_H
#define ZORTAV_MATH_KERNEL_H

#include "ZORTAVConfiguration.h"
#include "ZORTAVEigenSolver.h"
#include "ZORTAVErrorReporting.h"
#include "ZORTAVFactorization.h"
#include "ZORTAVInstructionSet.h"
#include "ZORTAVInversion.h"
#include "ZORTAVListing.h"
#include "ZORTAVMatrixProduct.h"
#include "ZORTAVMatrixUtilities.h"
#include "ZORTAVMatrixVectorProduct.h"
#include "ZORTAVPackedSolves.h"
#include "ZORTAVSparseKernels.h"
#include "ZORTAVSparsePatterns.h"
#include "ZORTAVVectorKernels.h"

#endif
