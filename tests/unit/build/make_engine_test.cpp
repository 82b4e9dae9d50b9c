// The make driver on a fake file system and a fake process runner: what the
// host sees (lines in order, states, the end callback, beeps) for each way a
// build can go. Then reading captured output and the translators' environment.
// Last, real children on the real file system: the test program is its own
// translator (QUILLON_TEST_TRANSLATOR in the environment the build gives it),
// started through the command interpreter, and a translation that hangs is stopped.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <random>
#include <thread>
#include <tuple>

#include "build/build_context.h"
#include "build/captured_output.h"
#include "build/make_engine.h"
#include "build/message_table.h"
#include "deps/dependency_scanner.h"
#include "model/project_data.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/process_runner.h"
#include "support/fake_file_system.h"
#include "support/fake_process_runner.h"
#include "support/fake_ui_services.h"
#include "support/native_path.h"

#ifdef _WIN32
#include <stdlib.h>
#endif

namespace quillon {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Record = std::tuple<int, int, std::string>;
using Lines = std::vector<std::string>;

Lines LinesOf(const std::vector<Record>& records, int channel) {
  Lines lines;
  for (const auto& [c, action, text] : records) {
    if (c == channel && action == OutputAppendLine) lines.push_back(text);
  }
  return lines;
}

bool Has(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

class RecordingSink : public OutputSink {
 public:
  void Output(int channel, int action, const std::string& text) override {
    std::lock_guard<std::mutex> lock(mutex_);
    records_.emplace_back(channel, action, text);
  }
  std::vector<Record> records() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return records_;
  }
  void Clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    records_.clear();
  }
  // The appended lines of one channel.
  std::vector<std::string> Lines(int channel) const { return LinesOf(records(), channel); }

 private:
  mutable std::mutex mutex_;
  std::vector<Record> records_;
};

class MakeEngineTest : public ::testing::Test {
 protected:
  MakeEngineTest() : runner(fs), scanner(fs) {
    fs.set_current_directory(Rooted("/p"));
    fs.MakeDirectories(Rooted("/tmp"));
    project.Initialise(0);
    project.set_project_file(Rooted("/p/fw.qpj"));
    target = project.AddTarget("T", "");
    project.SetDefaultTarget(target);
    project.AddLinkGroup("src");
    for (const char* name : {"main.c", "util.c", "start.asm"}) {
      project.AddFile(name, "src");
      fs.Create(Rooted("/p/") + name, "int x;\n");
    }
    CGlobalOptions& options = project.global_options();
    options.SetString(kCompilerRelPath, "cc", 0);
    options.SetString(kAssemblerRelPath, "as", 0);
    options.SetString(kLinkerRelPath, "ld", 0);
    options.SetString(kExecutableFileName, "fw.elf", 0);
    for (int id : {kRunCommandInterpreterCmp, kRunCommandInterpreterAsm, kRunCommandInterpreterLnk,
                   kChangeWorkingDirectory}) {
      options.SetInt(id, 0, 0);
    }
    target->target_options().SetString(kTargetDirectoryId, "out", 0);
    target->target_options().SetString(kLinkerOptionsId, "-o $(OUTPUTPATH)", 0);
    project.target_set().filter_name = "GCC";
    fs.Tick();
    for (const char* stem : {"main", "util", "start"}) Produces(stem);
    runner.On("ld ", {.files = {{Out("fw.elf"), "image"}}});
    messages.SetOutputSink(&sink);
    auto host = [this](int code, void* record) {
      if (code != HostBuildResult) return;
      auto* result = static_cast<BuildResultRecord*>(record);
      results.emplace_back(result->makeState, result->mode);
    };
    engine = std::make_unique<CMakeEngine>(BuildServices{
        .fs = &fs, .runner = &runner, .ui = &ui, .sink = &sink, .messages = &messages,
        .scanner = &scanner, .scan_observer = nullptr, .host = host,
        .environment_variable = [this](const std::string& name) {
          return name == "COMSPEC" ? comspec : std::string(); },
        .sleep = [this](int) { fs.Tick(); },
        .temp_directory = Rooted("/tmp"), .host_directory = Rooted("/ide/")});
  }

