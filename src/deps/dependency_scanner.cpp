#include "deps/dependency_scanner.h"

#include <chrono>
#include <memory>

#include "deps/include_line.h"
#include "platform/path.h"

namespace quillon {

void CDependencyScanner::Update(const ScanRequest& request, ScanObserver* observer) {
  ScanObserver quiet;
  observer_ = observer != nullptr ? observer : &quiet;
  keywords_ = &request.keywords;
  observer_->Begin(kBeginText);

  const bool was_reset = reset_;
  if (was_reset) Clear();
  ClearVisited();
  files_scanned_ = 0;
  const auto started = std::chrono::steady_clock::now();
  resolver_.BeginUpdate(request.include_paths);
  const bool indirection_is_project_file = VisitSources(request);
  resolver_.EndUpdate();

  roots_.Flush();
  nodes_.Flush();
  if (!was_reset) Prune();
  // Known to the link decision through the graph, like any dependency.
  if (!request.indirection_file.empty() && !indirection_is_project_file) {
    nodes_.FindOrAdd(request.indirection_file);
    nodes_.Flush();
  }
  reset_ = false;
  update_milliseconds_ = std::chrono::duration_cast<std::chrono::milliseconds>(
                             std::chrono::steady_clock::now() - started)
                             .count();
  observer_->End();
  observer_->DependenciesChanged();
  observer_ = nullptr;
  keywords_ = nullptr;
}

// Returns whether a project file bears the indirection file's name.
bool CDependencyScanner::VisitSources(const ScanRequest& request) {
  const std::string& indirection = request.indirection_file;
  bool indirection_is_project_file = false;
  const size_t sources = request.sources.size();
  const int count = request.file_count >= 0 ? request.file_count : static_cast<int>(sources);
  for (size_t i = 0; i < sources; ++i) {
    const ScanSource& source = request.sources[i];
    if (source.style == ScanStyle::kNone) {
      // Neither kind of source: no node, only the indirection file test;
      // it still counts for the progress.
      if (!indirection.empty() && EqualsNoCase(source.path, indirection)) {
        indirection_is_project_file = true;
      }
    } else {
      Visit(roots_.FindOrAdd(source.path), source.style);
    }
    const int index = source.file_index >= 0 ? source.file_index : static_cast<int>(i);
    observer_->Progress(count > 0 ? index * 100 / count : 0);
  }
  return indirection_is_project_file;
}

void CDependencyScanner::Clear() {
  nodes_.Clear();
  roots_.Clear();
  reset_ = false;
}

void CDependencyScanner::NextEpoch(CDependencyNodeSet& set, uint32_t* epoch) {
  if (++*epoch != 0) return;
  // Wrapped: no mark may look current by accident.
  for (const auto& node : set.nodes()) node->visit_mark_ = 0;
  *epoch = 1;
}

void CDependencyScanner::ClearVisited() {
  NextEpoch(nodes_, &node_epoch_);
  NextEpoch(roots_, &root_epoch_);
}

void CDependencyScanner::ClearVisitedOfNodes() { NextEpoch(nodes_, &node_epoch_); }

// Depth first, dependencies in name order, each node once per walk; the
// explicit stack keeps deep include chains off the thread's stack.
void CDependencyScanner::Visit(CDependencyNode* root, ScanStyle style) {
  if (IsVisited(*root)) return;
  MarkVisited(*root);
  Refresh(root, style);
  stack_.assign(1, {root, 0});
  while (!stack_.empty()) {
    Frame& top = stack_.back();
    if (top.next == top.node->dependencies().size()) {
      stack_.pop_back();
      continue;
    }
    CDependencyNode* dependency = top.node->dependencies()[top.next++];
    if (IsVisited(*dependency)) continue;
    MarkVisited(*dependency);
    Refresh(dependency, style);
    stack_.push_back({dependency, 0});
  }
}

void CDependencyScanner::Refresh(CDependencyNode* node, ScanStyle style) {
  const FileTime time = fs_.Stat(node->name()).time;
  if (time == node->time()) return;
  node->set_time(time);
  node->ClearDependencies();
  Scan(node, style);
}

void CDependencyScanner::Scan(CDependencyNode* node, ScanStyle style) {
  if (node->name().empty() || style == ScanStyle::kNone) return;
  if (style == ScanStyle::kKeyword && !keywords_->valid) return;  // nothing could match
  const std::unique_ptr<MappedFile> file = fs_.MapReadOnly(node->name());
  if (file == nullptr) return;  // unreadable: no dependencies, time kept
  ++files_scanned_;
  resolver_.SetIncludingFile(node->name());
  if (style == ScanStyle::kKeyword) {
    ScanKeywords(node, file->data(), file->size());
  } else {
    ScanDirectives(node, file->data(), file->size(), style);
  }
}

void CDependencyScanner::ScanDirectives(CDependencyNode* node, const char* data, size_t size,
                                        ScanStyle style) {
  const bool verilog = style == ScanStyle::kVerilog;
  DirectiveScanner scanner(data, size, verilog ? '`' : '#');
  std::string_view name;
  while (scanner.Next(&name)) {
    if (verilog) {
      AddInclude(node, Unix2dos(name), [&scanner] { return scanner.line(); });
    } else {
      AddInclude(node, name, [&scanner] { return scanner.line(); });
    }
  }
  // Includes before the marker line stay listed.
  if (scanner.has_marker()) node->set_no_dependencies();
}

void CDependencyScanner::ScanKeywords(CDependencyNode* node, const char* data, size_t size) {
  LineReader reader(data, size);
  std::string_view line;
  for (int number = 1; reader.Next(&line); ++number) {
    const std::string_view name = MatchKeywordLine(line, *keywords_);
    if (!name.empty()) AddInclude(node, name, [number] { return number; });
  }
}

void CDependencyScanner::AddInclude(CDependencyNode* node, std::string_view name,
                                    const std::function<int()>& line) {
  IncludeTarget* target = resolver_.Resolve(name);
  if (target == nullptr) {
    observer_->Warning(node->name(), line(),
                       ": Dependence file \"" + std::string(name) + "\" not found");
    return;
  }
  if (target->node == nullptr) target->node = nodes_.FindOrAdd(target->path);
  node->AddDependency(target->node);
}

// One pass: a node that only a node removed here referred to survives until
// the next update.
void CDependencyScanner::Prune() {
  for (const auto& node : nodes_.nodes()) node->referenced_ = false;
  auto mark_dependencies = [](const CDependencyNode& node) {
    for (CDependencyNode* dependency : node.dependencies()) dependency->referenced_ = true;
  };
  for (const auto& node : nodes_.nodes()) mark_dependencies(*node);
  for (const auto& root : roots_.nodes()) mark_dependencies(*root);
  nodes_.RemoveIf([](const CDependencyNode& node) { return !node.referenced_; });
}

bool CDependencyScanner::IsNewer(const CDependencyNode* node, FileTime time) {
  enum class Answer { kNo, kYes, kAskDependencies };
  auto check = [&](const CDependencyNode& n) {
    if (IsVisited(n) || n.no_dependencies()) return Answer::kNo;
    if (n.time() > time) return Answer::kYes;  // left unvisited
    MarkVisited(n);
    return Answer::kAskDependencies;
  };
  if (node == nullptr) return false;
  const Answer first = check(*node);
  if (first != Answer::kAskDependencies) return first == Answer::kYes;
  stack_.assign(1, {node, 0});
  while (!stack_.empty()) {
    Frame& top = stack_.back();
    if (top.next == top.node->dependencies().size()) {
      stack_.pop_back();
      continue;
    }
    const CDependencyNode* dependency = top.node->dependencies()[top.next++];
    const Answer answer = check(*dependency);
    if (answer == Answer::kYes) {
      stack_.clear();
      return true;
    }
    if (answer == Answer::kAskDependencies) stack_.push_back({dependency, 0});
  }
  return false;
}

}  // namespace quillon
