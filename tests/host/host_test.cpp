// Drives the built library (the shared object, or the 64-bit DLL under Wine)
// through its exports bound by name, as the IDE does; the model's behaviour
// is the unit tests' to check. --verbose prints every callback as it comes.
//   host_test [gtest flags] [--verbose] [library path]
#include <stdio.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "host_library.h"
#include "host_recorder.h"
#include "support/memory_istream.h"

namespace quillon {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Names = std::vector<std::string>;

#ifdef _WIN32
// Found beside the test program, where the build puts both.
const char* const kDefaultLibrary = "quillon.dll";
#else
const char* const kDefaultLibrary = "libquillon.so";
#endif

const char* const kSentinel = "untouched";

// What the library answered before the first _InitProjectData of the process:
// its state, and the target count with the name left alone (-2 if not).
std::pair<int, int>& StateBeforeInit() {
  static std::pair<int, int> state{0, 0};
  return state;
}

std::string Native(const std::filesystem::path& path) { return path.string(); }

// One directory per run, so that runs of several builds at once keep apart.
const std::filesystem::path& ProjectDir() {
  static const std::filesystem::path dir =
      std::filesystem::temp_directory_path() /
      ("quillon-host-" + std::to_string(std::random_device()()));
  return dir;
}

class HostTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_THAT(Q().missing, IsEmpty()) << "exports missing; scenarios need all of them";
    Q().Set_IRF_FileName(Native(ProjectDir() / "demo.irf").c_str());
    Q().InitProjectData(RecordChange, RecordHost);
    TakeNotes();
    TakeOutputs();
  }
  void TearDown() override {
    if (Q().missing.empty()) Q().DoneProjectData();
  }

  static HostLibrary& Q() { return Quillon(); }

  // An edit's answer, and what it told the host, bracketed by change codes 7 and 8.
  static void ExpectEdit(int answer, int expected, std::vector<Note> notes) {
    EXPECT_EQ(answer, expected) << ::testing::PrintToString(notes);
    notes.insert(notes.begin(), Begin());
    notes.push_back(End());
    EXPECT_EQ(TakeNotes(), notes);
  }

  // The IDE's "new project": target "demo - Debug" with the group "Source
  // files", and then the given files in it.
  void CreateDemo(const Names& files = {}) {
    Q().CreateDefaultProject(0, 1);
    for (const std::string& file : files) Q().AddProjectFile(file.c_str(), "Source files");
    TakeNotes();
  }

  // Walks the index up to the count that the first call returns, and checks
  // that every call returns that same count.
  static Names Enumerate(const std::function<int(std::string*, int)>& query) {
    Names names;
    std::string name;
    const int count = query(&name, 0);
    for (int i = 0; i < count; ++i) {
      EXPECT_EQ(query(&name, i), count) << "index " << i;
      names.push_back(name);
    }
    return names;
  }
  static Names Targets() { return Enumerate(Q().GetTargetName); }
  static Names FirstTargetFiles() { return Enumerate(Q().GetProjectFileName); }
  static Names Groups(const std::string& target) {
    return Enumerate(
        [&](std::string* s, int i) { return Q().GetLinkGroupName(s, i, target.c_str()); });
  }
  static Names Files(const std::string& target, const std::string& group) {
    return Enumerate([&](std::string* s, int i) {
      return Q().GetProjectFileNameByGroup(s, i, target.c_str(), group.c_str());
    });
  }
  static std::string DefaultTarget() {
    std::string name = kSentinel;
    return Q().GetDefaultTargetName(&name), name;
  }
};

TEST(HostLibrary, AnswersNoProjectBeforeInit) {  // the exports are checked in SetUp
  EXPECT_EQ(StateBeforeInit(), std::pair(int{MakeStateNoProject}, -1));
}

TEST_F(HostTest, FreshProjectIsEmptyAndTheDefaultOneIsNamedAfterTheIrfFile) {
  EXPECT_THAT(Targets(), IsEmpty());
  EXPECT_EQ(DefaultTarget(), "");
  EXPECT_EQ(Q().WhatIsInProgress(), MakeStateIdle);
  EXPECT_EQ(Q().OnNewProject(), 0) << "no default target";
  std::string directory = kSentinel, file = kSentinel;
  Q().GetDirectory(0, &directory);
  Q().GetFile(0, &file);
  EXPECT_EQ(directory + file, "");
  EXPECT_THAT(TakeNotes(), IsEmpty());

  for (int source_group : {0, 1}) {
    Q().CreateDefaultProject(0, source_group);
    std::vector<Note> notes = {Modified()};
    if (source_group) notes.push_back(Named(ProjectChangeGroupAdded, "Source files", ""));
    ExpectEdit(1, 1, notes);
    EXPECT_THAT(Targets(), ElementsAre("demo - Debug"));
    EXPECT_EQ(DefaultTarget(), "demo - Debug");
    EXPECT_EQ(Groups("demo - Debug").size(), static_cast<size_t>(source_group));
  }
  EXPECT_EQ(Q().OnNewProject(), 1) << "a target without files is up to date";
  Q().GetDirectory(0, &directory);
  Q().GetFile(0, &file);
  EXPECT_EQ(directory, Native(ProjectDir() / ""));
  EXPECT_EQ(file, Native(ProjectDir() / "demo"));
}

