// qpm file add|delete|move: project files, which every target shares.
#include <memory>
#include <ostream>

#include "cli/cli.h"
#include "cli/lookup.h"
#include "cli/project_command.h"
#include "cli/text_format.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "quillon/quillon.h"

namespace quillon::qpm {
namespace {

struct FileArgs {
  std::string file;
  std::string group;
  std::string path;
  std::vector<std::string> paths;
  std::ostream* err = nullptr;
};

// Every name is checked before the first is added, so a bad one adds none.
Status StoredNamesToAdd(const FileArgs& args, std::vector<std::string>* names) {
  for (const std::string& path : args.paths) {
    std::string name = StoredFileName(path);
    if (name.empty()) return Status::Error("a file name cannot be empty");
    if (IsProjectFile(name)) {
      return Status::Error("file " + Quote(name) + " is already in the project");
    }
    for (const std::string& earlier : *names) {
      if (PathsEqual(FullFileName(earlier), FullFileName(name))) {
        return Status::Error("file " + Quote(name) + " is named twice");
      }
    }
    names->push_back(name);
  }
  return Status::OK();
}

Status AddFiles(const FileArgs& args) {
  Status status = FindGroup(args.group);
  std::vector<std::string> names;
  if (status.ok()) status = StoredNamesToAdd(args, &names);
  if (!status.ok()) return status;
  for (const std::string& name : names) {
    _AddProjectFile(name.c_str(), args.group.c_str());
    // Projects may list files that a build makes, so a missing one is
    // only worth a word.
    if (!FileSystem::Default().FileExists(FullFileName(name))) {
      *args.err << "qpm: warning: " << Quote(name) << " does not exist (yet)\n";
    }
  }
  return Status::OK();
}

Status DeleteFileCommand(const FileArgs& args) {
  std::string name;
  Status status = FindProjectFile(args.path, &name);
  if (status.ok()) _DeleteProjectFile(name.c_str());
  return status;
}

Status MoveFileCommand(const FileArgs& args) {
  std::string name;
  Status status = FindProjectFile(args.path, &name);
  if (status.ok()) status = FindGroup(args.group);
  if (status.ok()) _ChangeProjectFileGroup(name.c_str(), args.group.c_str());
  return status;
}

constexpr const char* kPathHelp =
    "a path from the current directory (stored relative to the project's directory unless "
    "absolute), or the name as qpm show lists it";

}  // namespace

void AddFileCommands(Cli& cli) {
  CLI::App* group = cli.AddGroup("file", "Add, delete and move project files (in every target)");
  auto add = std::make_shared<FileArgs>();
  add->err = &cli.err();
  CLI::App* command = AddProjectCommand<FileArgs>(
      cli, *group, "add", "Add files to the end of a link group", Access::kEdit, add, AddFiles);
  command->add_option("GROUP", add->group, "the link group")->required();
  command->add_option("PATH", add->paths, kPathHelp)->required();

  auto del = std::make_shared<FileArgs>();
  command = AddProjectCommand<FileArgs>(cli, *group, "delete", "Delete a file from the project",
                                        Access::kEdit, del, DeleteFileCommand);
  command->add_option("PATH", del->path, kPathHelp)->required();

  auto move = std::make_shared<FileArgs>();
  command = AddProjectCommand<FileArgs>(cli, *group, "move",
                                        "Move a file to the end of another link group",
                                        Access::kEdit, move, MoveFileCommand);
  command->add_option("PATH", move->path, kPathHelp)->required();
  command->add_option("GROUP", move->group, "the link group it moves to")->required();
}

}  // namespace quillon::qpm
