// One file of the dependency graph: its full path, the time seen at its last
// scan, and the files it includes.
#ifndef QUILLON_DEPS_DEPENDENCY_NODE_H
#define QUILLON_DEPS_DEPENDENCY_NODE_H

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/path_key.h"
#include "platform/file_system.h"

namespace quillon {

class CDependencyNode {
 public:
  CDependencyNode(std::string name, bool is_root)
      : name_(std::move(name)), key_(PathKey(name_)), is_root_(is_root) {}
  CDependencyNode(const CDependencyNode&) = delete;
  CDependencyNode& operator=(const CDependencyNode&) = delete;

  const std::string& name() const { return name_; }
  // Orders nodes as ComparePaths orders their names, at memcmp speed.
  bool NameLess(const CDependencyNode& other) const { return key_ < other.key_; }
  // kMissingFile until the first visit: a new node is always scanned.
  FileTime time() const { return time_; }
  // Set by "//{{NO_DEPENDENCIES}}" and never cleared for the node's life.
  bool no_dependencies() const { return no_dependencies_; }
  // Nodes of the all-nodes set, sorted by name, each once; not owned.
  const std::vector<CDependencyNode*>& dependencies() const { return dependencies_; }
  bool is_root() const { return is_root_; }

  void set_time(FileTime time) { time_ = time; }
  void set_no_dependencies() { no_dependencies_ = true; }
  void ClearDependencies() { dependencies_.clear(); }
  // Keeps the set sorted; a node already there is not added again.
  void AddDependency(CDependencyNode* node) {
    // Restoring a graph adds them in order.
    if (dependencies_.empty() || dependencies_.back()->NameLess(*node)) {
      dependencies_.push_back(node);
      return;
    }
    auto it = std::lower_bound(
        dependencies_.begin(), dependencies_.end(), node,
        [](const CDependencyNode* a, const CDependencyNode* b) { return a->NameLess(*b); });
    if (it == dependencies_.end() || *it != node) dependencies_.insert(it, node);
  }

 private:
  friend class CDependencyScanner;

  std::string name_;
  std::string key_;
  std::vector<CDependencyNode*> dependencies_;
  FileTime time_ = kMissingFile;
  // The walk that last visited the node; see CDependencyScanner::ClearVisited.
  mutable uint32_t visit_mark_ = 0;
  bool no_dependencies_ = false;
  const bool is_root_;
  bool referenced_ = false;  // scratch of the pruning pass
  // Scratch of NewestTimesOfRoots and Snapshot: the position in its set.
  mutable uint32_t order_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_DEPS_DEPENDENCY_NODE_H
