// qpm new, target, group and file commands, checked through `qpm show`.
#include <gmock/gmock.h>

#include "qpm_fixture.h"

namespace quillon::qpm {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST_F(QpmTest, NewMakesBothPartsWithTheDefaultTargetAndGroup) {
  Ok({"new", "p.qpj"});
  EXPECT_TRUE(std::filesystem::exists(dir_ / "p.qpj.user"));
  auto show = Show();
  EXPECT_EQ(show["default_target"], "p - Debug");
  EXPECT_THAT(TargetNames(show), ElementsAre("p - Debug"));
  EXPECT_THAT(GroupNames(show["targets"][0]), ElementsAre("Source files"));

  Ok({"new", "q.qpj", "--no-source-group"});
  EXPECT_TRUE(Show("q.qpj")["targets"][0]["groups"].empty());
}

TEST_F(QpmTest, NewRefusesAnExistingFileUnlessForced) {
  MakeProject();
  std::string before = Bytes(dir_ / "p.qpj");
  QpmResult refused = Run({"new", "p.qpj"});
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.err, HasSubstr("already exists"));
  EXPECT_EQ(Bytes(dir_ / "p.qpj"), before);

  Ok({"new", "p.qpj", "--force"});
  EXPECT_TRUE(Show()["targets"][0]["groups"][0]["files"].empty());
}

TEST_F(QpmTest, AddedTargetTakesStructureButNotOptionsUnlessCopied) {
  MakeProject();
  Ok({"option", "set", "p.qpj", "TargetDirectory", "out/debug"});
  Ok({"target", "add", "p.qpj", "Plain"});
  Ok({"target", "add", "p.qpj", "Copy", "--copy-from", "p - Debug"});
  auto show = Show();
  EXPECT_THAT(TargetNames(show), ElementsAre("p - Debug", "Plain", "Copy"));
  for (const char* name : {"Plain", "Copy"}) {
    const auto& target = TargetNamed(show, name);
    EXPECT_THAT(GroupNames(target), ElementsAre("Source files", "Startup")) << name;
    EXPECT_THAT(FileNames(target["groups"][0]), ElementsAre("a.c", "b.c")) << name;
  }
  EXPECT_TRUE(TargetNamed(show, "Plain")["options"].empty());
  EXPECT_EQ(TargetNamed(show, "Copy")["options"]["TargetDirectory"]["value"], "out/debug");
  EXPECT_EQ(show["default_target"], "p - Debug");
}

TEST_F(QpmTest, DefaultAndRenameAndDeleteTargets) {
  MakeProject();
  Ok({"target", "add", "p.qpj", "Release"});
  Ok({"target", "default", "p.qpj", "Release"});
  EXPECT_EQ(Show()["default_target"], "Release");

  // The default follows a rename, and survives the per-user part's reload.
  Ok({"target", "rename", "p.qpj", "Release", "Final"});
  auto show = Show();
  EXPECT_EQ(show["default_target"], "Final");
  EXPECT_THAT(TargetNames(show), ElementsAre("p - Debug", "Final"));

  Ok({"target", "delete", "p.qpj", "Final"});
  show = Show();
  EXPECT_THAT(TargetNames(show), ElementsAre("p - Debug"));
  EXPECT_TRUE(show["default_target"].is_null());

  // Structure edits need a target to act on.
  Ok({"target", "delete", "p.qpj", "p - Debug"});
  EXPECT_THAT(Run({"group", "add", "p.qpj", "G"}).err, HasSubstr("the project has no target"));
}

TEST_F(QpmTest, ThePerUserPartIsReadAfterTheSharedOne) {
  MakeProject();
  Ok({"target", "add", "p.qpj", "Release"});
  std::string user_with_debug = Bytes(dir_ / "p.qpj.user");
  Ok({"target", "default", "p.qpj", "Release"});
  // The user's own choice of default target wins over the shared one.
  Write(dir_ / "p.qpj.user", user_with_debug);
  EXPECT_EQ(Show()["default_target"], "p - Debug");
  // Without a per-user part the shared part's choice stands.
  std::filesystem::remove(dir_ / "p.qpj.user");
  EXPECT_EQ(Show()["default_target"], "Release");
}