TEST_F(HostTest, EditsNotifyTheHost) {
  CreateDemo();
  const std::string util = Native(ProjectDir() / "lib" / "util.c");
  const std::string b = Native(ProjectDir() / "b.c");
  ExpectEdit(Q().AddTarget("Release"), 1, {Modified()});
  ExpectEdit(Q().AddLinkGroup("Lib"), 1, {Named(ProjectChangeGroupAdded, "Lib", "")});
  ExpectEdit(Q().AddProjectFile(util.c_str(), "Lib"), 1,
             {Named(ProjectChangeFileAdded, util, "Lib")});
  // No group: the first one.
  ExpectEdit(Q().AddProjectFile("main.c", ""), 1, {Named(ProjectChangeFileAdded, "main.c", "")});
  ExpectEdit(Q().AddProjectFile("b.c", "Source files"), 1,
             {Named(ProjectChangeFileAdded, "b.c", "Source files")});
  ExpectEdit(Q().ChangeProjectFileGroup("main.c", "Missing"), 0, {});
  ExpectEdit(Q().ChangeProjectFileGroup("b.c", "Lib"), 1, {Modified()});
  ExpectEdit(Q().SetTarget("Release"), 1, {Named(ProjectChangeReloaded, "", "")});
  ExpectEdit(Q().SetTarget("Nope"), 0, {});
  EXPECT_EQ(DefaultTarget(), "Release");
  EXPECT_THAT(Files("Release", "Lib"), ElementsAre("util.c", "b.c"));
  EXPECT_THAT(FirstTargetFiles(), ElementsAre("main.c", "util.c", "b.c"));
  EXPECT_NE(Q().IsFileInProject(util.c_str(), 0), 0);
  int kind = -2, value = -2;
  EXPECT_EQ(Q().GetProjectFileInfo(util.c_str(), "Release", &kind, &value), 1);
  EXPECT_EQ(Q().GetProjectFileInfo("absent.c", "Release", &kind, &value), 0);
  std::string full;
  EXPECT_EQ(Q().GetFullNameOfProjectFile("b.c", &full, 0, 0), 1);
  EXPECT_EQ(full, b);

  // Removals name each file with its group; a group's files go first.
  ExpectEdit(Q().DeleteProjectFile("main.c"), 1,
             {Named(ProjectChangeFileRemoved, "main.c", "Source files")});
  ExpectEdit(
      Q().DeleteLinkGroup("Lib"), 1,
      {Named(ProjectChangeFileRemoved, util, "Lib"), Named(ProjectChangeFileRemoved, b, "Lib"),
       Named(ProjectChangeGroupRemoved, "Lib", "")});
  ExpectEdit(Q().DeleteTarget("Release"), 1, {Modified()});
  ExpectEdit(Q().DeleteTarget("Release"), 0, {Modified()});
  EXPECT_THAT(Targets(), ElementsAre("demo - Debug"));
  EXPECT_EQ(DefaultTarget(), "") << "the default target was deleted";
}

TEST_F(HostTest, MakeWithoutFilesSaysSoAndBuildsNothing) {
  CreateDemo();
  Q().Make(MakeModeMake, nullptr);
  std::vector<Output> outputs = TakeOutputs();
  ASSERT_GE(outputs.size(), 3u);
  EXPECT_EQ(outputs[0], (Output{1, 20, ""})) << "translator output cleared first";
  EXPECT_EQ(outputs[1], (Output{0, 20, ""})) << "then the build messages";
  EXPECT_THAT(outputs,
              Contains(Field(&Output::text, HasSubstr("There are no files in default target !"))));
  EXPECT_NE(Q().WhatIsInProgress(), MakeStateStarting);
}

// Real files on the real file system, so the scan reads through the OS.
TEST_F(HostTest, DependencyQueriesAnswerFromTheScan) {
  std::filesystem::path dir = ProjectDir() / "scan";
  std::filesystem::create_directories(dir);
  std::ofstream(dir / "main.c") << "#include \"util.h\"\nint main(void) { return 0; }\n";
  std::ofstream(dir / "util.h") << "int util(void);\n";
  std::string name = Native(dir / "main.c");
  CreateDemo({name});

  Q().UpdateAllDependencies();
  EXPECT_THAT(TakeNotes(), ElementsAre(Begin(), Named(ProjectChangeDependencies, "", ""), End()));
  EXPECT_THAT(TakeOutputs(), ElementsAre(Output{0, 22, ""})) << "the update is announced";
  ASSERT_EQ(Q().GetDependenciesFilesOfProjectFile(&name, 0), 1);
  EXPECT_THAT(name, EndsWith("util.h"));
  std::string dependency;
  const int count = Q().GetDependenciesFile(&dependency, 0);
  EXPECT_GE(count, 1);
  EXPECT_EQ(Q().GetDependenciesFile(&dependency, count), -1);
  name = Native(dir / "util.h");
  EXPECT_EQ(Q().GetFullNameOfRelativeIncludeFile(&name), 1) << "absolute and present";
  EXPECT_EQ(Q().OnNewProject(), 0) << "main.c was never translated";
}

