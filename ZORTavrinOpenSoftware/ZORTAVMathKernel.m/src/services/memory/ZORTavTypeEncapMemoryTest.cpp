// SPDX-License-Identifier: MIT
// The self-test of the memory manager: a request of six arrays of the five element types, each filled to its end.
#include <algorithm>
#include <iterator>
#include <numeric>

#include "ZORTavMemoryManager.h"

int ZORTavTypeEncapMemory::Test() {
  constexpr int table_size = 100;
  static char text1[] = "toto";
  static char text2[] = "calimero";
  static char text3[] = "agatha";
  static char text4[] = "tintin";
  static char text5[] = "g\xe9g\xe9";  // Latin-1
  char* const contents[] = {text1, text2, text3, text4, text5};
  constexpr int texts_count = static_cast<int>(std::size(contents));
  constexpr int integers1_count = 100;
  constexpr int reals4_count = 44;
  constexpr int integers2_count = 31;
  constexpr int reals8_count = 110;
  constexpr int characters_count = 10;

  char** texts = nullptr;
  int* integers1 = nullptr;
  float* reals4 = nullptr;
  int* integers2 = nullptr;
  double* reals8 = nullptr;
  char* characters = nullptr;
  int group = 0;
  ZORTavMemoryManager manager(table_size);
  const int status = manager.Allocation(group, texts, texts_count, integers1, integers1_count, reals4, reals4_count,
                                        integers2, integers2_count, reals8, reals8_count, characters, characters_count);
  if (status == 0) {
    std::copy_n(contents, texts_count, texts);
    std::iota(integers1, integers1 + integers1_count, 1);
    std::iota(reals4, reals4 + reals4_count, 1.0F);
    std::iota(integers2, integers2 + integers2_count, 1);
    std::iota(reals8, reals8 + reals8_count, 1.0);
    std::fill_n(characters, characters_count, 'a');
  }
  return status;
}