TEST_F(QpmTest, GroupsAreAddedMovedAndDeletedInEveryTarget) {
  MakeProject();
  Ok({"target", "add", "p.qpj", "Release"});
  Ok({"group", "add", "p.qpj", "Libraries"});
  Ok({"group", "move", "p.qpj", "Startup", "up"});
  Ok({"group", "move", "p.qpj", "Source files", "down"});
  auto show = Show();
  for (const auto& target : show["targets"]) {
    EXPECT_THAT(GroupNames(target), ElementsAre("Startup", "Libraries", "Source files"));
  }

  Ok({"group", "delete", "p.qpj", "Source files"});
  show = Show();
  for (const auto& target : show["targets"]) {
    EXPECT_THAT(GroupNames(target), ElementsAre("Startup", "Libraries"));
  }
  // Its files went with it.
  Ok({"file", "add", "p.qpj", "Libraries", "a.c"});
}

TEST_F(QpmTest, FilesAreStoredRelativeToTheProjectFromAnyDirectory) {
  MakeProject();
  std::filesystem::create_directories(dir_ / "src" / "deep");
  std::filesystem::current_path(dir_ / "src" / "deep");
  Ok({"file", "add", "../../p.qpj", "Source files", "../c.c", "d.c"});
  std::filesystem::current_path(dir_);
  EXPECT_THAT(FileNames(Show()["targets"][0]["groups"][0]),
              ElementsAre("a.c", "b.c", "src/c.c", "src/deep/d.c"));

  // Either the stored name or a path from here finds a file.
  Ok({"file", "move", "p.qpj", "src/c.c", "Startup"});
  Ok({"file", "delete", "p.qpj", "./src/deep/d.c"});
  auto groups = Show()["targets"][0]["groups"];
  EXPECT_THAT(FileNames(groups[0]), ElementsAre("a.c", "b.c"));
  EXPECT_THAT(FileNames(groups[1]), ElementsAre("s.asm", "src/c.c"));
}

TEST_F(QpmTest, FileEditsActOnEveryTarget) {
  MakeProject();
  Ok({"target", "add", "p.qpj", "Release"});
  Ok({"file", "move", "p.qpj", "a.c", "Startup"});
  Ok({"file", "delete", "p.qpj", "b.c"});
  auto show = Show();
  for (const auto& target : show["targets"]) {
    EXPECT_TRUE(target["groups"][0]["files"].empty());
    EXPECT_THAT(FileNames(target["groups"][1]), ElementsAre("s.asm", "a.c"));
  }
}

TEST_F(QpmTest, ShowTextListsTargetsGroupsFilesAndOptions) {
  MakeProject();
  Ok({"target", "add", "p.qpj", "Release"});
  Ok({"option", "set", "p.qpj", "IncludePaths", "inc"});
  Ok({"option", "set", "p.qpj", "CRLF", "yes"});
  Ok({"option", "set", "p.qpj", "CompilerOptions", "--", "-O2"});
  Ok({"option", "set", "p.qpj", "ExcludeFromMake", "1", "--file", "b.c"});
  EXPECT_EQ(Ok({"show", "p.qpj"}),
            "project p.qpj\n"
            "targets:\n"
            "  * \"p - Debug\"\n"
            "    \"Release\"\n"
            "global options:\n"
            "  IncludePaths = [\"inc\"]\n"
            "  IncludeSearchSubDirs = [False]\n"
            "\n"
            "target \"p - Debug\" (default)\n"
            "  target options:\n"
            "    CRLF = Yes\n"
            "  file defaults:\n"
            "    CompilerOptions = \"-O2\" (own)\n"
            "  group \"Source files\"\n"
            "    a.c\n"
            "    b.c\n"
            "      ExcludeFromMake = Yes (own)\n"
            "  group \"Startup\"\n"
            "    s.asm\n");
  EXPECT_THAT(Ok({"show", "p.qpj", "--all"}), HasSubstr("target \"Release\"\n"));
}

TEST_F(QpmTest, ShowJsonTypesValuesAndMarksOwnFlags) {
  MakeProject();
  Ok({"option", "set", "p.qpj", "TranslateCharacter", "35"});
  Ok({"option", "set", "p.qpj", "CmpUseDefaultName", "False"});
  Ok({"option", "set", "p.qpj", "CompilerOptions", "--file", "a.c", "--mode", "inherit", "--",
      "-Os"});
  auto show = Show();
  EXPECT_EQ(show["schema"], 1);
  EXPECT_EQ(show["options"]["filter"]["CmpUseDefaultName"]["value"], false);
  const auto& target = show["targets"][0];
  EXPECT_EQ(target["options"]["TranslateCharacter"]["value"], 35);
  EXPECT_FALSE(target["options"]["TranslateCharacter"].contains("own"));
  const auto& a = target["groups"][0]["files"][0]["options"];
  EXPECT_EQ(a["CompilerOptions"]["value"], "-Os");
  EXPECT_EQ(a["CompilerOptions"]["own"], false);
}

}  // namespace
}  // namespace quillon::qpm
