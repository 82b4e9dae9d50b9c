// CProjectData: the one open project, and the factory of its option sets.
//
// Structure edits act on every target at once, so that all targets list the
// same groups with the same files. The first target is the reference copy
// for whole-project enumeration, whichever target is the default.
#ifndef QUILLON_MODEL_PROJECT_DATA_H
#define QUILLON_MODEL_PROJECT_DATA_H

#include <memory>
#include <string>
#include <string_view>

#include "model/file_options.h"
#include "model/global_options.h"
#include "model/option_set.h"
#include "model/project_target_set.h"
#include "model/target_options.h"

namespace quillon {

// What a project file is, by its extension.
enum FileKind {
  kFileOther = 0,
  kFileCompilerSource = 1,
  kFileAssemblerSource = 2,
  kFileHeader = 3,
  kFileAssemblerHeader = 4,
  kFileLinkerInput = 5,
};

class CProjectData {
 public:
  // A project of the family `Family` (this class or one derived from it)
  // with its option sets made by the family's factory below. Only this
  // makes projects: while a constructor runs, virtual calls never reach the
  // derived family. A derived family befriends CProjectData.
  template <typename Family = CProjectData>
  static std::unique_ptr<Family> Create(int compiler_type = 0) {
    std::unique_ptr<Family> project(new Family(compiler_type));
    project->CreateOptionSets();
    return project;
  }
  virtual ~CProjectData();
  CProjectData(const CProjectData&) = delete;
  CProjectData& operator=(const CProjectData&) = delete;

  // Factory of the option sets of this translator family; the caller owns
  // what it gets.
  virtual std::unique_ptr<COptionSet> NewFileOptions() const;
  virtual std::unique_ptr<COptionSet> NewLinkGroupOptions() const;
  virtual std::unique_ptr<COptionSet> NewTargetOptions() const;
  virtual std::unique_ptr<COptionSet> NewProjectOptions() const;
  virtual std::unique_ptr<CGlobalOptions> NewGlobalOptions() const;
  // A new, empty project of the same family.
  virtual std::unique_ptr<CProjectData> Clone() const;

  // Passes `level` to the target set and then to every option set.
  int Initialise(int level);
  // Puts the defaults back at every level (see COptionSet::SetDefault).
  void SetDefault(int level);
  // Makes this project a full copy of `other` (same family).
  void CopyFrom(const CProjectData& other);

  int Load(CSettingsRegistry& store, TransferPass pass);
  int Save(CSettingsRegistry& store, TransferPass pass) const;

  CProjectTargetSet& target_set() { return *target_set_; }
  const CProjectTargetSet& target_set() const { return *target_set_; }
  COptionSet& project_options() { return *project_options_; }
  CGlobalOptions& global_options() { return *global_options_; }
  const CGlobalOptions& global_options() const { return *global_options_; }
  COptionSet& file_default_options() { return *file_default_options_; }

  int compiler_type() const { return compiler_type_; }

  // The project file (the IRF name); relative names are resolved against
  // its directory, which keeps a trailing separator.
  const std::string& project_file() const { return project_file_; }
  const std::string& directory() const { return directory_; }
  void set_project_file(const std::string& path);

  // --- Targets
  CProjectTarget* AddTarget(const std::string& name, const std::string& copy_from);
  bool DeleteTarget(const std::string& name);
  CProjectTarget* FindTarget(const std::string& name) const;
  CProjectTarget* first_target() const;
  CProjectTarget* default_target() const { return target_set_->default_target; }
  void SetDefaultTarget(CProjectTarget* target) { target_set_->default_target = target; }
  bool RenameTarget(const std::string& old_name, const std::string& new_name);

  // --- Link groups (in every target)
  bool AddLinkGroup(const std::string& name);
  bool DeleteLinkGroup(const std::string& name);
  // Moves the group one place toward the end (delta >= 0) or the start.
  bool MoveLinkGroup(const std::string& name, int delta);

  // --- Files (in every target)
  // Empty group name: the first group of the first target.
  bool AddFile(const std::string& file_name, const std::string& group_name);
  bool DeleteProjectFile(const std::string& file_name);
  bool ChangeFileGroup(const std::string& file_name, const std::string& group_name);
  // Moves the file one place within its group, as MoveLinkGroup.
  bool MoveProjectFile(const std::string& file_name, int delta);
  void DeleteAllFiles();
  bool IsFileInProject(const std::string& file_name, int flag) const;

  // --- Names and kinds
  // The file's full path, resolved against the project's directory; empty
  // for an empty name.
  std::string FullNameOfFile(const std::string& file_name, int flag1 = 0, int flag2 = 0) const;
  FileKind ClassifyFile(const std::string& file_name) const;
  bool IsExcludedFromBuild(const CProjectFile& file) const;
  // Whether compiling the file produces an assembler file that is then
  // assembled (its RunAssembler option).
  bool ProducesIntermediateAssemblerFile(const CProjectFile& file) const;
  // The target's output directory (with a trailing separator) and output
  // file, as full paths.
  std::string OutputDirectory(const CProjectTarget& target) const;
  std::string OutputFile(const CProjectTarget& target) const;
  // The object a compiler or assembler source is translated into; empty for
  // other files.
  std::string OutputFileOf(const CProjectTarget& target, const CProjectFile& file) const;
  // The target's indirection file as a full path, or empty.
  std::string IndirectionFile(const CProjectTarget& target) const;

 protected:
  explicit CProjectData(int compiler_type);

 private:
  void CreateOptionSets();

  int compiler_type_;
  std::string project_file_;
  std::string directory_;
  std::unique_ptr<CProjectTargetSet> target_set_;
  std::unique_ptr<COptionSet> project_options_;
  std::unique_ptr<CGlobalOptions> global_options_;
  std::unique_ptr<COptionSet> file_default_options_;
};

// The project of a compiler type; only type 0 (the universal family) is
// defined, so any other type gives null.
std::unique_ptr<CProjectData> CreateProject(int compiler_type);


}  // namespace quillon

#endif  // QUILLON_MODEL_PROJECT_DATA_H
