// The make driver on a fake file system and a fake process runner: what the
// host sees (lines in order, states, the end callback, beeps) for each way a
// build can go.
#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <thread>
#include <tuple>

#include "build/make_engine.h"
#include "build/message_table.h"
#include "deps/dependency_scanner.h"
#include "model/project_data.h"
#include "support/fake_file_system.h"
#include "support/fake_process_runner.h"
#include "support/fake_ui_services.h"
#include "support/native_path.h"

namespace quillon {
namespace {

using Record = std::tuple<int, int, std::string>;

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
  std::vector<std::string> Lines(int channel) const;

 private:
  mutable std::mutex mutex_;
  std::vector<Record> records_;
};

std::vector<std::string> LinesOf(const std::vector<Record>& records, int channel) {
  std::vector<std::string> lines;
  for (const auto& [c, action, text] : records) {
    if (c == channel && action == OutputAppendLine) lines.push_back(text);
  }
  return lines;
}

bool Has(const std::vector<std::string>& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

std::vector<std::string> RecordingSink::Lines(int channel) const {
  return LinesOf(records(), channel);
}

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
    options.SetInt(kRunCommandInterpreterCmp, 0, 0);
    options.SetInt(kRunCommandInterpreterAsm, 0, 0);
    options.SetInt(kRunCommandInterpreterLnk, 0, 0);
    options.SetInt(kChangeWorkingDirectory, 0, 0);
    target->target_options().SetString(kTargetDirectoryId, "out", 0);
    target->target_options().SetString(kLinkerOptionsId, "-o $(OUTPUTPATH)", 0);
    project.target_set().filter_name = "GCC";
    fs.Tick();
    for (const char* stem : {"main", "util", "start"}) Produces(stem);
    runner.On("ld ", Script({{Out("fw.elf"), "image"}}));
    MakeEngine();
  }

  static std::string Out(const std::string& name) { return Rooted("/p/out/") + name; }

  static FakeProcessRunner::Script Script(std::map<std::string, std::string> files,
                                          std::string stderr_text = "") {
    FakeProcessRunner::Script script;
    script.files = std::move(files);
    script.stderr_text = std::move(stderr_text);
    return script;
  }

  // The translator run for `stem` writes its object.
  void Produces(const std::string& stem, const std::string& stderr_text = "") {
    runner.On(Rooted("/p/") + stem + ".", Script({{Out(stem + ".OBJ"), "obj"}}, stderr_text));
  }

  void MakeEngine() {
    BuildServices services;
    services.fs = &fs;
    services.runner = &runner;
    services.ui = &ui;
    services.sink = &sink;
    services.messages = &messages;
    services.scanner = &scanner;
    services.host = [this](int code, void* record) {
      if (code == HostBuildResult) {
        auto* result = static_cast<BuildResultRecord*>(record);
        results.emplace_back(result->makeState, result->mode);
      }
    };
    services.environment_variable = [this](const std::string& name) {
      return name == "COMSPEC" ? comspec : std::string();
    };
    services.sleep = [this](int) { fs.Tick(); };
    services.temp_directory = Rooted("/tmp");
    services.host_directory = Rooted("/ide/");
    messages.SetOutputSink(&sink);
    engine = std::make_unique<CMakeEngine>(std::move(services));
  }

  void Build(int mode = MakeModeMake, int jobs = 1,
             const std::vector<std::string>* files = nullptr) {
    engine->Start(project, *target, mode, files, jobs);
    engine->Join();
  }

  std::vector<std::string> BuildLines() const { return sink.Lines(OutputBuildMessages); }

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
  EXPECT_EQ(BuildLines(), (std::vector<std::string>{
                              "Compiling ...", "main.c", "start.asm", "util.c", "Linking",
                              caption + "  ... was successfully generated.",
                              "0 Error(s)  0 Warning(s)"}));
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
  EXPECT_EQ(BuildLines(), (std::vector<std::string>{caption + "  ... is up to date.",
                                                    "0 Error(s)  0 Warning(s)"}));
  EXPECT_EQ(runner.command_lines().size(), 4u);
  EXPECT_EQ(engine->state(), MakeStateIdle);
}

