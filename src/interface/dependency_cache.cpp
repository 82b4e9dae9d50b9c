#include "interface/dependency_cache.h"

#include "deps/dependency_cache_file.h"
#include "deps/target_scan.h"
#include "interface/library_state.h"
#include "platform/path.h"

namespace quillon {

DependencyCache::DependencyCache(const std::string& project_path)
    : path_(project_path + ".deps"), project_file_(ExpandToFullPath(project_path)) {
  const CProjectData* project = State().project.get();
  if (project != nullptr && project->default_target() != nullptr) {
    settings_ = ScanSettingsFingerprint(*project, *project->default_target());
  }
}

bool DependencyCache::Load() {
  std::string bytes;
  CDependencyScanner& scanner = State().Scanner();
  loaded_ = false;
  if (State().fs->ReadFile(path_, &bytes).ok()) {
    loaded_ = DecodeDependencyCache(bytes, project_file_, settings_, &scanner);
    // A refused file may have left part of a graph behind.
    if (!loaded_) scanner.Clear();
  }
  nodes_at_load_ = scanner.node_count();
  roots_at_load_ = scanner.root_count();
  return loaded_;
}

Status DependencyCache::SaveIfChanged() {
  const CDependencyScanner& scanner = State().Scanner();
  const bool changed = !loaded_ || scanner.files_scanned() > 0 ||
                       scanner.node_count() != nodes_at_load_ ||
                       scanner.root_count() != roots_at_load_;
  if (!changed) return Status::OK();
  return State().fs->WriteFileAtomically(path_,
                                         EncodeDependencyCache(scanner, project_file_, settings_));
}

}  // namespace quillon
