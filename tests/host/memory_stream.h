// An in-memory stream of the kind the IDE hands to _Transfer: a COM stream on
// an HGLOBAL on Windows, a string behind the header's IStream elsewhere.
#ifndef QUILLON_TESTS_HOST_MEMORY_STREAM_H
#define QUILLON_TESTS_HOST_MEMORY_STREAM_H

#include <stdint.h>

#include <memory>

#include "quillon/stream.h"

namespace quillon {

class MemoryStream {
 public:
  MemoryStream();
  ~MemoryStream();
  MemoryStream(const MemoryStream&) = delete;
  MemoryStream& operator=(const MemoryStream&) = delete;

  IStream* get() { return stream_; }

  // Moves back to the start, as the IDE does before reading what it wrote.
  void Rewind();
  // Bytes in the stream; keeps the position.
  uint64_t Size();

 private:
  IStream* stream_ = nullptr;
};

}  // namespace quillon

#endif  // QUILLON_TESTS_HOST_MEMORY_STREAM_H
