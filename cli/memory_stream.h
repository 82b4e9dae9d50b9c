// An IStream over bytes in memory: what qpm hands to _Transfer, filled from
// a file before a load and written to a file after a save.
#ifndef QUILLON_CLI_MEMORY_STREAM_H
#define QUILLON_CLI_MEMORY_STREAM_H

#include <cstddef>
#include <string>

#include "quillon/stream.h"

namespace quillon::qpm {

class MemoryStream final : public IStream {
 public:
  MemoryStream() = default;
  // Reading starts at the first byte.
  explicit MemoryStream(std::string bytes) : bytes_(std::move(bytes)) {}

  HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override;
  HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override;
  HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) override;

  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
  size_t position_ = 0;
};

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_MEMORY_STREAM_H
