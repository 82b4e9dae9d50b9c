// Memory for the small objects a project holds by the ten thousand: its
// files and their option sets. Loading a big project makes them all at once
// and closing it frees them all at once, and the general heap spent more on
// that than on the loading itself. Here each thread carves objects one after
// another out of a 64 KiB slab of its own, and a slab goes back to the heap
// when the last object in it is freed (on any thread) and its thread has
// moved on to another.
//
// Under the address sanitizer every object comes from the heap, so that a
// use after free is still caught.
#ifndef QUILLON_MODEL_SLAB_ALLOCATOR_H
#define QUILLON_MODEL_SLAB_ALLOCATOR_H

#include <cstddef>

namespace quillon {

class SlabAllocator {
 public:
  // Objects up to this size come from slabs; larger ones from the heap.
  static constexpr size_t kLargestObject = 1024;

  static void* Allocate(size_t size);
  // `size` is the one given to Allocate.
  static void Release(void* object, size_t size);
};

// Class-specific new and delete for a class whose objects come from slabs.
// Sized delete gets the size of the object's own class, also through a
// pointer to its base.
#define QUILLON_SLAB_ALLOCATED                                                             \
  static void* operator new(size_t size) { return SlabAllocator::Allocate(size); }       \
  static void operator delete(void* object, size_t size) {                               \
    SlabAllocator::Release(object, size);                                                 \
  }

}  // namespace quillon

#endif  // QUILLON_MODEL_SLAB_ALLOCATOR_H
