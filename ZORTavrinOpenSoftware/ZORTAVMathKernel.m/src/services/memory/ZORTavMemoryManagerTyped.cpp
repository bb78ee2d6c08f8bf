// SPDX-License-Identifier: MIT
// A group of one to eleven typed arrays, each given by its handle and its number of elements.
#include <algorithm>
#include <cstring>

#include "ZORTavMemoryManager.h"
#include "services/memory/memory_messages.h"

namespace {

constexpr int most_arrays = 11;

// bytes := count·size; false when 64 bits do not hold the product, which counts of 32 bits cannot bring about.
bool multiply(long long count, long long size, long long& bytes) {
  bytes = static_cast<long long>(static_cast<unsigned long long>(count) * static_cast<unsigned long long>(size));
  return size == 0 || bytes / size == count;
}

}  // namespace

int ZORTavMemoryManager::Allocation(
    int& group, const ZORTavTypeEncapMemory& array1, int count1, const ZORTavTypeEncapMemory& array2, int count2,
    const ZORTavTypeEncapMemory& array3, int count3, const ZORTavTypeEncapMemory& array4, int count4,
    const ZORTavTypeEncapMemory& array5, int count5, const ZORTavTypeEncapMemory& array6, int count6,
    const ZORTavTypeEncapMemory& array7, int count7, const ZORTavTypeEncapMemory& array8, int count8,
    const ZORTavTypeEncapMemory& array9, int count9, const ZORTavTypeEncapMemory& array10, int count10,
    const ZORTavTypeEncapMemory& array11, int count11) {
  const ZORTavTypeEncapMemory* const handles[most_arrays] = {&array1, &array2, &array3, &array4,  &array5, &array6,
                                                             &array7, &array8, &array9, &array10, &array11};
  const int counts[most_arrays] = {count1, count2, count3, count4,  count5, count6,
                                   count7, count8, count9, count10, count11};
  long long bytes[most_arrays] = {};
  int given = 0;
  for (; given < most_arrays && !handles[given]->IsEmpty() && counts[given] != 0; ++given) {
    if (!multiply(counts[given], handles[given]->GetTavrinSizeOfPointedType(), bytes[given])) {
      if (ModeWarning != 0) {
        return zortav::refuse(ModeWarning);
      }
      ZORTavErrorTools::CreateError(zortav::size_overflow_message, zortav::kernel_catalog);
      return E_FAIL;
    }
    if (bytes[given] == 0) {
      break;
    }
  }
  // The handle that the list ends at is asked for all that follow: callers rely on what comes after an empty one being
  // ignored.
  const auto is_given = [](int count) { return count != 0; };
  if (given < most_arrays && !handles[given]->IsEmpty() &&
      std::any_of(counts + given, counts + most_arrays, is_given)) {
    return zortav::fail("Memory allocation: Array type not recognized");
  }
  char* arrays[most_arrays] = {};
  const int status = Allocation(given, group, arrays[0], bytes[0], arrays[1], bytes[1], arrays[2], bytes[2], arrays[3],
                                bytes[3], arrays[4], bytes[4], arrays[5], bytes[5], arrays[6], bytes[6], arrays[7],
                                bytes[7], arrays[8], bytes[8], arrays[9], bytes[9], arrays[10], bytes[10]);
  if (status == 0) {
    for (int i = 0; i < given; ++i) {
      // The variable is a pointer of another type.
      std::memcpy(static_cast<void*>(static_cast<char**>(*handles[i])), static_cast<const void*>(&arrays[i]),
                  sizeof arrays[i]);
    }
  }
  return status;
}
