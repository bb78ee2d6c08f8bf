/* SPDX-License-Identifier: MIT */
/* The solver's large arrays: handed out in groups, counted, and released like a stack. */
#ifndef ZORTAV_MEMORY_MANAGER_H
#define ZORTAV_MEMORY_MANAGER_H

#include "ZORTavTypeEncapMemory.h"

/**
 * Hands out groups of arrays and keeps account of them.
 *
 * Groups. A request for several arrays makes one group, which gets the number GetIndiceAllocation(), counted from 1.
 * Groups are released by number: one together with all that were made after it, which takes the count of groups back,
 * or one alone, which leaves a gap. The manager owns all arrays until then, at the latest until it ends.
 *
 * Lengths. Everything is counted in 8-byte words. n bytes take n / 8 + 1 words, and the block behind an array is one
 * word larger still, so that the array begins at a multiple of 8. The contents of an array are undetermined.
 *
 * Status. Every method that returns an int returns 0 on success and otherwise
 *   8           the request was refused under warning mode;
 *   0x80004005  (negative) it failed.
 * The report (ZORTavErrorTools.h) is written before the return. Nothing stays allocated by a request that is refused or
 * fails, and the group number and, if not stated otherwise, the pointers stay as they were.
 *
 * Failure. A request with a length of 0, or of no arrays, fails with "Null Allocation Length", one with a negative
 * length with "NEGATIVE ALLOCATION LENGTH" and the words summed up to it, modulo 2^32. Where an array is not to be had,
 * the manager finds out how much is, in steps of 5% of the array, *gives up the group made last*, and fails with
 * message 302 of the catalog "ZORTAVMathKernelError", whose parameters 1 and 2 are the requested and the available
 * kilobytes. The same where its own tables cannot grow.
 *
 * Warning mode (SetModeWarning, not 0). An array larger than the allowed allocation (ehalmxc), or not to be had, is
 * refused with the warning that the mode names; mode 1026 names warning 300, whose parameters 1 and 2 are the requested
 * and the allowed or available kilobytes. No earlier group is given up. A negative length is refused as well.
 *
 * All memory comes from ZORUnsecuredMemAlloc and ZORUnsecuredMemRealloc, so that ZORSetMemRefusal (ZORMemory.h) reaches
 * every block, every table and every look for available memory.
 *
 * Threads: a manager is used by one thread at a time; reports are written from one thread.
 */
class ZOR_EXPORT ZORTavMemoryManager {
 public:
  /** A manager whose tables grow by 100 entries at a time. */
  ZORTavMemoryManager();
  /**
   * @param table_size [in] number of blocks that the tables are made for, and that they grow by; below 1 it is taken
   *                   as 100. Where there is no memory for the tables, the first request reports it.
   */
  explicit ZORTavMemoryManager(int table_size);
  /** The copy shares tables and blocks with the other: only one of the two may be destroyed or used any further. */
  ZORTavMemoryManager(const ZORTavMemoryManager& other);
  /** As the copy constructor; what the manager held before is neither released nor owned by anyone any more. */
  ZORTavMemoryManager& operator=(const ZORTavMemoryManager& other);
  /** Releases all groups. */
  virtual ~ZORTavMemoryManager();

  /**
   * Allocates a group of arrays.
   *
   * @param count   [in] number of arrays.
   * @param group   [out] the number of the group.
   * @param arrays  [in,out] array of count pointers, which receive the arrays. Those that a failed request had obtained
   *                are null. It must not hold stale pointers: when length i is negative, what pointers 1 to i − 1 hold
   *                is freed and set to null.
   * @param lengths [in,out] array of count lengths in bytes; on return in words, those behind a length of 0 excepted.
   */
  int Allocation(int count, int& group, char** const& arrays, long long* lengths);

  /**
   * Allocates a group of one to eleven arrays.
   *
   * @param count   [in] number of arrays. Beyond eleven the request fails.
   * @param group   [out] the number of the group.
   * @param array1  [out] ... @param array11 [out] the first count of them receive the arrays.
   * @param length1 [in] ... @param length11 [in] lengths in bytes.
   */
  int Allocation(int count, int& group, char*& array1, long long length1, char*& array2 = NoArray,
                 long long length2 = 0, char*& array3 = NoArray, long long length3 = 0, char*& array4 = NoArray,
                 long long length4 = 0, char*& array5 = NoArray, long long length5 = 0, char*& array6 = NoArray,
                 long long length6 = 0, char*& array7 = NoArray, long long length7 = 0, char*& array8 = NoArray,
                 long long length8 = 0, char*& array9 = NoArray, long long length9 = 0, char*& array10 = NoArray,
                 long long length10 = 0, char*& array11 = NoArray, long long length11 = 0);