TEST_F(MakeEngineTest, DiagnosticsBecomeErrorListLinesAndAMissingObjectPreventsTheLink) {
  runner.On(Rooted("/p/main."),
            Script({}, "main.c:3: error: 'y' undeclared\nmain.c:4: warning: unused x\n"));
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
            Script({{Out("main.OBJ"), "o"}, {Rooted("/p/main.err"), "E1 main.c 3\n"}}));
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
  runner.On(Rooted("/p/main."), Script({{Out("main.OBJ"), "o"}}, "main.c:3: error: y\n"));
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
  FakeProcessRunner::Script missing;
  missing.start_error = Status::NotFound("No such file or directory");
  runner.On("cc ", missing);
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
  FakeProcessRunner::Script hangs;
  hangs.runs_until_terminated = true;
  runner.On(Rooted("/p/main."), hangs);
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
  FakeProcessRunner::Script missing;
  missing.start_error = Status::NotFound("not there");
  runner.On("after", missing);
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
  runner.On("as " + Out("main.ASM"), Script({{Out("main.OBJ"), "from the assembler"}}));
  std::vector<std::string> files{"util.c", "nothere.c", "main.c"};
  Build(MakeModeCompile, 1, &files);
  EXPECT_EQ(BuildLines(), (std::vector<std::string>{"Compiling ...", "util.c", "main.c", "main.c",
                                                    "Process terminated successfully.",
                                                    "0 Error(s)  0 Warning(s)"}));
  EXPECT_EQ(runner.command_lines().back(), "as " + Out("main.ASM"));
}

TEST_F(MakeEngineTest, RunsGoThroughTheInterpreterAndIntoTheirDirectories) {
  project.global_options().SetInt(kRunCommandInterpreterCmp, 1, 0);
  project.global_options().SetInt(kChangeWorkingDirectory, 1, 0);
  comspec = "C:\\cmd.exe";
  std::vector<std::string> files{"main.c"};
  Build(MakeModeCompile, 1, &files);
  ASSERT_FALSE(runner.started().empty());
  const ProcessSpec launch = runner.started().back();
  EXPECT_EQ(runner.command_lines().back().rfind("C:\\cmd.exe /c cc ", 0), 0u);
  EXPECT_EQ(launch.working_directory, Rooted("/p/"));

  project.global_options().SetString(kRootDir, "nowhere", 0);
  project.global_options().SetInt(kChangeWorkingDirectory, 0, 0);
  Build(MakeModeCompile, 1, &files);
  EXPECT_TRUE(Has(BuildLines(), "Invalid working directory"));
}

TEST_F(MakeEngineTest, TheCompilePassStopsAtTheErrorLimit) {
  std::string many;
  for (int i = 0; i < 200; ++i) many += "main.c:1: error: e\n";
  runner.On(Rooted("/p/main."), Script({{Out("main.OBJ"), "o"}}, many));
  Build(MakeModeBuildAll);
  EXPECT_FALSE(Has(BuildLines(), "util.c"));
  EXPECT_TRUE(Has(BuildLines(), "200 Error(s)  0 Warning(s)"));
}

TEST_F(MakeEngineTest, ExternalMakeReplacesTheBuiltInSteps) {
  CGlobalOptions& options = project.global_options();
  options.SetInt(kExternalMake, 1, 0);
  options.SetString(kExternalMakeFile, "make", 0);
  options.SetString(kExternalMakeFileParameters, "-C fw", 0);
  FakeProcessRunner::Script make = Script({{Out("fw.elf"), "image"}});
  make.stdout_text = "cc -c main.c\nld\n";
  runner.On("make -C fw", make);
  Build();
  const auto lines = BuildLines();
  EXPECT_EQ(lines[0], "Running external make file (" + Rooted("/p/make") + ")");
  EXPECT_EQ(lines[1], "cc -c main.c");
  EXPECT_EQ(lines[2], "ld");
  EXPECT_EQ(engine->state(), MakeStateIdle);
}

}  // namespace
}  // namespace quillon
