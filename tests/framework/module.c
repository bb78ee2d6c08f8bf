/* SPDX-License-Identifier: MIT */
/* A shared library for the loader's test. */
int zortav_test_entry(void);

int zortav_test_entry(void) {
  return 4711;
}
