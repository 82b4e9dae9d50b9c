// Snapshot and Restore of CDependencyScanner.
#include "deps/dependency_scanner.h"

namespace quillon {
namespace {

using SnapshotNodes = std::vector<DependencyGraphSnapshot::Node>;

// Dependencies are given as positions in the all-nodes set.
template <typename PositionOf>
void Copy(const CDependencyNodeSet& set, PositionOf position_of, SnapshotNodes* out) {
  out->reserve(set.size());
  for (const auto& node : set.nodes()) {
    DependencyGraphSnapshot::Node& entry = out->emplace_back();
    entry.name = node->name();
    entry.time = node->time();
    entry.no_dependencies = node->no_dependencies();
    entry.dependencies.reserve(node->dependencies().size());
    for (const CDependencyNode* dependency : node->dependencies()) {
      entry.dependencies.push_back(position_of(*dependency));
    }
  }
}

// `added` receives the new nodes in the snapshot's order.
bool AddNodes(const SnapshotNodes& entries, CDependencyNodeSet* set,
              std::vector<CDependencyNode*>* added) {
  added->reserve(entries.size());
  for (const DependencyGraphSnapshot::Node& entry : entries) {
    bool is_new = false;
    CDependencyNode* node = entry.name.empty() ? nullptr : set->FindOrAdd(entry.name, &is_new);
    if (!is_new) return false;
    node->set_time(entry.time);
    if (entry.no_dependencies) node->set_no_dependencies();
    added->push_back(node);
  }
  return true;
}

bool Link(const SnapshotNodes& entries, const std::vector<CDependencyNode*>& nodes,
          const std::vector<CDependencyNode*>& targets) {
  for (size_t i = 0; i < entries.size(); ++i) {
    for (uint32_t position : entries[i].dependencies) {
      if (position >= targets.size()) return false;
      nodes[i]->AddDependency(targets[position]);
    }
  }
  return true;
}

}  // namespace

DependencyGraphSnapshot CDependencyScanner::Snapshot() const {
  for (size_t i = 0; i < nodes_.size(); ++i) nodes_.at(i)->order_ = static_cast<uint32_t>(i);
  auto position_of = [](const CDependencyNode& node) { return node.order_; };
  DependencyGraphSnapshot snapshot;
  Copy(roots_, position_of, &snapshot.roots);
  Copy(nodes_, position_of, &snapshot.nodes);
  return snapshot;
}

bool CDependencyScanner::Restore(const DependencyGraphSnapshot& snapshot) {
  Clear();
  std::vector<CDependencyNode*> nodes, roots;
  const bool ok = AddNodes(snapshot.nodes, &nodes_, &nodes) &&
                  AddNodes(snapshot.roots, &roots_, &roots) && Link(snapshot.nodes, nodes, nodes) &&
                  Link(snapshot.roots, roots, nodes);
  if (!ok) {
    Clear();
    return false;
  }
  nodes_.Flush();
  roots_.Flush();
  return true;
}

}  // namespace quillon
