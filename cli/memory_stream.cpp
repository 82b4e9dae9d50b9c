#include "cli/memory_stream.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace quillon::qpm {

HRESULT MemoryStream::Read(void* pv, ULONG cb, ULONG* pcbRead) {
  size_t available = bytes_.size() - std::min(position_, bytes_.size());
  size_t n = std::min<size_t>(cb, available);
  if (n > 0) std::memcpy(pv, bytes_.data() + position_, n);
  position_ += n;
  if (pcbRead) *pcbRead = static_cast<ULONG>(n);
  return n == cb ? S_OK : S_FALSE;
}

HRESULT MemoryStream::Write(const void* pv, ULONG cb, ULONG* pcbWritten) {
  if (position_ + cb > bytes_.size()) bytes_.resize(position_ + cb);
  if (cb > 0) std::memcpy(bytes_.data() + position_, pv, cb);
  position_ += cb;
  if (pcbWritten) *pcbWritten = cb;
  return S_OK;
}

HRESULT MemoryStream::Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin,
                           ULARGE_INTEGER* plibNewPosition) {
  int64_t base = 0;
  if (dwOrigin == STREAM_SEEK_CUR) base = static_cast<int64_t>(position_);
  if (dwOrigin == STREAM_SEEK_END) base = static_cast<int64_t>(bytes_.size());
  int64_t to = base + dlibMove.QuadPart;
  if (to < 0) return STG_E_INVALIDFUNCTION;
  position_ = static_cast<size_t>(to);
  if (plibNewPosition) plibNewPosition->QuadPart = position_;
  return S_OK;
}

}  // namespace quillon::qpm
