// qpm make | build | compile | link | compdb: builds through the exports, as
// the IDE's Build button does, printing what the library tells as it comes.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <nlohmann/json.hpp>
#include <thread>

#include "cli/command_groups.h"
#include "cli/diagnostics_report.h"
#include "cli/project_io.h"
#include "interface/host_api.h"
#include "interface/host_build.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "quillon/quillon.h"

namespace quillon::qpm {
namespace {

struct BuildArgs {
  std::string file;
  std::string target;
  std::vector<std::string> sources;
  int jobs = 0;
  bool quiet = false;
  std::string diagnostics;  // where the error list goes, "" for nowhere
};

// Set by Ctrl-C (or a termination request); the main thread then stops the
// build, so the signal handler itself does nothing but this.
volatile std::sig_atomic_t stop_signal = 0;

extern "C" void OnStopSignal(int) { stop_signal = 1; }

// Prints the two channels as lines arrive: build messages as they are,
// translator output indented beneath them.
class BuildPrinter {
 public:
  BuildPrinter(std::ostream& out, bool quiet) : out_(out), quiet_(quiet) {}

  void Output(int channel, int action, const char* text) {
    if (action != OutputAppendLine) {
      if (channel == OutputEndOfGroup) {
        std::lock_guard<std::mutex> lock(mutex_);
        out_.flush();
      }
      return;
    }
    if (channel == OutputTranslatorOutput && quiet_) return;
    std::lock_guard<std::mutex> lock(mutex_);
    if (channel == OutputTranslatorOutput) out_ << "    ";
    out_ << text << '\n';
  }

 private:
  std::mutex mutex_;
  std::ostream& out_;
  bool quiet_;
};

// While qpm builds a project, NAME.qpj.build holds its process id, so that
// `qpm stop NAME.qpj` from another shell can reach it.
std::string BuildMarker(const std::string& project) { return project + ".build"; }

class BuildMarkerFile {
 public:
  explicit BuildMarkerFile(std::string path) : path_(std::move(path)) {
    FileSystem::Default().WriteFileAtomically(path_, std::to_string(CurrentProcessId()) + "\n");
  }
  ~BuildMarkerFile() { FileSystem::Default().RemoveFile(path_); }
  BuildMarkerFile(const BuildMarkerFile&) = delete;
  BuildMarkerFile& operator=(const BuildMarkerFile&) = delete;

