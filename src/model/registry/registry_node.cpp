// Nodes of the store tree: the name order and the sorted child collection.
#include <algorithm>

#include "model/registry/settings_registry.h"

namespace quillon {
namespace {

unsigned char FoldCase(char c) {
  unsigned char byte = static_cast<unsigned char>(c);
  return (byte >= 'A' && byte <= 'Z') ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
}

// First position whose name is not less than `name`.
auto LowerBound(const std::vector<std::unique_ptr<RegistryNode>>& nodes, std::string_view name) {
  return std::lower_bound(nodes.begin(), nodes.end(), name,
                          [](const std::unique_ptr<RegistryNode>& node, std::string_view key) {
                            return CompareRegistryNames(node->name, key) < 0;
                          });
}

}  // namespace

// Only ASCII letters fold: names are bytes in the host's code page, and a
// locale-dependent fold would let the order (and so the file) vary by machine.
int CompareRegistryNames(std::string_view a, std::string_view b) {
  size_t common = std::min(a.size(), b.size());
  for (size_t i = 0; i < common; ++i) {
    unsigned char x = FoldCase(a[i]);
    unsigned char y = FoldCase(b[i]);
    if (x != y) return x < y ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

RegistryNode::~RegistryNode() {
  if (!children) return;
  // Detach every child before it dies so no destructor below recurses.
  std::vector<std::unique_ptr<RegistryNode>> pending = std::move(*children);
  children.reset();
  while (!pending.empty()) {
    std::unique_ptr<RegistryNode> node = std::move(pending.back());
    pending.pop_back();
    if (!node->children) continue;
    for (auto& child : *node->children) pending.push_back(std::move(child));
    node->children.reset();
  }
}

RegistryNode* RegistryNode::FindChild(std::string_view child_name) const {
  if (!children) return nullptr;
  auto it = LowerBound(*children, child_name);
  if (it == children->end() || CompareRegistryNames((*it)->name, child_name) != 0) return nullptr;
  return it->get();
}

RegistryNode* RegistryNode::InsertChild(std::unique_ptr<RegistryNode> child) {
  if (!children) {
    children = std::make_unique<std::vector<std::unique_ptr<RegistryNode>>>();
    children->reserve(4);
  }
  RegistryNode* inserted = child.get();
  // Names often arrive in order (files, indexed keys): append without a search.
  if (children->empty() || CompareRegistryNames(children->back()->name, child->name) < 0) {
    children->push_back(std::move(child));
    return inserted;
  }
  auto it = LowerBound(*children, child->name);
  if (it != children->end() && CompareRegistryNames((*it)->name, child->name) == 0) return nullptr;
  children->insert(it, std::move(child));
  return inserted;
}

}  // namespace quillon
