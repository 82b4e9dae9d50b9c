// The include dependency graph of the active target's sources.
//
// Two sets of nodes: one root per scanned project source, and every file
// ever resolved from an include (plus the target's indirection file). A
// project file that is also included has a node in each. The graph is a
// cache refreshed by file times: Update rescans only files whose time
// changed. Files are read only through read-only mappings.
//
// Not thread-safe: the host's thread and the build thread take turns, never
// overlapping.
#ifndef QUILLON_DEPS_DEPENDENCY_SCANNER_H
#define QUILLON_DEPS_DEPENDENCY_SCANNER_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "deps/dependency_node.h"
#include "deps/dependency_snapshot.h"
#include "deps/include_resolver.h"
#include "deps/node_set.h"
#include "deps/scan_request.h"
#include "platform/file_system.h"

namespace quillon {

class CDependencyScanner {
 public:
  static constexpr const char* kBeginText = "Updating dependencies ...";

  explicit CDependencyScanner(FileSystem& fs) : fs_(fs), resolver_(fs) {}
  CDependencyScanner(const CDependencyScanner&) = delete;
  CDependencyScanner& operator=(const CDependencyScanner&) = delete;

  // Brings the graph up to date for the request's sources. `observer` may
  // be null.
  void Update(const ScanRequest& request, ScanObserver* observer);

  // The next update starts from an empty graph.
  void SetReset() { reset_ = true; }
  bool reset() const { return reset_; }
  // Empties both sets and clears the reset flag (the project was released).
  void Clear();

  size_t node_count() const { return nodes_.size(); }
  const CDependencyNode* NodeAt(size_t index) const { return nodes_.at(index); }
  const CDependencyNode* FindNode(std::string_view path) const { return nodes_.Find(path); }
  size_t root_count() const { return roots_.size(); }
  const CDependencyNode* RootAt(size_t index) const { return roots_.at(index); }
  const CDependencyNode* FindRoot(std::string_view path) const { return roots_.Find(path); }

  // Visited flags of both sets, or of the all-nodes set only. O(1).
  void ClearVisited();
  void ClearVisitedOfNodes();
  // Whether `node` or a file it depends on is newer than `time`. A node
  // already visited since the flags were cleared, or one carrying the
  // no-dependencies marker, answers false.
  bool IsNewer(const CDependencyNode* node, FileTime time);
  // Per root (as RootAt orders them), the newest time of the root and every
  // file it depends on, nodes carrying the no-dependencies marker left out
  // as IsNewer leaves them out; the lowest FileTime when nothing counts.
  // IsNewer(RootAt(i), time) with the all-nodes flags cleared answers
  // result[i] > time. One pass over the graph, where asking IsNewer of every
  // root walks the sum of all the roots' closures.
  std::vector<FileTime> NewestTimesOfRoots() const;

  DependencyGraphSnapshot Snapshot() const;
  // Replaces the graph. False, with the graph left empty, when a dependency
  // names no node or a name appears twice in a set.
  bool Restore(const DependencyGraphSnapshot& snapshot);

  // Diagnostics of the last update.
  int files_scanned() const { return files_scanned_; }
  int64_t update_milliseconds() const { return update_milliseconds_; }

 private:
  struct Frame {
    const CDependencyNode* node;
    size_t next;
  };

  bool IsVisited(const CDependencyNode& node) const {
    return node.visit_mark_ == (node.is_root() ? root_epoch_ : node_epoch_);
  }
  void MarkVisited(const CDependencyNode& node) const {
    node.visit_mark_ = node.is_root() ? root_epoch_ : node_epoch_;
  }
  static void NextEpoch(CDependencyNodeSet& set, uint32_t* epoch);

  bool VisitSources(const ScanRequest& request);
  void Visit(CDependencyNode* root, ScanStyle style);
  void Refresh(CDependencyNode* node, ScanStyle style);
  void Scan(CDependencyNode* node, ScanStyle style);
  void ScanDirectives(CDependencyNode* node, const char* data, size_t size, ScanStyle style);
  void ScanKeywords(CDependencyNode* node, const char* data, size_t size);
  // `line` is asked only for a warning: counting lines costs more than
  // finding directives.
  void AddInclude(CDependencyNode* node, std::string_view name, const std::function<int()>& line);
  void Prune();

  FileSystem& fs_;
  IncludeResolver resolver_;
  CDependencyNodeSet nodes_{/*holds_roots=*/false};
  CDependencyNodeSet roots_{/*holds_roots=*/true};
  bool reset_ = false;
  uint32_t node_epoch_ = 1;
  uint32_t root_epoch_ = 1;
  std::vector<Frame> stack_;

  // Set for the length of one update.
  const KeywordIncludeRules* keywords_ = nullptr;
  ScanObserver* observer_ = nullptr;

  int files_scanned_ = 0;
  int64_t update_milliseconds_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_DEPS_DEPENDENCY_SCANNER_H
