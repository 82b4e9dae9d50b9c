// NewestTimesOfRoots of CDependencyScanner: what IsNewer finds root by
// root, for every root in one pass over the graph.
#include <algorithm>
#include <cstdint>
#include <limits>

#include "deps/dependency_scanner.h"

namespace quillon {
namespace {

constexpr FileTime kNone = std::numeric_limits<FileTime>::min();
constexpr uint32_t kUnseen = std::numeric_limits<uint32_t>::max();

}  // namespace

// Strongly connected components (Tarjan, with an explicit stack): files of
// an include cycle reach each other, so they share one newest time. A
// marked node counts as nothing and leads nowhere, as in IsNewer.
std::vector<FileTime> CDependencyScanner::NewestTimesOfRoots() const {
  const size_t count = nodes_.size();
  for (size_t i = 0; i < count; ++i) nodes_.at(i)->order_ = static_cast<uint32_t>(i);
  std::vector<FileTime> newest(count, kNone);
  std::vector<uint32_t> discovered(count, kUnseen), low(count, 0);
  std::vector<uint32_t> component;  // nodes whose component is still open
  std::vector<bool> open(count, false);
  std::vector<Frame> frames;
  uint32_t next_discovery = 0;

  auto enter = [&](const CDependencyNode* node) {
    const uint32_t v = node->order_;
    discovered[v] = low[v] = next_discovery++;
    newest[v] = node->no_dependencies() ? kNone : node->time();
    component.push_back(v);
    open[v] = true;
    frames.push_back({node, 0});
  };
  auto leave = [&](const CDependencyNode* node) {
    const uint32_t v = node->order_;
    if (low[v] != discovered[v]) return;
    size_t first = component.size();
    FileTime shared = kNone;
    do shared = std::max(shared, newest[component[--first]]);
    while (component[first] != v);
    for (size_t k = first; k < component.size(); ++k) {
      newest[component[k]] = shared;
      open[component[k]] = false;
    }
    component.resize(first);
  };

  for (size_t start = 0; start < count; ++start) {
    if (discovered[start] != kUnseen) continue;
    enter(nodes_.at(start));
    while (!frames.empty()) {
      Frame& top = frames.back();
      const uint32_t v = top.node->order_;
      const auto& dependencies = top.node->dependencies();
      if (top.node->no_dependencies() || top.next == dependencies.size()) {
        const CDependencyNode* done = top.node;
        frames.pop_back();
        leave(done);
        if (!frames.empty()) {
          // Back in the includer: take what the finished dependency found.
          const uint32_t parent = frames.back().node->order_;
          const uint32_t w = done->order_;
          low[parent] = std::min(low[parent], low[w]);
          if (!open[w]) newest[parent] = std::max(newest[parent], newest[w]);
        }
        continue;
      }
      const CDependencyNode* dependency = dependencies[top.next++];
      const uint32_t w = dependency->order_;
      if (discovered[w] == kUnseen) {
        enter(dependency);
      } else if (open[w]) {
        low[v] = std::min(low[v], discovered[w]);  // same component: merged when it closes
      } else {
        newest[v] = std::max(newest[v], newest[w]);
      }
    }
  }

  std::vector<FileTime> roots(roots_.size(), kNone);
  for (size_t i = 0; i < roots.size(); ++i) {
    const CDependencyNode& root = *roots_.at(i);
    if (root.no_dependencies()) continue;
    roots[i] = root.time();
    for (const CDependencyNode* dependency : root.dependencies()) {
      roots[i] = std::max(roots[i], newest[dependency->order_]);
    }
  }
  return roots;
}

}  // namespace quillon