  /**
   * Allocates a group of one to eleven typed arrays: `manager.Allocation(group, rows, 100, values, 1000)` with
   * `int* rows` and `double* values`.
   *
   * @param group  [out] the number of the group.
   * @param array1 [out] ... @param array11 [out] handles of the pointer variables that receive the arrays.
   * @param count1 [in] ... @param count11 [in] numbers of elements.
   *
   * The list ends at the first handle that is empty, and at the first count of 0 (or element of no size); if that one's
   * handle is not empty and its count or any later one is not 0, the request fails with "Memory allocation: Array type
   * not recognized". An array of count 0 at the end of the list is none: its pointer variable stays as it was. A length
   * that 64 bits do not hold fails with message 1025 of "ZORTAVMathKernelError", or is refused.
   */
  int Allocation(int& group, const ZORTavTypeEncapMemory& array1, int count1,
                 const ZORTavTypeEncapMemory& array2 = ZORTavTypeEncapMemory(), int count2 = 0,
                 const ZORTavTypeEncapMemory& array3 = ZORTavTypeEncapMemory(), int count3 = 0,
                 const ZORTavTypeEncapMemory& array4 = ZORTavTypeEncapMemory(), int count4 = 0,
                 const ZORTavTypeEncapMemory& array5 = ZORTavTypeEncapMemory(), int count5 = 0,
                 const ZORTavTypeEncapMemory& array6 = ZORTavTypeEncapMemory(), int count6 = 0,
                 const ZORTavTypeEncapMemory& array7 = ZORTavTypeEncapMemory(), int count7 = 0,
                 const ZORTavTypeEncapMemory& array8 = ZORTavTypeEncapMemory(), int count8 = 0,
                 const ZORTavTypeEncapMemory& array9 = ZORTavTypeEncapMemory(), int count9 = 0,
                 const ZORTavTypeEncapMemory& array10 = ZORTavTypeEncapMemory(), int count10 = 0,
                 const ZORTavTypeEncapMemory& array11 = ZORTavTypeEncapMemory(), int count11 = 0);

  /**
   * Releases by group number g:
   *   g > 0  group g and every one made after it; the next group is g again. Beyond the last group nothing happens.
   *   g < 0  group −g alone; the number of the next group stays. A group that is not there is passed over.
   *   g = 0  fails, and nothing happens.
   */
  int Desallocation(int group);
  /** Releases each of the groups alone; numbers below 1 and of no group are passed over. Returns 0. */
  int Desallocation(int count, const int* groups);
  /** Frees the first count pointers with the C runtime's free and sets them to null; for arrays of no manager. Returns
   * 0. */
  int Desallocation(int count, char** const& arrays);
  /** Frees the pointer with the C runtime's free and sets it to null; for an array of no manager. Returns 0. */
  int DestructionElement(char*& array);

  /**
   * Changes the length of the last array of a group, which may move. The contents are kept up to the smaller length.
   *
   * @param group  [in] the group; one that is not there fails.
   * @param array  [in,out] the group's last array, or null.
   * @param length [in] new length in bytes.
   *
   * The new length counts length / 8 words, without a spare one. That there is no memory is not detected: the array is
   * null then, and its old block belongs to nobody.
   */
  int Reallocation(int group, char*& array, long long length);

  /**
   * Makes a new group of one array, copies the old array into it and releases the old group alone.
   *
   * @param group      [in,out] number of the old group, of the new one on success; at least 1.
   * @param array      [in,out] the old array, the new one on success.
   * @param old_length [in] bytes to copy; no more are copied than the new array holds.
   * @param new_length [in] length of the new array in bytes.
   */
  int ManualReallocation(int& group, char*& array, long long old_length, long long new_length);

  /** The number that the next group gets. */
  int GetIndiceAllocation() const;
  /** The most memory that was in use at any time, in words. Releasing does not lower it. */
  float GetMemoryUsed() const;

  /** Sets the number of the warning that a refused request raises; 0 switches warning mode off. */
  void SetModeWarning(int mode);
  /** Switches warning mode off. */
  void ResetModeWarning();

 protected:
  char** BlockTable;      /**< blocks as they were obtained, group by group; null when released */
  long long* LengthTable; /**< their lengths in words */
  int* GroupEndTable;     /**< last block of each group; group 0 ends at -1 */
  int TableCapacity;      /**< entries that the tables are meant to have */
  int GroupCount;         /**< the last group */
  int PeakGroupCount;     /**< the largest GroupCount so far */

 private:
  // Entries that all three tables have. Behind TableCapacity only after they could not grow. It fills a gap between the
  // fields, whose places are part of the binary interface.
  int table_room_;

 protected:
  long long GrowthStep;     /**< entries that the tables grow by */
  long long MemoryUsed;     /**< words in use */
  long long PeakMemoryUsed; /**< the largest MemoryUsed so far */
  int ModeWarning;          /**< number of the warning of a refused request; 0: off */
  /**
   * 1: every array has a block of its own. A derived manager may set 0: the arrays of a request are laid back to back
   * into one block, if there is memory for it. Under warning mode such a request, as a whole, is then refused without a
   * report when it is larger than the allowed allocation.
   */
  int SeparateBlocks;

 private:
  struct Request;

  int ExtensionTable();
  int ResizeTables();
  int MakeRoom(long long entry);
  int LastBlock() const;
  int ReportTableFailure();
  int RefuseNegativeLength(long long sum) const;
  int AllocateOneBlock(Request& request);
  int AllocateBlocks(Request& request);
  int FailedBlock(Request& request, int i);
  void TakeBack(Request& request, int count);
  void ReleaseAlone(long long group);
  void ReleaseBlocks(int first, int last);

  // Stands for a pointer that is not given; never written.
  static char* NoArray;
};

#endif
