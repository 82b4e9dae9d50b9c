// Which files of a target must be translated and whether it must be linked,
// with the reasons told in words. Reasons are appended to the caller's list,
// never cleared, so "why" reads exactly what the decision found.
#ifndef QUILLON_DEPS_UP_TO_DATE_H
#define QUILLON_DEPS_UP_TO_DATE_H

#include <string>
#include <unordered_map>
#include <vector>

#include "deps/dependency_scanner.h"
#include "platform/file_system.h"

namespace quillon {

class CProjectData;
class CProjectTarget;
class CProjectFile;

class UpToDateDecision {
 public:
  UpToDateDecision(CProjectData& project, CProjectTarget& target, CDependencyScanner& scanner,
                   FileSystem& fs)
      : project_(project), target_(target), scanner_(scanner), fs_(fs) {}

  // Updates the dependency graph (from scratch only when the scanner's reset
  // flag is set), then fills `files` (ordered, each once) with the files to
  // translate and appends a reason per file when `reasons` is given.
  // Returns whether any file must be translated.
  bool FilesToTranslate(std::vector<CProjectFile*>* files, std::vector<std::string>* reasons,
                        ScanObserver* observer);

  // The make driver's test: whether the target must be linked again.
  bool TargetMustBeLinked();

  // The link-level reasons that "why" tells before the file-level ones.
  void AppendLinkReasons(std::vector<std::string>* reasons);

 private:
  // A file time, asked of the file system once per decision.
  FileInfo StatOnce(const std::string& path);
  // Whether a link input of the target is newer than `time`.
  bool SomeLinkInputNewerThan(FileTime time);

  CProjectData& project_;
  CProjectTarget& target_;
  CDependencyScanner& scanner_;
  FileSystem& fs_;
  std::unordered_map<std::string, FileInfo> stats_;
};

}  // namespace quillon

#endif  // QUILLON_DEPS_UP_TO_DATE_H
