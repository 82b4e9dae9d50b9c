// The bytes a settings store is read from or written to.
#ifndef QUILLON_MODEL_REGISTRY_BYTE_STREAM_H
#define QUILLON_MODEL_REGISTRY_BYTE_STREAM_H

#include <cstddef>
#include <string>
#include <utility>

namespace quillon {

class ByteStream {
 public:
  virtual ~ByteStream() = default;
  // Reads up to `size` bytes; returns how many were read (0 at the end or on
  // error).
  virtual size_t Read(void* buffer, size_t size) = 0;
  // Returns false when not every byte could be written.
  virtual bool Write(const void* data, size_t size) = 0;
  // Everything from here to the end, in one buffer.
  virtual std::string ReadToEnd();
};

// A stream over a string in memory: reads from the start, appends on write.
// Reading to the end from the start hands the string over without a copy
// (the stream is empty afterwards).
class MemoryByteStream : public ByteStream {
 public:
  MemoryByteStream() = default;
  explicit MemoryByteStream(std::string contents) : contents_(std::move(contents)) {}

  size_t Read(void* buffer, size_t size) override;
  bool Write(const void* data, size_t size) override;
  std::string ReadToEnd() override;

  const std::string& contents() const { return contents_; }
  std::string& contents() { return contents_; }

 private:
  std::string contents_;
  size_t position_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_REGISTRY_BYTE_STREAM_H
