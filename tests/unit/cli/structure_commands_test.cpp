// qpm new, target, group and file commands reach the library with the right
// names, checked through `qpm show --json` (its text form: the example's test).
#include <gmock/gmock.h>

#include "qpm_fixture.h"

namespace quillon::qpm {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST_F(QpmTest, NewMakesBothPartsAndReplacesOnlyWhenForced) {
  Ok({"new", "q.qpj", "--no-source-group"});
  EXPECT_TRUE(Show("q.qpj")["targets"][0]["groups"].empty());
  MakeProject();  // both parts, and the default target, are pinned by the example project
  std::string before = Bytes(dir_ / "p.qpj");
  QpmResult refused = Run({"new", "p.qpj"});
  EXPECT_TRUE(refused.code == 1 && Bytes(dir_ / "p.qpj") == before);
  EXPECT_THAT(refused.err, HasSubstr("already exists"));
  Ok({"new", "p.qpj", "--force"});
  EXPECT_EQ(Show()["targets"][0]["groups"].dump(), R"([{"name":"Source files","files":[]}])");
}

TEST_F(QpmTest, TargetsAreAddedCopiedRenamedAndDeleted) {
  MakeProject();
  Ok({"option", "set", "p.qpj", "TargetDirectory", "out/debug"});
  Ok({"target", "add", "p.qpj", "Plain"});
  Ok({"target", "add", "p.qpj", "Copy", "--copy-from", "p - Debug"});
  auto show = Show();
  EXPECT_THAT(TargetNames(show), ElementsAre("p - Debug", "Plain", "Copy"));
  EXPECT_TRUE(TargetNamed(show, "Plain")["options"].empty());
  EXPECT_EQ(TargetNamed(show, "Copy")["options"]["TargetDirectory"]["value"], "out/debug");

  // The default follows a rename, and survives the per-user part's reload.
  Ok({"target", "default", "p.qpj", "Copy"});
  Ok({"target", "rename", "p.qpj", "Copy", "Final"});
  show = Show();
  EXPECT_EQ(show["default_target"], "Final");
  EXPECT_THAT(TargetNames(show), ElementsAre("p - Debug", "Plain", "Final"));

  Ok({"target", "delete", "p.qpj", "Final"});
  show = Show();
  EXPECT_THAT(TargetNames(show), ElementsAre("p - Debug", "Plain"));
  EXPECT_TRUE(show["default_target"].is_null());

  // Structure edits need a target to act on.
  Ok({"target", "delete", "p.qpj", "p - Debug"});
  Ok({"target", "delete", "p.qpj", "Plain"});
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

TEST_F(QpmTest, GroupsAreAddedMovedAndDeleted) {
  MakeProject();
  Ok({"group", "add", "p.qpj", "Libraries"});
  Ok({"group", "move", "p.qpj", "Source files", "down"});  // "up" is the example project's
  EXPECT_THAT(GroupNames(Show()["targets"][0]),
              ElementsAre("Startup", "Source files", "Libraries"));

  Ok({"group", "delete", "p.qpj", "Source files"});
  EXPECT_THAT(GroupNames(Show()["targets"][0]), ElementsAre("Startup", "Libraries"));
  // Its files went with it.
  Ok({"file", "add", "p.qpj", "Libraries", "a.c"});
}

TEST_F(QpmTest, FilesAreStoredRelativeToTheProjectFromAnyDirectory) {
  MakeProject();
  std::filesystem::create_directories(dir_ / "src" / "deep");
  std::filesystem::current_path(dir_ / "src" / "deep");
  QpmResult added = Run({"file", "add", "../../p.qpj", "Source files", "../c.c", "d.c"});
  EXPECT_EQ(added.code, 0);
  // Projects may list files that a build makes: a missing one is a warning.
  EXPECT_THAT(added.err, HasSubstr("qpm: warning: \"src/c.c\" does not exist (yet)"));
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
