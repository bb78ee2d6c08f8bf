// SPDX-License-Identifier: MIT
// A million random operations on a manager and on the model of it: status, reports, sums, and the bytes of every array.
// ZORTAV_TEST_OPERATIONS: how many for each of the five seeds (default 200000).
#include "memory_model.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ZORTAVListing.h"
#include "long/seeds.h"
#include "services/managed_memory.h"
#include "support/numbers.h"
#include "test_system.h"

namespace {

using zortest::MemoryModel;
using zortest::Random;

// An array that was handed out, its mark at both of its ends.
struct Array {
  char* begin = nullptr;
  std::size_t bytes = 0;
  int mark = 0;
  bool beside_empty = false;  // a request of -1 to -7 bytes has a word, too, and may stand before it in its block

  std::size_t marked() const { return std::min<std::size_t>(bytes, 256); }
  void make_mark() const {
    std::memset(begin, mark, marked());
    std::memset(begin + bytes - marked(), mark, marked());
  }
  bool intact(std::size_t first_bytes) const {
    return std::all_of(begin, begin + std::min(marked(), first_bytes),
                       [this](char c) { return c == static_cast<char>(mark); });
  }
  bool intact() const {
    return intact(bytes) && std::all_of(begin + bytes - marked(), begin + bytes,
                                        [this](char c) { return c == static_cast<char>(mark); });
  }
};

// Raw memory up to a size; what is reported is kept and not printed.
class MemoryModelTest : public testing::Test {
 protected:
  MemoryModelTest() {
    zortav::test::write(catalogs_ / "ZORTAVMathKernelError_en.json",
                        R"({"ERR_0302": {"diagnostic": "/p1 /p2"}, "WARN_0300": {"diagnostic": "/p1 /p2"},
                            "WARN_0777": {"diagnostic": "no figures"}, "WARN_1026": {"diagnostic": "no figures"}})");
    zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", catalogs_.path());
    zortest::set_variable("LC_ALL", "C");
    zortest::set_variable("TAV_MAX_ALLOC", "1");
    ZORTAVTraceState("TAVPrint", 0);
    SetErrorLog(
        [](ZORTavError* error) { report_ += std::string(error->GetMsgId()) + " " + error->GetNLSMessage().GetText(); });
    ZORSetMemRefusal([](void*, std::size_t bytes) { return bytes > MemoryModel::most_bytes; }, nullptr);
  }
  ~MemoryModelTest() override {
    ZORSetMemRefusal(nullptr, nullptr);
    SetErrorLog(nullptr);
    ZORTAVTraceState("TAVPrint", 1);
    zortest::remove_variable("ZOR_MESSAGE_CATALOG_PATH");
    zortest::remove_variable("TAV_MAX_ALLOC");
  }

