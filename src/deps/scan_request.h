// What an update of the dependency graph needs to know, without the project
// model: the sources with their scan styles, the include search paths and
// the include-keyword settings. The library layer fills it from the active
// target.
#ifndef QUILLON_DEPS_SCAN_REQUEST_H
#define QUILLON_DEPS_SCAN_REQUEST_H

#include <string>
#include <vector>

#include "model/include_keyword.h"

namespace quillon {

// kNone: neither a compiler nor an assembler source; such a file gets no
// node and is only compared with the indirection file.
enum class ScanStyle { kNone, kC, kVerilog, kKeyword };

struct IncludeSearchPath {
  std::string directory;  // a full path
  bool search_subdirs = false;
};

struct ScanSource {
  std::string path;  // a full path
  ScanStyle style = ScanStyle::kNone;
  // Position among all the target's files, excluded ones included, for the
  // progress percentage; -1: the position in ScanRequest::sources.
  int file_index = -1;
};

struct ScanRequest {
  // In the target's file order, files excluded from the build left out.
  std::vector<ScanSource> sources;
  std::vector<IncludeSearchPath> include_paths;
  IncludeKeywordSettings keywords;
  std::string indirection_file;  // a full path, or empty
  // Number of the target's files; -1: the size of `sources`.
  int file_count = -1;
};

// What an update tells its caller; every method may be left as it is.
class ScanObserver {
 public:
  virtual ~ScanObserver() = default;
  virtual void Begin(const std::string& /*text*/) {}
  virtual void Progress(int /*percent*/) {}
  virtual void End() {}
  // An include that could not be resolved; `line` counts from 1.
  virtual void Warning(const std::string& /*file*/, int /*line*/, const std::string& /*text*/) {}
  virtual void DependenciesChanged() {}
};

}  // namespace quillon

#endif  // QUILLON_DEPS_SCAN_REQUEST_H
