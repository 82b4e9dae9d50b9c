#include "deps/up_to_date.h"

#include <unordered_set>

#include "deps/target_scan.h"
#include "model/project_data.h"
#include "platform/path.h"

namespace quillon {
namespace {

std::string Quoted(const std::string& name, const char* tail) { return "'" + name + tail; }

}  // namespace

FileInfo UpToDateDecision::StatOnce(const std::string& path) {
  auto [it, inserted] = stats_.try_emplace(path);
  if (inserted) it->second = fs_.Stat(path);
  return it->second;
}

bool UpToDateDecision::FilesToTranslate(std::vector<CProjectFile*>* files,
                                        std::vector<std::string>* reasons,
                                        ScanObserver* observer) {
  const ScanRequest request = MakeScanRequest(project_, target_);
  scanner_.Update(request, observer);
  const std::vector<FileTime> newest = scanner_.NewestTimesOfRoots();
  files->clear();

  // The project file of each root, through the full paths the request
  // already holds; roots of files since excluded or deleted have none.
  std::unordered_map<const CDependencyNode*, CProjectFile*> by_root;
  by_root.reserve(request.sources.size());
  for (const ScanSource& source : request.sources) {
    if (const CDependencyNode* root = scanner_.FindRoot(source.path)) {
      by_root.emplace(root, target_.files[source.file_index]);
    }
  }
  std::unordered_set<const CProjectFile*> listed;
  auto list = [&](CProjectFile* file, std::string reason) {
    if (!listed.insert(file).second) return;
    files->push_back(file);
    if (reasons) reasons->push_back(std::move(reason));
  };

  for (size_t i = 0; i < scanner_.root_count(); ++i) {
    const CDependencyNode* root = scanner_.RootAt(i);
    auto found = by_root.find(root);
    if (found == by_root.end()) continue;
    CProjectFile* file = found->second;
    if (file->is_changed) {
      list(file, Quoted(NameAndExtOfFile(root->name()), "': file options have changed."));
      continue;
    }
    std::string output = project_.OutputFileOf(target_, *file);
    FileInfo info = StatOnce(output);
    if (!info.exists()) {
      list(file, Quoted(NameAndExtOfFile(output), "' does not exist."));
    } else if (newest[i] > info.time) {
      list(file, Quoted(NameAndExtOfFile(output), "' is not up to date."));
    }
  }
  return !files->empty();
}

bool UpToDateDecision::SomeLinkInputNewerThan(FileTime time) {
  for (const CProjectFile* file : target_.files) {
    if (project_.IsExcludedFromBuild(*file)) continue;
    std::string input = project_.OutputFileOf(target_, *file);
    if (!input.empty() && StatOnce(input).time > time) return true;
  }
  return false;
}

bool UpToDateDecision::TargetMustBeLinked() {
  if (target_.is_changed) return true;
  FileInfo output = StatOnce(project_.OutputFile(target_));
  if (!output.exists() || output.size == 0) return true;
  std::string indirection = project_.IndirectionFile(target_);
  if (!indirection.empty() && StatOnce(indirection).time > output.time) return true;
  return SomeLinkInputNewerThan(output.time);
}

void UpToDateDecision::AppendLinkReasons(std::vector<std::string>* reasons) {
  std::string output_path = project_.OutputFile(target_);
  FileInfo output = StatOnce(output_path);
  if (!output.exists() || output.size == 0) {
    reasons->push_back(Quoted(output_path, "\" does not exist."));
  } else if (SomeLinkInputNewerThan(output.time)) {
    reasons->push_back(Quoted(output_path, "\" is not up to date."));
  }
  if (target_.is_changed) reasons->push_back("Linker options have changed.");
  std::string indirection = project_.IndirectionFile(target_);
  if (!indirection.empty() && output.time >= 1 && StatOnce(indirection).time > output.time) {
    reasons->push_back(Quoted(indirection, "\": Indirection file has changed."));
  }
}

}  // namespace quillon
