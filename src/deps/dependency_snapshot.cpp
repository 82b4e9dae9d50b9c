// Snapshot and Restore of CDependencyScanner.
#include "deps/dependency_scanner.h"

namespace quillon {
namespace {

void Copy(const CDependencyNodeSet& set, std::vector<DependencyGraphSnapshot::Node>* out) {
  out->reserve(set.size());
  for (const auto& node : set.nodes()) {
    DependencyGraphSnapshot::Node& entry = out->emplace_back();
    entry.name = node->name();
    entry.time = node->time();
    entry.no_dependencies = node->no_dependencies();
    for (const CDependencyNode* dependency : node->dependencies()) {
      entry.dependencies.push_back(dependency->name());
    }
  }
}

bool AddNodes(const std::vector<DependencyGraphSnapshot::Node>& entries, CDependencyNodeSet* set) {
  for (const DependencyGraphSnapshot::Node& entry : entries) {
    bool added = false;
    CDependencyNode* node = entry.name.empty() ? nullptr : set->FindOrAdd(entry.name, &added);
    if (!added) return false;
    node->set_time(entry.time);
    if (entry.no_dependencies) node->set_no_dependencies();
  }
  return true;
}

bool Link(const std::vector<DependencyGraphSnapshot::Node>& entries, const CDependencyNodeSet& set,
          const CDependencyNodeSet& targets) {
  for (const DependencyGraphSnapshot::Node& entry : entries) {
    CDependencyNode* node = set.Find(entry.name);
    for (const std::string& name : entry.dependencies) {
      CDependencyNode* dependency = targets.Find(name);
      if (dependency == nullptr) return false;
      node->AddDependency(dependency);
    }
  }
  return true;
}

}  // namespace

DependencyGraphSnapshot CDependencyScanner::Snapshot() const {
  DependencyGraphSnapshot snapshot;
  Copy(roots_, &snapshot.roots);
  Copy(nodes_, &snapshot.nodes);
  return snapshot;
}

bool CDependencyScanner::Restore(const DependencyGraphSnapshot& snapshot) {
  Clear();
  const bool ok = AddNodes(snapshot.nodes, &nodes_) && AddNodes(snapshot.roots, &roots_) &&
                  Link(snapshot.nodes, nodes_, nodes_) && Link(snapshot.roots, roots_, nodes_);
  if (!ok) {
    Clear();
    return false;
  }
  nodes_.Flush();
  roots_.Flush();
  return true;
}

}  // namespace quillon
