#include "memory_stream.h"

#include <string.h>

#include <string>

#ifdef _WIN32
#include <objbase.h>
#endif

namespace quillon {
namespace {

#ifndef _WIN32
// The header's IStream over a growing byte string.
class StringStream final : public IStream {
 public:
  ~StringStream() = default;

  HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override {
    size_t count = position_ < bytes_.size() ? bytes_.size() - position_ : 0;
    if (count > cb) count = cb;
    if (count > 0) memcpy(pv, bytes_.data() + position_, count);
    position_ += count;
    if (pcbRead != nullptr) *pcbRead = static_cast<ULONG>(count);
    return count == cb ? S_OK : S_FALSE;
  }

  HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override {
    if (bytes_.size() < position_ + cb) bytes_.resize(position_ + cb);
    if (cb > 0) memcpy(&bytes_[position_], pv, cb);
    position_ += cb;
    if (pcbWritten != nullptr) *pcbWritten = cb;
    return S_OK;
  }

  HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition) override {
    if (origin > STREAM_SEEK_END) return STG_E_INVALIDFUNCTION;
    int64_t base = origin == STREAM_SEEK_SET   ? 0
                   : origin == STREAM_SEEK_CUR ? static_cast<int64_t>(position_)
                                               : static_cast<int64_t>(bytes_.size());
    if (base + move.QuadPart < 0) return STG_E_INVALIDFUNCTION;
    position_ = static_cast<size_t>(base + move.QuadPart);
    if (newPosition != nullptr) newPosition->QuadPart = position_;
    return S_OK;
  }

 private:
  std::string bytes_;
  size_t position_ = 0;
};
#endif

uint64_t SeekTo(IStream* stream, int64_t offset, DWORD origin) {
  LARGE_INTEGER move;
  move.QuadPart = offset;
  ULARGE_INTEGER position;
  position.QuadPart = 0;
  stream->Seek(move, origin, &position);
  return position.QuadPart;
}

}  // namespace

#ifdef _WIN32
MemoryStream::MemoryStream() { CreateStreamOnHGlobal(nullptr, TRUE, &stream_); }
MemoryStream::~MemoryStream() {
  if (stream_ != nullptr) stream_->Release();
}
#else
MemoryStream::MemoryStream() : stream_(new StringStream) {}
MemoryStream::~MemoryStream() { delete static_cast<StringStream*>(stream_); }
#endif

void MemoryStream::Rewind() { SeekTo(stream_, 0, STREAM_SEEK_SET); }

uint64_t MemoryStream::Size() {
  uint64_t here = SeekTo(stream_, 0, STREAM_SEEK_CUR);
  uint64_t end = SeekTo(stream_, 0, STREAM_SEEK_END);
  SeekTo(stream_, static_cast<int64_t>(here), STREAM_SEEK_SET);
  return end;
}

}  // namespace quillon
