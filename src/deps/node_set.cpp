#include "deps/node_set.h"

#include <algorithm>
#include <iterator>

namespace quillon {
namespace {

bool NameLess(const std::unique_ptr<CDependencyNode>& a,
              const std::unique_ptr<CDependencyNode>& b) {
  return a->NameLess(*b);
}

}  // namespace

CDependencyNode* CDependencyNodeSet::Find(std::string_view name) const {
  auto it = index_.find(name);
  return it == index_.end() ? nullptr : it->second;
}

CDependencyNode* CDependencyNodeSet::FindOrAdd(std::string_view name, bool* added) {
  auto it = index_.find(name);
  if (added != nullptr) *added = it == index_.end();
  if (it != index_.end()) return it->second;
  batch_.push_back(std::make_unique<CDependencyNode>(std::string(name), holds_roots_));
  CDependencyNode* node = batch_.back().get();
  index_.emplace(node->name(), node);
  return node;
}

void CDependencyNodeSet::Flush() {
  if (batch_.empty()) return;
  std::sort(batch_.begin(), batch_.end(), NameLess);
  std::vector<std::unique_ptr<CDependencyNode>> merged;
  merged.reserve(nodes_.size() + batch_.size());
  std::merge(std::make_move_iterator(nodes_.begin()), std::make_move_iterator(nodes_.end()),
             std::make_move_iterator(batch_.begin()), std::make_move_iterator(batch_.end()),
             std::back_inserter(merged), NameLess);
  nodes_ = std::move(merged);
  batch_.clear();
}

void CDependencyNodeSet::Clear() {
  nodes_.clear();
  batch_.clear();
  index_.clear();
}

}  // namespace quillon