  static std::string Out(const std::string& name) { return Rooted("/p/out/") + name; }

  // The translator run for `stem` writes its object.
  void Produces(const std::string& stem, const std::string& stderr_text = "") {
    runner.On(Rooted("/p/") + stem + ".",
              {.stderr_text = stderr_text, .files = {{Out(stem + ".OBJ"), "obj"}}});
  }

  void Build(int mode = MakeModeMake, int jobs = 1, const Lines* files = nullptr) {
    engine->Start(project, *target, mode, files, jobs);
    engine->Join();
  }

  Lines BuildLines() const { return sink.Lines(OutputBuildMessages); }

  FakeFileSystem fs;
  FakeProcessRunner runner;
  FakeUiServices ui;
  RecordingSink sink;
  CMessageTable messages;
  CDependencyScanner scanner;
  std::unique_ptr<CProjectData> owned_project = CreateProject(0);
  CProjectData& project = *owned_project;
  CProjectTarget* target = nullptr;
  std::string comspec;
  std::vector<std::pair<int, int>> results;
  std::unique_ptr<CMakeEngine> engine;
};

TEST_F(MakeEngineTest, MakeCompilesAssemblesAndLinksThenFindsTheTargetUpToDate) {
  Build();
  const std::string caption = "\"fw.elf (Dir:" + Rooted("/p/out/") + ")\"";
  EXPECT_EQ(BuildLines(),
            (Lines{"Compiling ...", "main.c", "start.asm", "util.c", "Linking",
                   caption + "  ... was successfully generated.", "0 Error(s)  0 Warning(s)"}));
  EXPECT_EQ(engine->state(), MakeStateIdle);
  EXPECT_EQ(results, (std::vector<std::pair<int, int>>{{MakeStateIdle, MakeModeMake}}));
  ASSERT_EQ(ui.beeps().size(), 1u);
  EXPECT_EQ(ui.beeps()[0].frequency_hz, 300);
  // The build starts by clearing channel 1, then channel 0.
  auto records = sink.records();
  EXPECT_EQ(records[0], Record(OutputTranslatorOutput, OutputClear, ""));
  EXPECT_EQ(records[1], Record(OutputBuildMessages, OutputClear, ""));
  const auto commands = runner.command_lines();
  ASSERT_EQ(commands.size(), 4u);
  EXPECT_EQ(commands[0], "cc " + Rooted("/p/main.c"));
  EXPECT_EQ(commands[3], "ld -o " + Out("fw.elf"));
  // Captured output is shown in blocks on the translator channel.
  const auto translator = sink.Lines(OutputTranslatorOutput);
  EXPECT_TRUE(Has(translator, "--------------- Standard OUTPUT from compiling main.c. ---------------"));
  EXPECT_TRUE(Has(translator, "--------------- Standard ERROR from linking. ---------------"));

  fs.Tick();
  sink.Clear();
  Build();
  EXPECT_EQ(BuildLines(), (Lines{caption + "  ... is up to date.", "0 Error(s)  0 Warning(s)"}));
  EXPECT_EQ(runner.command_lines().size(), 4u);
  EXPECT_EQ(engine->state(), MakeStateIdle);
}

