#include "model/slab_allocator.h"

#include <atomic>
#include <cstdint>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define QUILLON_USE_SLABS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer)
#define QUILLON_USE_SLABS 0
#endif
#endif
#ifndef QUILLON_USE_SLABS
#define QUILLON_USE_SLABS 1
#endif

namespace quillon {
namespace {

constexpr size_t kSlabSize = 64 * 1024;
constexpr size_t kGrain = 16;

// Slabs are aligned to their size, so an object finds its slab's header by
// masking its address.
struct Slab {
  // Objects carved and not yet freed, once its thread has moved on to
  // another slab and added the count it carved; until then, minus the
  // objects freed. Whoever takes it to zero frees the slab.
  std::atomic<intptr_t> balance{0};
};

constexpr size_t kHeader = (sizeof(Slab) + kGrain - 1) / kGrain * kGrain;

// Trivially destructible, so a thread's current slab needs no clean-up code
// at thread exit (it is not returned then).
struct Carver {
  Slab* slab;
  char* next;
  size_t left;
  intptr_t carved;
};

thread_local Carver carver{nullptr, nullptr, 0, 0};

void FreeSlab(Slab* slab) {
  slab->~Slab();
  ::operator delete(static_cast<void*>(slab), std::align_val_t{kSlabSize});
}

void StartSlab(Carver& carving) {
  if (Slab* old = carving.slab) {
    if (old->balance.fetch_add(carving.carved, std::memory_order_acq_rel) + carving.carved == 0) {
      FreeSlab(old);
    }
  }
  void* memory = ::operator new(kSlabSize, std::align_val_t{kSlabSize});
  carving.slab = new (memory) Slab;
  carving.next = static_cast<char*>(memory) + kHeader;
  carving.left = kSlabSize - kHeader;
  carving.carved = 0;
}

}  // namespace

void* SlabAllocator::Allocate(size_t size) {
  if (!QUILLON_USE_SLABS || size > kLargestObject) return ::operator new(size);
  size = (size + kGrain - 1) / kGrain * kGrain;
  Carver& carving = carver;
  if (carving.left < size) StartSlab(carving);
  ++carving.carved;
  void* object = carving.next;
  carving.next += size;
  carving.left -= size;
  return object;
}

void SlabAllocator::Release(void* object, size_t size) {
  if (!QUILLON_USE_SLABS || size > kLargestObject) {
    ::operator delete(object);
    return;
  }
  auto address = reinterpret_cast<uintptr_t>(object);
  auto* slab = reinterpret_cast<Slab*>(address & ~(uintptr_t{kSlabSize} - 1));
  if (slab->balance.fetch_sub(1, std::memory_order_acq_rel) == 1) FreeSlab(slab);
}

}  // namespace quillon
