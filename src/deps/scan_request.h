// What an update of the dependency graph needs to know, without the project
// model: the sources with their scan styles, the include search paths and
// the include-keyword settings. The library layer fills it from the active
// target.
#ifndef QUILLON_DEPS_SCAN_REQUEST_H
#define QUILLON_DEPS_SCAN_REQUEST_H

#include <string>
#include <vector>

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

// How keyword-style (assembler) sources name their includes: a keyword of
// the user's choosing, where the name starts and ends, and whether blanks
// before the keyword are allowed or required. The project keeps the same
// settings with its global options; the library layer copies them here.
struct KeywordIncludeRules {
  bool valid = false;  // scan keyword-style sources at all
  bool req_blanks = true;
  bool allow_blanks = true;
  std::string keyword;
  std::string start;
  std::string end;
  bool operator==(const KeywordIncludeRules&) const = default;
};

struct ScanRequest {
  // In the target's file order, files excluded from the build left out.
  std::vector<ScanSource> sources;
  std::vector<IncludeSearchPath> include_paths;
  KeywordIncludeRules keywords;
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