TEST_F(MakeEngineTest, DiagnosticsBecomeErrorListLinesAndAMissingObjectPreventsTheLink) {
  runner.On(Rooted("/p/main."),
            {.stderr_text = "main.c:3: error: 'y' undeclared\nmain.c:4: warning: unused x\n"});
  Build();
  const auto lines = BuildLines();
  EXPECT_TRUE(Has(lines, Rooted("/p/main.c") + " (3,1) : Error : 'y' undeclared"));
  EXPECT_TRUE(Has(lines, Rooted("/p/main.c") + " (4,1) : Warning : unused x"));
  EXPECT_TRUE(Has(lines, "Error [PM17]: Output file \"" + Out("main.OBJ") + "\" was not generated."));
  // The other files are still translated; the link is not tried.
  EXPECT_TRUE(Has(lines, "util.c"));
  EXPECT_FALSE(Has(lines, "Linking"));
  EXPECT_EQ(lines[lines.size() - 2], "1 Error(s)  1 Warning(s)");
  EXPECT_EQ(lines.back(), "Process terminated.");
  EXPECT_EQ(engine->state(), MakeStateFailed);
  EXPECT_EQ(ui.beeps().back().frequency_hz, 500);
}

TEST_F(MakeEngineTest, AnErrorFileIsDeletedBeforeTheRunAndShownAfterIt) {
  project.target_set().filter_name = "Cosmic (err)";
  fs.Create(Rooted("/p/util.err"), "stale\n");
  runner.On(Rooted("/p/main."),
            {.files = {{Out("main.OBJ"), "o"}, {Rooted("/p/main.err"), "E1 main.c 3\n"}}});
  Build(MakeModeBuildAll);
  const auto translator = sink.Lines(OutputTranslatorOutput);
  auto block = std::find(translator.begin(), translator.end(),
                         "--------------- Content of file main.err ---------------");
  ASSERT_NE(block, translator.end());
  EXPECT_EQ(*(block + 1), "E1 main.c 3");
  EXPECT_TRUE(Has(translator, "File \"" + Rooted("/p/util.err") + "\" can't be opened for reading"));
}

TEST_F(MakeEngineTest, NoFilterMeansNoSummaryAndATargetWithoutFilesStartsNothing) {
  project.target_set().filter_name = kNoFilter;
  runner.On(Rooted("/p/main."),
            {.stderr_text = "main.c:3: error: y\n", .files = {{Out("main.OBJ"), "o"}}});
  Build();
  EXPECT_EQ(BuildLines().back(), "\"fw.elf (Dir:" + Rooted("/p/out/") + ")\"  ... was successfully generated.");

  project.DeleteAllFiles();
  results.clear();
  Build();
  EXPECT_EQ(BuildLines().back(), "Error [PM8]: There are no files in default target !");
  EXPECT_TRUE(results.empty());
  EXPECT_EQ(ui.beeps().back().frequency_hz, 500);
}

TEST_F(MakeEngineTest, ATranslatorThatCannotStartCountsAnErrorAndFailsTheBuild) {
  runner.On("cc ", {.start_error = Status::NotFound("No such file or directory")});
  Build(MakeModeBuildAll);
  const auto lines = BuildLines();
  EXPECT_TRUE(Has(lines, "No such file or directory"));
  EXPECT_TRUE(Has(lines, "Error [PM1]: Error running compiler ... \"cc\" with parameters \"" +
                             Rooted("/p/main.c") + "\""));
  EXPECT_TRUE(Has(lines, "1 Error(s)  0 Warning(s)"));
  EXPECT_FALSE(Has(lines, "util.c"));
  EXPECT_EQ(results.back().first, MakeStateFailed);
}

