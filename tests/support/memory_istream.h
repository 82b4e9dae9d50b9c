// A growable in-memory IStream for tests that call _Transfer: COM's own
// stream on Windows, a small class elsewhere.
#ifndef QUILLON_TESTS_SUPPORT_MEMORY_ISTREAM_H
#define QUILLON_TESTS_SUPPORT_MEMORY_ISTREAM_H

#include <string>

#include "quillon/stream.h"

namespace quillon {

class MemoryIStream {
 public:
  MemoryIStream();
  ~MemoryIStream();
  MemoryIStream(const MemoryIStream&) = delete;
  MemoryIStream& operator=(const MemoryIStream&) = delete;

  IStream* get() { return stream_; }
  // Back to the first byte, for reading what was written.
  void Rewind();
  // Everything in the stream.
  std::string Contents();
  // Replaces the contents and rewinds.
  void Assign(const std::string& bytes);

 private:
  IStream* stream_ = nullptr;
};

}  // namespace quillon

#endif  // QUILLON_TESTS_SUPPORT_MEMORY_ISTREAM_H