TEST_F(HostTest, SavedProjectLoadsBackEqual) {
  CreateDemo({"main.c"});
  Q().AddTarget("Release");
  Q().AddLinkGroup("Lib");
  Q().AddProjectFile(Native(ProjectDir() / "lib" / "util.c").c_str(), "Lib");
  Q().SetTarget("Release");
  MemoryIStream shared, user;
  ASSERT_EQ(Q().Transfer(shared.get(), 1, 0) + Q().Transfer(user.get(), 1, 1), 2);
  TakeNotes();

  Q().DoneProjectData();
  Q().InitProjectData(RecordChange, RecordHost);
  shared.Rewind();
  user.Rewind();
  ASSERT_EQ(Q().Transfer(shared.get(), 0, 0) + Q().Transfer(user.get(), 0, 1), 2);
  EXPECT_THAT(TakeNotes(), ElementsAre(Named(ProjectChangeReloaded, "", ""),
                                       Named(ProjectChangeReloaded, "", "")));
  EXPECT_THAT(Targets(), ElementsAre("demo - Debug", "Release"));
  EXPECT_EQ(DefaultTarget(), "Release");
  EXPECT_THAT(Groups("Release"), ElementsAre("Source files", "Lib"));
  EXPECT_THAT(FirstTargetFiles(), ElementsAre("main.c", "util.c"));
}

// Past the end or without a project, queries answer failure and leave the
// out string alone.
TEST_F(HostTest, QueriesPastTheEndOrAfterDoneAnswerFailure) {
  CreateDemo({"main.c"});
  std::string out = kSentinel, second;
  EXPECT_EQ(Q().GetTargetName(&out, 1), -1);
  EXPECT_EQ(Q().GetLinkGroupName(&out, 1, "demo - Debug"), -1);
  EXPECT_EQ(Q().GetLinkGroupName(&out, 0, "Nope"), -1);
  EXPECT_EQ(Q().GetProjectFileNameByGroup(&out, 1, "demo - Debug", "Source files"), -1);
  EXPECT_EQ(Q().GetProjectFileName(&out, 1), -1);
  EXPECT_EQ(Q().GetDependenciesFile(&out, 1000), -1);

  Q().DoneProjectData();
  int kind = 0, value = 0;
  EXPECT_EQ(Q().WhatIsInProgress(), MakeStateNoProject);
  EXPECT_EQ(Q().GetTargetName(&out, 0), -1);
  EXPECT_EQ(Q().GetProjectFileName(&out, 0), -1);
  EXPECT_EQ(Q().GetLinkGroupName(&out, 0, "demo - Debug"), -1);
  EXPECT_EQ(Q().GetFullNameOfProjectFile("main.c", &out, 0, 0), 0);
  EXPECT_EQ(Q().GetProjectFileInfo("main.c", "demo - Debug", &kind, &value), -1);
  EXPECT_EQ(Q().IsFileInProject("main.c", 0), 0);
  EXPECT_EQ(Q().GetFilesMask(0, &out, &second, '|'), 0);
  EXPECT_EQ(Q().OnNewProject() + Q().Save(0), 0);
  EXPECT_EQ(out, kSentinel);
  EXPECT_THAT(TakeNotes(), IsEmpty());
  Q().InitProjectData(RecordChange, RecordHost);  // for TearDown
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  std::string path = quillon::kDefaultLibrary;
  for (int i = 1; i < argc; ++i) {
    if (std::string(argv[i]) == "--verbose") {
      quillon::SetNarrating(true);
    } else {
      path = argv[i];
    }
  }
  std::string error;
  quillon::HostLibrary& lib = quillon::Quillon();
  if (!quillon::LoadHostLibrary(path, &lib, &error)) {
    fprintf(stderr, "cannot load %s: %s\n", path.c_str(), error.c_str());
    return 1;
  }
  std::string name = quillon::kSentinel;
  if (lib.WhatIsInProgress != nullptr && lib.GetTargetName != nullptr) {
    const int count = lib.GetTargetName(&name, 0);
    quillon::StateBeforeInit() = {lib.WhatIsInProgress(), name == quillon::kSentinel ? count : -2};
  }
  int result = RUN_ALL_TESTS();
  std::error_code ignored;
  std::filesystem::remove_all(quillon::ProjectDir(), ignored);
  return result;
}