TEST_F(MakeEngineTest, StopEndsTheRunningChildAndTheBuild) {
  runner.On(Rooted("/p/main."), {.runs_until_terminated = true});
  engine->Start(project, *target, MakeModeMake, nullptr, 1);
  while (runner.running() == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_EQ(engine->state(), MakeStateCompiling);
  // A second build while one runs is not started.
  engine->Start(project, *target, MakeModeBuildAll, nullptr, 1);
  EXPECT_EQ(runner.started().size(), 1u);
  engine->Stop();
  engine->Join();
  const auto lines = BuildLines();
  EXPECT_TRUE(Has(lines, "Process terminated at user request."));
  EXPECT_EQ(lines.back(), "Process terminated.");
  EXPECT_FALSE(Has(lines, "util.c"));
  EXPECT_EQ(engine->state(), MakeStateFailed);
  EXPECT_EQ(runner.running(), 0);
}

TEST_F(MakeEngineTest, ParallelCompilesShowExactlyWhatOneJobShows) {
  for (int i = 0; i < 6; ++i) {
    std::string name = "f" + std::to_string(i) + ".c";
    project.AddFile(name, "src");
    fs.Create(Rooted("/p/") + name, "int f;\n");
    Produces("f" + std::to_string(i), i == 2 ? name + ":1: warning: w\n" : "");
  }
  Produces("f4", "f4.c:9: error: e\n");
  fs.Tick();
  Build(MakeModeBuildAll, 1);
  const auto sequential = sink.records();

  sink.Clear();
  Build(MakeModeBuildAll, 3);
  EXPECT_EQ(sink.Lines(OutputBuildMessages), LinesOf(sequential, OutputBuildMessages));
  EXPECT_EQ(sink.Lines(OutputTranslatorOutput), LinesOf(sequential, OutputTranslatorOutput));
  EXPECT_EQ(sink.records().size(), sequential.size());
  EXPECT_EQ(runner.running(), 0);
}

TEST_F(MakeEngineTest, HooksRunAroundTheStepsAndParametersAreShownWhenAsked) {
  CGlobalOptions& options = project.global_options();
  options.SetString(kRunBeforeMake, "pre.sh", 0);
  options.SetString(kRunBeforeMakeParam, "$(OUTPUTFILE)", 0);
  options.SetInt(kDisplayParameters, 1, 0);
  runner.On("after", {.start_error = Status::NotFound("not there")});
  options.SetString(kRunAfterLinker, "after", 0);
  Build();
  const auto lines = BuildLines();
  const std::string pre = Rooted("/p/pre.sh");
  EXPECT_EQ(lines[0], "Running ... \"" + pre + "\" ...  with parameters  \"" + pre + " fw.elf\"");
  EXPECT_EQ(lines[1], "OK.");
  EXPECT_TRUE(Has(lines, "main.c ...  with parameters  \"cc " + Rooted("/p/main.c") + "\""));
  // A hook that cannot run is told, and the build still succeeds.
  EXPECT_TRUE(Has(lines, "Error [PM6]: Error running external program ... \"" +
                             Rooted("/p/after") + "\""));
  EXPECT_EQ(engine->state(), MakeStateIdle);
}

TEST_F(MakeEngineTest, LinkOnlyNamesTheInputsThatAreMissing) {
  Build(MakeModeLink);
  const auto lines = BuildLines();
  EXPECT_TRUE(Has(lines, "Error [PM12]: These input files for linker not exist or are not up to date!"));
  EXPECT_TRUE(Has(lines, "Error [PM22]: " + Out("main.OBJ") + ": (Not exist.)"));
  EXPECT_TRUE(Has(lines, "Output file \"" + Out("fw.elf") + "\" was not generated"));
  EXPECT_EQ(lines.back(), "Process terminated.");
  EXPECT_EQ(results.back(), std::make_pair(int{MakeStateFailed}, int{MakeModeLink}));
}

TEST_F(MakeEngineTest, CompileModeTranslatesTheNamedFilesAndAssemblesWhatACompileMade) {
  target->FindFile("main.c")->options().SetInt(kRunAssemblerId, 1, Own);
  runner.On("as " + Out("main.ASM"), {.files = {{Out("main.OBJ"), "from the assembler"}}});
  Lines files{"util.c", "nothere.c", "main.c"};
  Build(MakeModeCompile, 1, &files);
  EXPECT_EQ(BuildLines(), (Lines{"Compiling ...", "util.c", "main.c", "main.c",
                                 "Process terminated successfully.", "0 Error(s)  0 Warning(s)"}));
  EXPECT_EQ(runner.command_lines().back(), "as " + Out("main.ASM"));
}

TEST_F(MakeEngineTest, RunsGoThroughTheInterpreterAndIntoTheirDirectories) {
  CGlobalOptions& options = project.global_options();
  options.SetInt(kRunCommandInterpreterCmp, 1, 0);
  options.SetInt(kChangeWorkingDirectory, 1, 0);
  comspec = "C:\\cmd.exe";
  Lines files{"main.c"};
  Build(MakeModeCompile, 1, &files);
  ASSERT_FALSE(runner.started().empty());
  EXPECT_EQ(runner.command_lines().back().rfind("C:\\cmd.exe /c cc ", 0), 0u);
  EXPECT_EQ(runner.started().back().working_directory, Rooted("/p/"));

  options.SetString(kRootDir, "nowhere", 0);
  options.SetInt(kChangeWorkingDirectory, 0, 0);
  Build(MakeModeCompile, 1, &files);
  EXPECT_TRUE(Has(BuildLines(), "Invalid working directory"));
}

TEST_F(MakeEngineTest, TheCompilePassStopsAtTheErrorLimit) {
  std::string many;
  for (int i = 0; i < 200; ++i) many += "main.c:1: error: e\n";
  runner.On(Rooted("/p/main."), {.stderr_text = many, .files = {{Out("main.OBJ"), "o"}}});
  Build(MakeModeBuildAll);
  EXPECT_FALSE(Has(BuildLines(), "util.c"));
  EXPECT_TRUE(Has(BuildLines(), "200 Error(s)  0 Warning(s)"));
}

TEST_F(MakeEngineTest, ExternalMakeReplacesTheBuiltInSteps) {
  CGlobalOptions& options = project.global_options();
  options.SetInt(kExternalMake, 1, 0);
  options.SetString(kExternalMakeFile, "make", 0);
  options.SetString(kExternalMakeFileParameters, "-C fw", 0);
  runner.On("make -C fw",
            {.stdout_text = "cc -c main.c\nld\n", .files = {{Out("fw.elf"), "image"}}});
  Build();
  const auto lines = BuildLines();
  const std::string running = "Running external make file (" + Rooted("/p/make") + ")";
  EXPECT_EQ(Lines(lines.begin(), lines.begin() + 3), (Lines{running, "cc -c main.c", "ld"}));
  EXPECT_EQ(engine->state(), MakeStateIdle);
}

Lines CapturedLines(std::string_view contents) {
  Lines lines;
  ForEachCapturedLine(contents, [&](std::string_view line) { lines.emplace_back(line); });
  return lines;
}

TEST(CapturedOutputTest, LinesEndAtLineFeedsAndTheLastIsAlwaysShown) {
  EXPECT_EQ(CapturedLines("a\r\nb\n"), (Lines{"a", "b", ""}));
  EXPECT_EQ(CapturedLines("a\nb"), (Lines{"a", "b"}));
  EXPECT_EQ(CapturedLines(""), (Lines{""}));
  EXPECT_EQ(CapturedLines("x\ry\n"), (Lines{"x\ry", ""}));
  // 1999 bytes and a line feed fit a 2000-byte piece; a 2000-byte line does
  // not, and ends the block unless it is all that is left.
  EXPECT_EQ(CapturedLines(std::string(1999, 'a') + "\nz"), (Lines{std::string(1999, 'a'), "z"}));
  EXPECT_EQ(CapturedLines("ok\n" + std::string(2000, 'a') + "\nz"), (Lines{"ok", kNotATextFile}));
  EXPECT_EQ(CapturedLines(std::string(2000, 'a')), (Lines{std::string(2000, 'a')}));
  EXPECT_EQ(CapturedLines(std::string(4000, '\0')), (Lines{kNotATextFile}));
}

// A file that cannot be read is shown by the error-file test above.
TEST(CapturedOutputTest, LiveLinesAreShownOnceComplete) {
  FakeFileSystem fs;
  Lines printed;
  auto print = [&](const std::string& line) { printed.push_back(line); };
  const std::string out = Rooted("/make.out");
  LiveLineReader live(fs, out);
  live.Poll(print);
  fs.Create(out, "one\ntw");
  live.Poll(print);
  fs.Create(out, "one\ntwo\r\nthree\n");
  live.Poll(print);
  live.Poll(print);
  EXPECT_EQ(printed, (Lines{"one", "two", "three"}));
}

TEST(EnvironmentPairsTest, KeepsWellFormedPairsUpToFifty) {
  EXPECT_EQ(EnvironmentPairs({" PATH=/bin ", "=x", "EMPTY=", "A=b=c", "noequals"}),
            (std::vector<std::pair<std::string, std::string>>{{"PATH", "/bin"}, {"A", "b=c"}}));
  EXPECT_EQ(EnvironmentPairs(Lines(60, "X=1")).size(), 50u);
}

Lines OwnArguments() {
  Lines args;
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
  Lines args = OwnArguments();
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

TEST(MakeEngineProcessTest, BuildsWithRealChildrenAndStopsOneThatHangs) {
  ASSERT_FALSE(kTranslatorRan);
  const fs::path dir =
      fs::temp_directory_path() / ("quillon-make-" + std::to_string(std::random_device()()));
  fs::create_directories(dir);
  for (const char* name : {"a.c", "b.c", "hang.c"}) std::ofstream(dir / name) << "int x;\n";

  FileSystem& files = FileSystem::Default();
  CDependencyScanner scanner(files);
  FakeUiServices ui;
  RecordingSink sink;
  CMessageTable messages;
  messages.SetOutputSink(&sink);
  CMakeEngine engine(BuildServices{
      .fs = &files, .runner = &ProcessRunner::Default(), .ui = &ui, .sink = &sink,
      .messages = &messages, .scanner = &scanner, .scan_observer = nullptr, .host = {},
      .environment_variable = [](const std::string& name) { return GetEnvironmentVariable(name); },
      .sleep = [](int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); },
      .temp_directory = dir.string(), .host_directory = ""});

  std::unique_ptr<CProjectData> project = CreateProject(0);
  project->Initialise(0);
  project->set_project_file((dir / "p.qpj").string());
  CProjectTarget* target = project->AddTarget("T", "");
  project->SetDefaultTarget(target);
  project->AddLinkGroup("src");
  for (const char* name : {"a.c", "b.c"}) project->AddFile(name, "src");
  CGlobalOptions& options = project->global_options();
  for (int id : {kCompilerRelPath, kLinkerRelPath}) options.SetString(id, GetEXEPath(), 0);
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
  Lines lines = sink.Lines(OutputBuildMessages);
  EXPECT_EQ(engine.state(), MakeStateIdle) << ::testing::PrintToString(lines);
  EXPECT_EQ(lines.back(), "0 Error(s)  2 Warning(s)");
  EXPECT_TRUE(fs::exists(dir / "out" / "p"));

  project->AddFile("hang.c", "src");
  set_compiler_options();
  engine.Start(*project, *target, MakeModeBuildAll, nullptr, 1);
  const fs::path started = dir / "out" / "hang.OBJ.started";
  for (int i = 0; i < 3000 && !fs::exists(started); ++i) std::this_thread::sleep_for(10ms);
  ASSERT_TRUE(fs::exists(started)) << ::testing::PrintToString(sink.Lines(OutputBuildMessages));
  EXPECT_EQ(engine.state(), MakeStateCompiling);
  engine.Stop();
  engine.Join();
  lines = sink.Lines(OutputBuildMessages);
  EXPECT_EQ(lines.back(), "Process terminated.");
  EXPECT_TRUE(Has(lines, "Process terminated at user request."));
  EXPECT_EQ(engine.state(), MakeStateFailed);
  EXPECT_FALSE(fs::exists(dir / "out" / "hang.OBJ"));

  std::error_code ignored;
  fs::remove_all(dir, ignored);
}

}  // namespace
}  // namespace quillon
