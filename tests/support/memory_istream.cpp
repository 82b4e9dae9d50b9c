#include "support/memory_istream.h"

#include <algorithm>
#include <cstring>

#ifdef _WIN32
#include <objbase.h>
#endif

namespace quillon {

#ifdef _WIN32

MemoryIStream::MemoryIStream() { CreateStreamOnHGlobal(nullptr, TRUE, &stream_); }
MemoryIStream::~MemoryIStream() {
  if (stream_) stream_->Release();
}

#else

namespace {

class StringStream final : public IStream {
 public:
  HRESULT Read(void* pv, ULONG cb, ULONG* read) override {
    size_t n = std::min<size_t>(cb, data.size() - std::min(position, data.size()));
    if (n > 0) std::memcpy(pv, data.data() + position, n);
    position += n;
    if (read) *read = static_cast<ULONG>(n);
    return n == cb ? S_OK : S_FALSE;
  }
  HRESULT Write(const void* pv, ULONG cb, ULONG* written) override {
    if (position + cb > data.size()) data.resize(position + cb);
    std::memcpy(data.data() + position, pv, cb);
    position += cb;
    if (written) *written = cb;
    return S_OK;
  }
  HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* new_position) override {
    int64_t base = origin == STREAM_SEEK_SET   ? 0
                   : origin == STREAM_SEEK_CUR ? static_cast<int64_t>(position)
                                               : static_cast<int64_t>(data.size());
    int64_t to = base + move.QuadPart;
    if (to < 0) return STG_E_INVALIDFUNCTION;
    position = static_cast<size_t>(to);
    if (new_position) new_position->QuadPart = position;
    return S_OK;
  }
  std::string data;
  size_t position = 0;
};

}  // namespace

MemoryIStream::MemoryIStream() : stream_(new StringStream()) {}
MemoryIStream::~MemoryIStream() { delete static_cast<StringStream*>(stream_); }

#endif

void MemoryIStream::Rewind() { stream_->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr); }

std::string MemoryIStream::Contents() {
  Rewind();
  std::string all;
  char buffer[4096];
  for (ULONG read = sizeof buffer; read == sizeof buffer; all.append(buffer, read)) {
    read = 0;
    stream_->Read(buffer, sizeof buffer, &read);
  }
  Rewind();
  return all;
}

void MemoryIStream::Assign(const std::string& bytes) {
  Rewind();
#ifdef _WIN32
  stream_->SetSize(ULARGE_INTEGER{});
#else
  static_cast<StringStream*>(stream_)->data.clear();
#endif
  stream_->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
  Rewind();
}

}  // namespace quillon
