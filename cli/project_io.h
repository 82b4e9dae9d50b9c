// Loading and saving a project through the library. A project on disk is
// NAME.qpj (the shared part) and NAME.qpj.user beside it (the per-user part).
#ifndef QUILLON_CLI_PROJECT_IO_H
#define QUILLON_CLI_PROJECT_IO_H

#include <functional>
#include <string>

#include "platform/status.h"

namespace quillon::qpm {

// The library's current project for the life of one command; the library
// lets go of it when this object goes out of scope. Commands work on it
// through the exports and the host API.
class OpenProject {
 public:
  // `path` as the user gave it: messages name it, and file access uses it.
  explicit OpenProject(std::string path);
  ~OpenProject();
  OpenProject(const OpenProject&) = delete;
  OpenProject& operator=(const OpenProject&) = delete;

  // Both parts, after checking that each file is a readable project store.
  Status Load();
  // A fresh project as the IDE's "new project" makes it.
  Status CreateDefault(bool make_source_group);
  // Both parts, each replaced atomically; files whose bytes would not
  // change are left alone.
  Status Save() const;

  const std::string& path() const { return path_; }
  std::string user_path() const { return path_ + ".user"; }

 private:
  void Begin();
  std::string path_;
};

// Takes the library's output records while a command runs (a build prints
// them); without one, build messages go to standard error. Called from the
// build thread too.
using OutputHandler = std::function<void(int channel, int action, const char* text)>;
void SetOutputHandler(OutputHandler handler);

using ProjectEdit = std::function<Status()>;

// Loads the project at `path`, runs `edit` and saves only if it succeeded:
// a failed command leaves both files as they were.
Status EditProject(const std::string& path, const ProjectEdit& edit);
// Loads the project at `path` and runs `read`; nothing is written.
Status ReadProject(const std::string& path, const ProjectEdit& read);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_PROJECT_IO_H
