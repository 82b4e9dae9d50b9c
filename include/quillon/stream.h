// The byte stream that a host hands to _Transfer.
//
// On Windows this is COM's IStream from <objidl.h>. Elsewhere the same name and
// method shapes are declared here, so host code that reads, writes and seeks a
// stream compiles unchanged on both platforms.
#ifndef QUILLON_STREAM_H
#define QUILLON_STREAM_H

#ifdef _WIN32
#include <objidl.h>
#else
#include <cstdint>

typedef int32_t HRESULT;
typedef uint32_t ULONG;
typedef uint32_t DWORD;

union LARGE_INTEGER {
  int64_t QuadPart;
};
union ULARGE_INTEGER {
  uint64_t QuadPart;
};

enum STREAM_SEEK { STREAM_SEEK_SET = 0, STREAM_SEEK_CUR = 1, STREAM_SEEK_END = 2 };

#ifndef S_OK
#define S_OK ((HRESULT)0)
#define S_FALSE ((HRESULT)1)
#define E_FAIL ((HRESULT)0x80004005)
#define STG_E_INVALIDFUNCTION ((HRESULT)0x80030001)
#endif

// Read and Write report the bytes moved through the optional out pointer;
// Seek moves relative to the origin and reports the new position.
class IStream {
 public:
  virtual HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) = 0;
  virtual HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) = 0;
  virtual HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin,
                       ULARGE_INTEGER* plibNewPosition) = 0;

 protected:
  ~IStream() = default;
};
#endif

#endif  // QUILLON_STREAM_H
