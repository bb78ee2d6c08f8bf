// SPDX-License-Identifier: MIT
// (index; x, y, z) of one entity.
#include "ZORSamOctree.h"

ZORSamOctinfo::ZORSamOctinfo() : x(0), y(0), z(0), index(0) {}

ZORSamOctinfo::ZORSamOctinfo(const ZORSamOctinfo&) = default;

ZORSamOctinfo::ZORSamOctinfo(uint32_t entity, double at_x, double at_y, double at_z)
    : x(at_x), y(at_y), z(at_z), index(entity) {}

ZORSamOctinfo& ZORSamOctinfo::operator=(const ZORSamOctinfo&) = default;

ZORSamOctinfo::~ZORSamOctinfo() {
  x = 0;
  y = 0;
  z = 0;
  index = 0;
}
