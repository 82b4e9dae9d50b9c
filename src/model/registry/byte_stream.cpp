#include "model/registry/byte_stream.h"

#include <cstring>
#include <utility>

namespace quillon {

size_t MemoryByteStream::Read(void* buffer, size_t size) {
  if (position_ >= contents_.size()) return 0;
  size_t count = contents_.size() - position_;
  if (size < count) count = size;
  std::memcpy(buffer, contents_.data() + position_, count);
  position_ += count;
  return count;
}

std::string ByteStream::ReadToEnd() {
  std::string bytes(64 * 1024, '\0');
  size_t used = 0;
  for (;;) {
    if (used == bytes.size()) bytes.resize(bytes.size() * 2);
    size_t wanted = bytes.size() - used;
    size_t got = Read(&bytes[used], wanted);
    if (got == 0) break;
    used += got < wanted ? got : wanted;
  }
  bytes.resize(used);
  return bytes;
}

std::string MemoryByteStream::ReadToEnd() {
  if (position_ == 0) {
    std::string all = std::move(contents_);
    contents_.clear();
    return all;
  }
  std::string rest = position_ < contents_.size() ? contents_.substr(position_) : std::string();
  position_ = contents_.size();
  return rest;
}

bool MemoryByteStream::Write(const void* data, size_t size) {
  contents_.append(static_cast<const char*>(data), size);
  return true;
}

}  // namespace quillon
