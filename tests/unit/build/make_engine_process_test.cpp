// The make driver with real children on the real file system: the test
// program is its own translator (QUILLON_TEST_TRANSLATOR in the environment
// the build gives it), started through the command interpreter (cmd.exe on
// Windows, /bin/sh elsewhere), and a translation that hangs is stopped.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <random>
#include <thread>

#include "build/make_engine.h"
#include "build/message_table.h"
#include "deps/dependency_scanner.h"
#include "model/project_data.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/process_runner.h"
#include "support/fake_ui_services.h"

#ifdef _WIN32
#include <stdlib.h>
#endif

namespace quillon {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

std::vector<std::string> OwnArguments() {
  std::vector<std::string> args;
#ifdef _WIN32
  for (int i = 1; i < __argc; ++i) args.emplace_back(__argv[i]);
#else
  std::ifstream in("/proc/self/cmdline", std::ios::binary);
  std::string arg;
  while (std::getline(in, arg, '\0')) args.push_back(arg);
  if (!args.empty()) args.erase(args.begin());
#endif
  return args;
}

// As a translator: "SOURCE OBJECT" compiles (a warning, then the object;
// a source named hang.c first says so in a file, then never ends), "link
// OUTPUT" links. Runs before main, so gtest never starts in the child.
bool RunAsTranslatorIfAsked() {
  if (std::getenv("QUILLON_TEST_TRANSLATOR") == nullptr) return false;
  std::vector<std::string> args = OwnArguments();
  if (args.size() == 2 && args[0] == "link") {
    std::ofstream(args[1]) << "image";
  } else if (args.size() == 2) {
    if (fs::path(args[0]).filename() == "hang.c") {
      std::ofstream(args[1] + ".started") << "running";
      std::this_thread::sleep_for(120s);
    }
    std::fprintf(stderr, "%s:1: warning: from the test translator\n", args[0].c_str());
    std::ofstream(args[1]) << "object";
  }
  std::exit(0);
}

const bool kTranslatorRan = RunAsTranslatorIfAsked();

class LineSink : public OutputSink {
 public:
  void Output(int channel, int action, const std::string& text) override {
    std::lock_guard<std::mutex> lock(mutex_);
    if (channel == OutputBuildMessages && action == OutputAppendLine) lines_.push_back(text);
  }
  std::vector<std::string> lines() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

TEST(MakeEngineProcessTest, BuildsWithRealChildrenAndStopsOneThatHangs) {
  ASSERT_FALSE(kTranslatorRan);
  const fs::path dir = fs::temp_directory_path() /
                       ("quillon-make-" + std::to_string(std::random_device()()));
  fs::create_directories(dir);
  for (const char* name : {"a.c", "b.c", "hang.c"}) std::ofstream(dir / name) << "int x;\n";

  FileSystem& files = FileSystem::Default();
  CDependencyScanner scanner(files);
  FakeUiServices ui;
  LineSink sink;
  CMessageTable messages;
  messages.SetOutputSink(&sink);
  BuildServices services;
  services.fs = &files;
  services.runner = &ProcessRunner::Default();
  services.ui = &ui;
  services.sink = &sink;
  services.messages = &messages;
  services.scanner = &scanner;
  services.environment_variable = [](const std::string& name) {
    return GetEnvironmentVariable(name);
  };
  services.sleep = [](int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); };
  services.temp_directory = dir.string();
  CMakeEngine engine(std::move(services));

  std::unique_ptr<CProjectData> project = CreateProject(0);
  project->Initialise(0);
  project->set_project_file((dir / "p.qpj").string());
  CProjectTarget* target = project->AddTarget("T", "");
  project->SetDefaultTarget(target);
  project->AddLinkGroup("src");
  project->AddFile("a.c", "src");
  project->AddFile("b.c", "src");
  CGlobalOptions& options = project->global_options();
  options.SetString(kCompilerRelPath, GetEXEPath(), 0);
  options.SetString(kLinkerRelPath, GetEXEPath(), 0);
  options.SetStringList(kEnvironmentSettingsList, {"QUILLON_TEST_TRANSLATOR=1"});
  target->target_options().SetString(kTargetDirectoryId, "out", 0);
  target->target_options().SetString(kLinkerOptionsId, "link $(OUTPUTPATH)", 0);
  project->target_set().filter_name = "GCC";
  auto set_compiler_options = [&] {
    for (CProjectFile* file : target->files) {
      file->options().SetString(kCompilerOptionsId, "$(EDNAME) $(OUTPUTDIR)$(NOEXT).OBJ", Own);
    }
  };
  set_compiler_options();

  engine.Start(*project, *target, MakeModeMake, nullptr, 2);
  engine.Join();
  std::vector<std::string> lines = sink.lines();
  EXPECT_EQ(engine.state(), MakeStateIdle) << ::testing::PrintToString(lines);
  EXPECT_EQ(lines.back(), "0 Error(s)  2 Warning(s)");
  EXPECT_TRUE(fs::exists(dir / "out" / "p"));

  project->AddFile("hang.c", "src");
  set_compiler_options();
  engine.Start(*project, *target, MakeModeBuildAll, nullptr, 1);
  const fs::path started = dir / "out" / "hang.OBJ.started";
  for (int i = 0; i < 3000 && !fs::exists(started); ++i) std::this_thread::sleep_for(10ms);
  ASSERT_TRUE(fs::exists(started)) << ::testing::PrintToString(sink.lines());
  EXPECT_EQ(engine.state(), MakeStateCompiling);
  engine.Stop();
  engine.Join();
  lines = sink.lines();
  EXPECT_EQ(lines.back(), "Process terminated.");
  EXPECT_NE(std::find(lines.begin(), lines.end(), "Process terminated at user request."),
            lines.end());
  EXPECT_EQ(engine.state(), MakeStateFailed);
  EXPECT_FALSE(fs::exists(dir / "out" / "hang.OBJ"));

  std::error_code ignored;
  fs::remove_all(dir, ignored);
}

}  // namespace
}  // namespace quillon
