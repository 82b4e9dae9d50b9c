// The include graph of a project kept beside it in NAME.qpj.deps, so that a
// second qpm run on an unchanged tree only checks file times. The IDE keeps
// the graph in memory between builds; qpm is a new process every time.
#ifndef QUILLON_CLI_DEPENDENCY_CACHE_H
#define QUILLON_CLI_DEPENDENCY_CACHE_H

#include <string>

#include "model/project_data.h"

namespace quillon::qpm {

class DependencyCache {
 public:
  // `project_path` as the user gave it; the cache lies beside it.
  DependencyCache(std::string project_path, const CProjectData& project);

  // Gives the library's scanner the stored graph when it belongs to this
  // project and its scan settings; anything else is ignored (the graph is
  // then built by scanning).
  void Load();
  // Writes the scanner's graph when an update scanned anything or the
  // cache was not usable; a failure to write only costs the next run time.
  void SaveIfChanged();

 private:
  std::string path_;
  std::string project_file_;
  std::string settings_;
  bool loaded_ = false;
  size_t nodes_at_load_ = 0;
  size_t roots_at_load_ = 0;
};

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_DEPENDENCY_CACHE_H