  void run(std::uint64_t seed, int operations) {
    Random random(seed);
    zortest::Manager manager(random.integer(1, 40));
    model_ = MemoryModel();
    arrays_.clear();
    int mode = 0;
    for (int i = 0; i < operations && !HasFailure(); ++i) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", operation " + std::to_string(i));
      const int kind = random.integer(1, 100);
      if (kind <= 60) {
        request(random, manager, mode);
      } else if (kind <= 90) {
        release(random, manager);
      } else if (kind <= 98) {
        reallocate(random, manager, mode);
      } else {
        constexpr int modes[] = {0, 777, MemoryModel::mode_with_sizes};
        mode = modes[random.integer(0, 2)];
        manager.SetModeWarning(mode);
        manager.SeparateBlocks = random.integer(0, 1);
      }
      ASSERT_EQ(manager.GetIndiceAllocation(), model_.count() + 1);
      ASSERT_EQ(manager.MemoryUsed, model_.used);
      ASSERT_EQ(manager.GetMemoryUsed(), static_cast<float>(model_.peak));
      if (i % 256 == 0) {
        expect_same_tables(manager);
      }
    }
  }

 private:
  static long long length(Random& random) {
    const int kind = random.integer(1, 1000);
    return kind <= 2    ? 0
           : kind <= 4  ? random.integer(-40, -1)
           : kind <= 12 ? random.integer(900000, 4000000)
           : kind <= 13 ? (1LL << 34) + random.integer(0, 1 << 20)
                        : random.integer(1, 900);
  }

  // Marks the arrays of the group made last; forgets those of groups that are no more.
  void note_arrays(const std::vector<char*>& arrays, const std::vector<long long>& bytes) {
    arrays_.emplace_back();
    const bool empty = std::any_of(bytes.begin(), bytes.end(), [](long long b) { return b < 1; });
    for (std::size_t i = 0; i < arrays.size(); ++i) {
      ASSERT_EQ(reinterpret_cast<std::uintptr_t>(arrays[i]) % 8, 0U);
      if (bytes[i] > 0) {
        arrays_.back().push_back({arrays[i], static_cast<std::size_t>(bytes[i]), ++mark_ % 251 + 1, empty});
        arrays_.back().back().make_mark();
      }
    }
  }
  void check_arrays(int group) const {
    for (const Array& array : arrays_[static_cast<std::size_t>(group) - 1]) {
      ASSERT_TRUE(array.intact());
    }
  }
  void expect(int status, const MemoryModel::Outcome& outcome) {
    EXPECT_EQ(status, outcome.status);
    EXPECT_EQ(report_, outcome.report);
    report_.clear();
  }

  void request(Random& random, zortest::Manager& manager, int mode) {
    std::vector<long long> bytes(static_cast<std::size_t>(random.integer(random.integer(0, 30) == 0 ? 0 : 1, 11)));
    std::generate(bytes.begin(), bytes.end(), [&] { return length(random); });
    std::vector<long long> words = bytes;
    if (model_.count() > 0) {
      check_arrays(model_.count());  // it may be given up
    }
    const MemoryModel::Outcome outcome = model_.allocate(words, mode, manager.SeparateBlocks != 0);
    arrays_.resize(std::min(arrays_.size(), model_.groups.size()));
    expect(manager.allocate(bytes), outcome);
    if (outcome.status == 0) {
      EXPECT_EQ(manager.group, model_.count());
      note_arrays(manager.arrays, bytes);
    } else {
      EXPECT_EQ(manager.arrays, std::vector<char*>(bytes.size()));
    }
  }

  void release(Random& random, zortest::Manager& manager) {
    const int all = model_.count();
    // Rarely a deep one: the groups become many.
    const int group = random.integer(0, 40) == 0 ? random.integer(-2, all + 2) : random.integer(all - 4, all + 1);
    const bool alone = random.integer(0, 2) == 0;
    if (group < 1) {
      EXPECT_EQ(manager.Desallocation(0), E_FAIL);
      EXPECT_EQ(manager.Desallocation(1, &group), 0);
      return;
    }
    for (int g = group; g <= (alone ? std::min(group, all) : all); ++g) {
      check_arrays(g);
      arrays_[static_cast<std::size_t>(g) - 1].clear();
    }
    if (alone) {
      EXPECT_EQ(group % 2 == 0 ? manager.Desallocation(-group) : manager.Desallocation(1, &group), 0);
      model_.release_alone(group);
    } else {
      EXPECT_EQ(manager.Desallocation(group), 0);
      model_.release_from(group);
      arrays_.resize(model_.groups.size());
    }
  }

  // The last array of a group that still has it, in place or by way of a new group.
  void reallocate(Random& random, zortest::Manager& manager, int mode) {
    int group = random.integer(1, std::max(model_.count(), 1));
    if (group > model_.count()) {
      EXPECT_EQ(manager.Reallocation(group, manager.arrays.emplace_back(), 8), E_FAIL);
      return;
    }
    auto& arrays = arrays_[static_cast<std::size_t>(group) - 1];
    const std::size_t blocks = model_.groups[static_cast<std::size_t>(group) - 1].size();
    if (arrays.empty() || arrays.size() != blocks || arrays.back().beside_empty) {
      return;  // released, of no bytes, or all in one block
    }
    Array old = arrays.back();
    char* array = old.begin;
    const long long bytes = random.integer(1, 900);
    const auto kept = std::min(old.bytes, static_cast<std::size_t>(bytes));
    if (random.integer(0, 1) == 0) {
      EXPECT_EQ(manager.Reallocation(group, array, bytes), 0);
      model_.resize_last(group, bytes);
    } else {
      const int old_group = group;
      check_arrays(old_group);
      std::vector<long long> words{bytes};
      const MemoryModel::Outcome outcome = model_.allocate(words, mode, manager.SeparateBlocks != 0);
      expect(manager.ManualReallocation(group, array, static_cast<long long>(old.bytes), bytes), outcome);
      EXPECT_EQ(group, model_.count());
      model_.release_alone(old_group);
      arrays.clear();
      arrays_.emplace_back(1);
    }
    Array& fresh = arrays_[static_cast<std::size_t>(group) - 1].back();
    fresh = {array, static_cast<std::size_t>(bytes), old.mark};
    ASSERT_TRUE(fresh.intact(kept));
    fresh.make_mark();
  }

  void expect_same_tables(const zortest::Manager& manager) const {
    std::vector<long long> lengths;
    for (int group = 1; group <= model_.count(); ++group) {
      check_arrays(group);
      for (const MemoryModel::Block& block : model_.groups[static_cast<std::size_t>(group) - 1]) {
        lengths.push_back(block.words);
      }
    }
    ASSERT_EQ(manager.blocks(), lengths);
  }

  const zortav::test::ScratchFolder catalogs_;
  static inline std::string report_;
  MemoryModel model_;
  std::vector<std::vector<Array>> arrays_;  // by group
  int mark_ = 0;
};

TEST_F(MemoryModelTest, AMillionOperations) {
  const char* const given = std::getenv("ZORTAV_TEST_SEED");
  const std::uint64_t changing =
      given != nullptr ? std::strtoull(given, nullptr, 10)
                       : static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
  std::printf("changing seed: %llu\n", static_cast<unsigned long long>(changing));
  std::fflush(stdout);  // a crash must not take it along
  const int operations = zortest::number_from_environment("ZORTAV_TEST_OPERATIONS", 200000);
  for (const std::uint64_t seed : {std::uint64_t{1}, std::uint64_t{2}, std::uint64_t{3}, std::uint64_t{4}, changing}) {
    run(seed, operations);
  }
}

}  // namespace
