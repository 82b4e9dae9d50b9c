#include "model/registry/byte_stream.h"

#include <cstring>

namespace quillon {

size_t MemoryByteStream::Read(void* buffer, size_t size) {
  if (position_ >= contents_.size()) return 0;
  size_t count = contents_.size() - position_;
  if (size < count) count = size;
  std::memcpy(buffer, contents_.data() + position_, count);
  position_ += count;
  return count;
}

bool MemoryByteStream::Write(const void* data, size_t size) {
  contents_.append(static_cast<const char*>(data), size);
  return true;
}

}  // namespace quillon
