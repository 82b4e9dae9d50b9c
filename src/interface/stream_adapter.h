// The host's IStream seen as the store's byte stream. The stream is only
// borrowed: it is neither released nor closed here.
#ifndef QUILLON_INTERFACE_STREAM_ADAPTER_H
#define QUILLON_INTERFACE_STREAM_ADAPTER_H

#include "model/registry/byte_stream.h"
#include "quillon/stream.h"

namespace quillon {

class HostStream : public ByteStream {
 public:
  explicit HostStream(IStream* stream) : stream_(stream) {}

  size_t Read(void* buffer, size_t size) override {
    ULONG read = 0;
    if (stream_->Read(buffer, static_cast<ULONG>(size), &read) < 0) return 0;
    return read;
  }

  bool Write(const void* data, size_t size) override {
    ULONG written = 0;
    if (stream_->Write(data, static_cast<ULONG>(size), &written) < 0) return false;
    return written == size;
  }

 private:
  IStream* stream_;
};

}  // namespace quillon

#endif  // QUILLON_INTERFACE_STREAM_ADAPTER_H
