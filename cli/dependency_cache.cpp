#include "cli/dependency_cache.h"

#include "deps/dependency_cache_file.h"
#include "deps/target_scan.h"
#include "interface/library_state.h"
#include "platform/file_system.h"
#include "platform/path.h"

namespace quillon::qpm {

DependencyCache::DependencyCache(std::string project_path, const CProjectData& project)
    : path_(project_path + ".deps"), project_file_(ExpandToFullPath(project_path)) {
  if (const CProjectTarget* target = project.default_target()) {
    settings_ = ScanSettingsFingerprint(project, *target);
  }
}

void DependencyCache::Load() {
  FileSystem& fs = FileSystem::Default();
  std::string bytes;
  if (!fs.FileExists(path_) || !fs.ReadFile(path_, &bytes).ok()) return;
  CDependencyScanner& scanner = State().Scanner();
  loaded_ = DecodeDependencyCache(bytes, project_file_, settings_, &scanner);
  if (!loaded_) scanner.Clear();
  nodes_at_load_ = scanner.node_count();
  roots_at_load_ = scanner.root_count();
}

void DependencyCache::SaveIfChanged() {
  const CDependencyScanner& scanner = State().Scanner();
  bool changed = !loaded_ || scanner.files_scanned() > 0 ||
                 scanner.node_count() != nodes_at_load_ || scanner.root_count() != roots_at_load_;
  if (!changed) return;
  FileSystem::Default().WriteFileAtomically(
      path_, EncodeDependencyCache(scanner, project_file_, settings_));
}

}  // namespace quillon::qpm