 private:
  std::string path_;
};

Status StopBuild(Cli& cli, const std::string& file) {
  using namespace std::chrono_literals;
  FileSystem& fs = FileSystem::Default();
  const std::string marker = BuildMarker(file);
  std::string text;
  if (!fs.ReadFile(marker, &text).ok()) {
    return Status::NotFound("no build of " + file + " is running");
  }
  const long pid = std::strtol(text.c_str(), nullptr, 10);
  if (!InterruptProcess(pid)) {
    // A marker left behind by a qpm that died.
    fs.RemoveFile(marker);
    return Status::NotFound("no build of " + file + " is running");
  }
  for (int i = 0; i < 100 && fs.FileExists(marker); ++i) std::this_thread::sleep_for(50ms);
  if (fs.FileExists(marker)) return Status::IoError("the build of " + file + " did not stop");
  cli.out() << "stopped the build of " << file << "\n";
  return Status::OK();
}

// Waits for the build thread, turning a stop signal into _StopMake.
void WaitForBuild() {
  using namespace std::chrono_literals;
  while (host::BuildRunning()) {
    if (stop_signal) {
      stop_signal = 0;
      _StopMake();
    }
    std::this_thread::sleep_for(20ms);
  }
  host::WaitForBuild();
}

Status Build(Cli& cli, const BuildArgs& args, int mode) {
  const int jobs = args.jobs > 0 ? args.jobs
                                 : std::max(1u, std::thread::hardware_concurrency());
  SetEnvironmentVariable("QUILLON_JOBS", std::to_string(jobs));

  OpenProject project(args.file);
  Status loaded = project.Load();
  if (!loaded.ok()) return loaded;
  std::string default_target;
  _GetDefaultTargetName(&default_target);
  if (!args.target.empty() && !_SetTarget(args.target.c_str())) {
    return Status::NotFound("no target named \"" + args.target + "\"");
  }
  if (!host::HasDefaultTarget()) return Status::NotFound("the project has no target to build");

  BuildPrinter printer(cli.out(), args.quiet);
  SetOutputHandler([&](int channel, int action, const char* text) {
    printer.Output(channel, action, text);
  });
  BuildMarkerFile marker(BuildMarker(args.file));
  stop_signal = 0;
  auto previous_int = std::signal(SIGINT, OnStopSignal);
  auto previous_term = std::signal(SIGTERM, OnStopSignal);
  if (!args.diagnostics.empty()) host::RecordDiagnostics();
  _Make(mode, mode == MakeModeCompile ? &args.sources : nullptr);
  WaitForBuild();
  std::signal(SIGINT, previous_int);
  std::signal(SIGTERM, previous_term);
  SetOutputHandler(nullptr);
  cli.out().flush();

  const int state = _WhatIsInProgress();
  // The build clears the flags of what it translated and linked; they are
  // kept, and the project's own default target with them.
  if (!args.target.empty() && !default_target.empty()) _SetTarget(default_target.c_str());
  Status saved = project.Save();
  if (!saved.ok()) return saved;
  if (!args.diagnostics.empty()) {
    Status written = WriteDiagnostics(args.diagnostics, host::Diagnostics(),
                                      DirOfFile(ExpandToFullPath(args.file)));
    if (!written.ok()) return written;
  }
  if (state != MakeStateIdle) return Status::IoError("the build failed");
  return Status::OK();
}

Status WriteCompileCommands(Cli& cli, const std::string& file, const std::string& out_path) {
  OpenProject project(file);
  Status loaded = project.Load();
  if (!loaded.ok()) return loaded;
  nlohmann::json entries = nlohmann::json::array();
  for (const host::CompileCommand& command : host::CompileCommands()) {
    entries.push_back({{"directory", command.directory},
                       {"file", command.file},
                       {"command", command.command}});
  }
  const std::string path =
      out_path.empty() ? DirOfFile(ExpandToFullPath(file)) + "compile_commands.json" : out_path;
  Status written = FileSystem::Default().WriteFileAtomically(path, entries.dump(2) + "\n");
  if (written.ok()) cli.out() << path << ": " << entries.size() << " entries\n";
  return written;
}

struct FilterArgs {
  std::string name;
  std::string translator = "compiler";
  std::string source;
  std::string captured;
  bool json = false;
};

Status RunFilter(Cli& cli, const FilterArgs& args) {
  const int translator = args.translator == "assembler" ? TranslatorAssembler
                         : args.translator == "linker"  ? TranslatorLinker
                                                        : TranslatorCompiler;
  std::vector<host::FilterEntry> entries;
  Status status = host::RunFilter(args.name, translator, args.source, args.captured, &entries);
  if (!status.ok()) return status;
  for (const host::FilterEntry& entry : entries) {
    if (args.json) {
      cli.out() << Dump(EntryJson(entry), -1) << '\n';
    } else {
      cli.out() << entry.file << ':' << entry.line << ':' << entry.column << ": "
                << SeverityName(entry.severity) << ": " << entry.text;
      if (!entry.code.empty()) cli.out() << " [" << entry.code << ']';
      cli.out() << '\n';
    }
  }
  return Status::OK();
}

void AddBuildCommand(Cli& cli, const char* name, const char* help, int mode) {
  auto args = std::make_shared<BuildArgs>();
  CLI::App* command =
      cli.AddCommand(cli.app(), name, help, [&cli, args, mode] { return Build(cli, *args, mode); });
  command->add_option("FILE", args->file, "the project file")->required();
  if (mode == MakeModeCompile) {
    command->add_option("SOURCE", args->sources, "the project files to compile")->required();
  }
  command->add_option("--target", args->target,
                      "build this target instead of the default one (the default stays)");
  command->add_option("-j,--jobs", args->jobs,
                      "compiles at once (default: the number of cores)")
      ->check(CLI::PositiveNumber);
  command->add_flag("-q,--quiet", args->quiet, "build messages only, no translator output");
  command
      ->add_option("--diagnostics", args->diagnostics,
                   "write the error list to FILE.sarif (SARIF 2.1.0) or FILE.json")
      ->check([](const std::string& path) {
        return IsDiagnosticsName(path) ? "" : "the file must end in .sarif or .json";
      });
}

}  // namespace

void AddBuildCommands(Cli& cli) {
  AddBuildCommand(cli, "make", "translate what is out of date and link the default target",
                  MakeModeMake);
  AddBuildCommand(cli, "build", "translate every file and link, whatever is up to date",
                  MakeModeBuildAll);
  AddBuildCommand(cli, "compile", "translate the named files only", MakeModeCompile);
  AddBuildCommand(cli, "link", "link the default target from the objects there are",
                  MakeModeLink);

  auto filter = std::make_shared<FilterArgs>();
  CLI::App* filter_command = cli.AddCommand(
      cli.app(), "filter", "read a captured translator output as the build's error filter does",
      [&cli, filter] { return RunFilter(cli, *filter); });
  filter_command->add_option("NAME", filter->name, "the filter, as FilterName names it")
      ->required();
  filter_command->add_option("CAPTURED_FILE", filter->captured, "what the translator printed")
      ->required();
  filter_command->add_option("--translator", filter->translator, "whose output it is")
      ->check(CLI::IsMember({"compiler", "assembler", "linker"}));
  filter_command->add_option("--source-file", filter->source,
                             "the file that was translated (for messages that name none)");
  filter_command->add_flag("--json", filter->json, "one JSON object per entry and line");

  auto stop_file = std::make_shared<std::string>();
  CLI::App* stop = cli.AddCommand(cli.app(), "stop", "stop the build that another qpm runs",
                                  [&cli, stop_file] { return StopBuild(cli, *stop_file); });
  stop->add_option("FILE", *stop_file, "the project file being built")->required();

  struct CompdbArgs {
    std::string file;
    std::string out;
  };
  auto compdb = std::make_shared<CompdbArgs>();
  CLI::App* command = cli.AddCommand(
      cli.app(), "compdb", "write compile_commands.json for clangd and clang-tidy",
      [&cli, compdb] { return WriteCompileCommands(cli, compdb->file, compdb->out); });
  command->add_option("FILE", compdb->file, "the project file")->required();
  command->add_option("-o,--output", compdb->out,
                      "where to write it (default: beside the project file)");
}

}  // namespace quillon::qpm
