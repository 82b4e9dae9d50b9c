#include "model/slab_allocator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

namespace quillon {
namespace {

struct Block {
  void* at;
  size_t size;
};

std::vector<Block> AllocateFilled(size_t count, size_t size, unsigned char fill) {
  std::vector<Block> blocks;
  for (size_t i = 0; i < count; ++i) {
    void* at = SlabAllocator::Allocate(size);
    std::memset(at, fill, size);
    blocks.push_back({at, size});
  }
  return blocks;
}

bool StillFilled(const std::vector<Block>& blocks, unsigned char fill) {
  for (const Block& block : blocks) {
    auto* bytes = static_cast<const unsigned char*>(block.at);
    if (std::any_of(bytes, bytes + block.size, [&](unsigned char b) { return b != fill; })) {
      return false;
    }
  }
  return true;
}

// Objects of many sizes, made on two threads and freed on the other one,
// never share a byte and stay aligned for any member; a slab emptied on a
// foreign thread is freed there without disturbing the objects still alive.
TEST(SlabAllocator, ObjectsStayApartAcrossThreadsAndSizes) {
  std::vector<Block> first, second;
  std::thread a([&] { first = AllocateFilled(3000, 40, 0xA1); });
  std::thread b([&] { second = AllocateFilled(3000, 120, 0xB2); });
  a.join();
  b.join();
  std::vector<Block> big = AllocateFilled(4, 5000, 0xC3);  // beyond the slab sizes

  std::vector<std::pair<uintptr_t, uintptr_t>> spans;
  for (const auto* blocks : {&first, &second, &big}) {
    for (const Block& block : *blocks) {
      auto start = reinterpret_cast<uintptr_t>(block.at);
      EXPECT_EQ(start % alignof(std::max_align_t), 0u);
      spans.emplace_back(start, start + block.size);
    }
  }
  std::sort(spans.begin(), spans.end());
  for (size_t i = 1; i < spans.size(); ++i) ASSERT_LE(spans[i - 1].second, spans[i].first);

  // Half of each thread's objects are freed by the other thread.
  std::thread free_first([&] {
    for (size_t i = 0; i < first.size(); i += 2) SlabAllocator::Release(first[i].at, 40);
  });
  std::thread free_second([&] {
    for (size_t i = 0; i < second.size(); i += 2) SlabAllocator::Release(second[i].at, 120);
  });
  free_first.join();
  free_second.join();
  std::vector<Block> kept_first, kept_second;
  for (size_t i = 1; i < first.size(); i += 2) kept_first.push_back(first[i]);
  for (size_t i = 1; i < second.size(); i += 2) kept_second.push_back(second[i]);
  std::vector<Block> fresh = AllocateFilled(3000, 64, 0xD4);
  EXPECT_TRUE(StillFilled(kept_first, 0xA1));
  EXPECT_TRUE(StillFilled(kept_second, 0xB2));
  EXPECT_TRUE(StillFilled(big, 0xC3));

  for (const auto* blocks : {&kept_first, &kept_second, &big, &fresh}) {
    for (const Block& block : *blocks) SlabAllocator::Release(block.at, block.size);
  }
}

}  // namespace
}  // namespace quillon
