// The dependency graph as plain data, for a cache file that a command-line
// host keeps between processes.
#ifndef QUILLON_DEPS_DEPENDENCY_SNAPSHOT_H
#define QUILLON_DEPS_DEPENDENCY_SNAPSHOT_H

#include <cstdint>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace quillon {

struct DependencyGraphSnapshot {
  struct Node {
    std::string name;
    FileTime time = kMissingFile;
    bool no_dependencies = false;
    std::vector<uint32_t> dependencies;  // positions in `nodes`
  };
  std::vector<Node> roots;  // in name order
  std::vector<Node> nodes;  // the all-nodes set, in name order
};

}  // namespace quillon

#endif  // QUILLON_DEPS_DEPENDENCY_SNAPSHOT_H
