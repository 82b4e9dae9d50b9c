// The include graph of the current project kept beside it in NAME.qpj.deps,
// so that a host that is a new process every time (qpm) rescans only what
// changed. The IDE keeps the graph in memory between builds instead.
//
// Runs on the thread that calls the exports, before and after the library
// uses the graph.
#ifndef QUILLON_INTERFACE_DEPENDENCY_CACHE_H
#define QUILLON_INTERFACE_DEPENDENCY_CACHE_H

#include <cstddef>
#include <string>

#include "platform/status.h"

namespace quillon {

class DependencyCache {
 public:
  // `project_path` as the host names the project file; the cache lies
  // beside it. Takes the default target's scan settings, so the project
  // must be loaded first.
  explicit DependencyCache(const std::string& project_path);

  // Gives the library's graph the stored one when the file holds a graph
  // of this project and these scan settings, and answers whether it did.
  // Anything else (missing, damaged, another project's or settings') is
  // ignored: the graph is then built by scanning.
  bool Load();
  // Writes the graph when an update scanned anything or the stored one was
  // not usable, and answers how the write went; a failed write only costs
  // the next run the time of a full scan.
  Status SaveIfChanged();

  const std::string& path() const { return path_; }

 private:
  std::string path_;
  std::string project_file_;
  std::string settings_;
  bool loaded_ = false;
  size_t nodes_at_load_ = 0;
  size_t roots_at_load_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_INTERFACE_DEPENDENCY_CACHE_H
