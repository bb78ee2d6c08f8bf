// SPDX-License-Identifier: MIT
// A group of one to eleven arrays, each given by its pointer and its length.
#include "ZORTavMemoryManager.h"

namespace {

constexpr int most_arrays = 11;

}  // namespace

int ZORTavMemoryManager::Allocation(int count, int& group, char*& array1, long long length1, char*& array2,
                                    long long length2, char*& array3, long long length3, char*& array4,
                                    long long length4, char*& array5, long long length5, char*& array6,
                                    long long length6, char*& array7, long long length7, char*& array8,
                                    long long length8, char*& array9, long long length9, char*& array10,
                                    long long length10, char*& array11, long long length11) {
  // One more, of length 0: a request for more than eleven arrays fails there.
  long long lengths[most_arrays + 1] = {length1, length2, length3, length4,  length5,  length6,
                                        length7, length8, length9, length10, length11, 0};
  char* arrays[most_arrays + 1] = {};
  const int status = Allocation(count, group, arrays, lengths);
  if (status == 0) {
    char** const pointers[most_arrays] = {&array1, &array2, &array3, &array4,  &array5, &array6,
                                          &array7, &array8, &array9, &array10, &array11};
    for (int i = 0; i < count; ++i) {
      *pointers[i] = arrays[i];
    }
  }
  return status;
}
