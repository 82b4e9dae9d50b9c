#include "deps/target_scan.h"

#include "deps/dependency_cache_file.h"
#include "deps/scan_style.h"
#include "model/project_data.h"
#include "platform/path.h"

namespace quillon {

namespace {

// `full_paths` false leaves the sources' names as stored: enough for what
// depends only on their extensions, and far cheaper for thousands of files.
ScanRequest MakeRequest(const CProjectData& project, const CProjectTarget& target,
                        bool full_paths) {
  ScanRequest request;
  const CGlobalOptions& global = project.global_options();
  const std::string compiler_exts = global.GetString(kCInpExtensions, 0);
  const std::string assembler_exts = global.GetString(kAInpExtensions, 0);
  request.file_count = static_cast<int>(target.files.size());
  for (size_t i = 0; i < target.files.size(); ++i) {
    const CProjectFile& file = *target.files[i];
    if (project.IsExcludedFromBuild(file)) continue;
    std::string path = full_paths ? project.FullNameOfFile(file.file_name())
                                  : std::string(TrimBlanks(file.file_name()));
    ScanStyle style = ChooseScanStyle(path, compiler_exts, assembler_exts);
    request.sources.push_back({std::move(path), style, static_cast<int>(i)});
  }
  for (const IncludePath& include : global.include_paths()) {
    std::string dir(TrimBlanks(include.directory));
    if (dir.empty()) continue;
    request.include_paths.push_back({project.FullNameOfFile(dir), include.search_subdirs});
  }
  const IncludeKeywordSettings& k = global.include_keyword();
  request.keywords = {k.valid, k.req_blanks, k.allow_blanks, k.keyword, k.start, k.end};
  request.indirection_file = project.IndirectionFile(target);
  return request;
}

}  // namespace

ScanRequest MakeScanRequest(const CProjectData& project, const CProjectTarget& target) {
  return MakeRequest(project, target, /*full_paths=*/true);
}

std::string ScanSettingsFingerprint(const CProjectData& project, const CProjectTarget& target) {
  return ScanSettingsFingerprint(MakeRequest(project, target, /*full_paths=*/false));
}

}  // namespace quillon
