// Little-endian encoding for the store file: encoders for the writer and a
// bounds-checked cursor for the reader. Numbers are built byte by byte so the
// result does not depend on the host's byte order or alignment.
#ifndef QUILLON_MODEL_REGISTRY_CODING_H
#define QUILLON_MODEL_REGISTRY_CODING_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace quillon {

// Each writes at `dst` and returns the position after what it wrote.
inline char* EncodeFixed16(char* dst, uint16_t value) {
  dst[0] = static_cast<char>(value & 0xFF);
  dst[1] = static_cast<char>(value >> 8);
  return dst + 2;
}

inline char* EncodeFixed32(char* dst, uint32_t value) {
  for (int i = 0; i < 4; ++i) dst[i] = static_cast<char>((value >> (8 * i)) & 0xFF);
  return dst + 4;
}

// Copies `size` bytes; names and most values are short, and copies of a
// fixed width need no call.
inline void CopyBytes(char* dst, const char* src, size_t size) {
  if (size >= 8 && size <= 16) {
    std::memcpy(dst, src, 8);
    std::memcpy(dst + size - 8, src + size - 8, 8);
  } else if (size >= 4 && size < 8) {
    std::memcpy(dst, src, 4);
    std::memcpy(dst + size - 4, src + size - 4, 4);
  } else if (size < 4) {
    for (size_t i = 0; i < size; ++i) dst[i] = src[i];
  } else {
    std::memcpy(dst, src, size);
  }
}

// Reads from a byte range. Running past the end is not an error here: a
// number cut short keeps the bytes that were there (the missing high bytes
// are zero) and a byte run keeps what is left, which is how the store treats
// truncated values.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes)
      : next_(reinterpret_cast<const unsigned char*>(bytes.data())), end_(next_ + bytes.size()) {}

  bool AtEnd() const { return next_ == end_; }
  size_t remaining() const { return static_cast<size_t>(end_ - next_); }

  // The next byte, or -1 at the end.
  int ReadByte() { return AtEnd() ? -1 : *next_++; }
  uint16_t ReadFixed16() { return static_cast<uint16_t>(ReadFixed(2)); }
  uint32_t ReadFixed32() { return ReadFixed(4); }

  // The next `size` bytes, or all that are left.
  std::string_view ReadView(size_t size) {
    size_t taken = size < remaining() ? size : remaining();
    std::string_view view(reinterpret_cast<const char*>(next_), taken);
    next_ += taken;
    return view;
  }
  void ReadBytes(size_t size, std::string* out) { out->assign(ReadView(size)); }
  const char* position() const { return reinterpret_cast<const char*>(next_); }

 private:
  uint32_t ReadFixed(int size) {
    uint32_t value = 0;
    if (remaining() >= static_cast<size_t>(size)) {
      for (int i = 0; i < size; ++i) value |= static_cast<uint32_t>(next_[i]) << (8 * i);
      next_ += size;
      return value;
    }
    for (int i = 0; i < size && !AtEnd(); ++i) value |= static_cast<uint32_t>(*next_++) << (8 * i);
    return value;
  }

  const unsigned char* next_;
  const unsigned char* end_;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_REGISTRY_CODING_H
