// File, target and directory expansion of "$(NAME)" macros.
#include "build/macro_expansion.h"

#include <gtest/gtest.h>

#include <string>

#include "support/native_path.h"

namespace quillon {
namespace {

class MacroExpansionTest : public ::testing::Test {
 protected:
  MacroExpansionTest() {
    project.Initialise(0);
    project.set_project_file(Rooted("/proj/demo.qpj"));
    target = project.AddTarget("T", "");
    project.AddLinkGroup("app");
    project.AddFile("src/main.c", "app");
    target->target_options().SetString(kTargetDirectoryId, "out", 0);
    options().SetString(kExecutableFileName, "demo.elf", 0);
    env = {Rooted("/proj/"), Rooted("/tools/cc/"), Rooted("/ide/")};
  }

  CGlobalOptions& options() { return project.global_options(); }
  std::string File(std::string_view text, const std::string& file = "src/main.c",
                   std::string_view extra = {}) {
    return ExpandFileMacros(text, project, *target, *target->FindFile(file), env, extra);
  }
  std::string Target(std::string_view text, std::string_view target_string = {}) {
    return ExpandTargetMacros(text, project, *target, env, target_string);
  }
  std::string Dirs(std::string_view text, bool join = true) {
    return ExpandDirectoryMacros(text, env, join);
  }

  std::unique_ptr<CProjectData> owner = CProjectData::Create();
  CProjectData& project = *owner;
  CProjectTarget* target = nullptr;
  MacroEnvironment env;
};

TEST_F(MacroExpansionTest, TextWithoutMacrosOrWithLowerCaseNamesIsUnchanged) {
  EXPECT_EQ(File("-c -O2 main.c"), "-c -O2 main.c");
  EXPECT_EQ(File("$(edname) $(Noext) $(cmpdir)x"), "$(edname) $(Noext) $(cmpdir)x");
  EXPECT_EQ(Target("-o $(outputpath) @$(indpath)"), "-o $(outputpath) @$(indpath)");
}

TEST_F(MacroExpansionTest, FileMacrosNameTheFileTheTargetAndTheExtensions) {
  EXPECT_EQ(File("$(EDNAME) -o $(OUTPUTDIR)$(NOEXT).$(COUTEXT) $(NOEXT)"),
            Rooted("/proj/src/main.c") + " -o " + Rooted("/proj/out/") + "main.OBJ main");
  EXPECT_EQ(File("$(DIR)|$(FILEGROUP)|$(AEXT)|$(AOUTEXT)"), Rooted("/proj/src/") + "|app|ASM|OBJ");
  // A source extension is the file's own when listed, else the list's first.
  project.AddFile("util.cpp", "app");
  project.AddFile("boot.asm", "app");
  EXPECT_EQ(File("$(NOEXT).$(CEXT)", "util.cpp"), "util.cpp");
  EXPECT_EQ(File("$(CEXT) $(AEXT)", "boot.asm"), "C asm");
}

TEST_F(MacroExpansionTest, EditedNameFollowsTheRelativePathOptions) {
  options().SetInt(kRunWithRelativePath, 1, 0);
  options().SetInt(kChangeWorkingDirectory, 1, 0);
  EXPECT_EQ(File("$(EDNAME)"), "main.c");
  options().SetInt(kChangeWorkingDirectory, 0, 0);
  EXPECT_EQ(File("$(EDNAME)"), Native("src/main.c"));
}

TEST_F(MacroExpansionTest, PathsWithBlanksAreQuotedButGroupNamesAndOutputNoExtNot) {
  project.AddLinkGroup("my group");
  project.AddFile("my src/main file.c", "my group");
  EXPECT_EQ(File("$(DIR) $(NOEXT) $(FILEGROUP)", "my src/main file.c"),
            "\"" + Rooted("/proj/my src/") + "\" \"main file\" my group");

  target->target_options().SetString(kTargetDirectoryId, "out dir", 0);
  target->target_options().SetString(kIndirectionFileId, "link.cmd", 0);
  const std::string out = Rooted("/proj/out dir/");
  EXPECT_EQ(Target("$(OUTPUTPATH) %2"), "\"" + out + "demo.elf\" \"" + out + "demo.elf\"");
  EXPECT_EQ(Target("$(OUTPUTFILE)|$(OUTPUTDIR)"), "demo.elf|\"" + out + "\"");
  EXPECT_EQ(Target("$(OUTPUTNOEXT).map @$(INDPATH)"), out + "demo.map @" + out + "___Lnk.cmd");
}

TEST_F(MacroExpansionTest, EmptyValuesRemoveTheMacro) {
  EXPECT_EQ(Target("ld @$(INDPATH) x"), "ld @ x");  // no indirection file
  options().SetString(kCOutExtensions, "", 0);
  EXPECT_EQ(File("$(NOEXT).$(COUTEXT)"), "main.");
}

TEST_F(MacroExpansionTest, PercentArgumentsAndTheFixedOrder) {
  EXPECT_EQ(File("-D%1 %1", "src/main.c", "X"), "-DX X");
  EXPECT_EQ(File("-D%1"), "-D%1");
  EXPECT_EQ(Target("%1 %2", "cfg"), "cfg " + Rooted("/proj/out/demo.elf"));
  // %1 comes first: macros in its value are expanded by the later steps.
  EXPECT_EQ(File("%1", "src/main.c", "$(NOEXT)"), "main");
  // The group name comes last among the file macros: an earlier macro in it
  // stays, a directory macro is still expanded.
  project.AddLinkGroup("$(EDNAME)");
  project.AddLinkGroup("$(IRFDIR)");
  project.AddFile("a.c", "$(EDNAME)");
  project.AddFile("b.c", "$(IRFDIR)");
  EXPECT_EQ(File("$(FILEGROUP)", "a.c"), "$(EDNAME)");
  EXPECT_EQ(File("$(FILEGROUP)", "b.c"), Rooted("/proj/"));
}

TEST_F(MacroExpansionTest, DirectoryMacroIsJoinedWithTheFollowingPath) {
  EXPECT_EQ(Dirs("$(CMPDIR)bin/cc -c $(IRFDIR)a $(EXEDIR)"),
            Rooted("/tools/cc/") + "bin/cc -c " + Rooted("/proj/") + "a " + Rooted("/ide/"));
  env.compiler_directory = Rooted("/Program Files/cc/");
  const std::string joined = "\"" + Rooted("/Program Files/cc/") + "bin/cc\" -c";
  EXPECT_EQ(Dirs("$(CMPDIR)bin/cc -c"), joined);
  // Quotes in the following path are dropped before joining, and a macro
  // already inside quotes is not quoted twice.
  EXPECT_EQ(Dirs("$(CMPDIR)\"bin/cc\" -c"), joined);
  EXPECT_EQ(Dirs("\"$(CMPDIR)bin/cc\" -c"), joined);
  EXPECT_EQ(Dirs("$(CMPDIR)bin/cc -c", false), Rooted("/Program Files/cc/") + "bin/cc -c");
  // A directory that names its own macro does not expand forever.
  env.working_directory = "$(IRFDIR)";
  EXPECT_EQ(Dirs("$(IRFDIR)x $(IRFDIR)y", false), "$(IRFDIR)x $(IRFDIR)y");
}

TEST_F(MacroExpansionTest, MakeAbsoluteUsesTheLeadingMacroOrTheWorkingDirectory) {
  EXPECT_EQ(MakeAbsoluteForBuild("   ", env), "");
  EXPECT_EQ(MakeAbsoluteForBuild(" " + Rooted("/bin/tool") + " ", env), Rooted("/bin/tool"));
  EXPECT_EQ(MakeAbsoluteForBuild("\"my hooks/x.sh\"", env), Rooted("/proj/my hooks/x.sh"));
  EXPECT_EQ(MakeAbsoluteForBuild("$(CMPDIR)bin/../cc", env), Rooted("/tools/cc/cc"));
  env.compiler_directory = "tc";  // a relative directory counts from the working one
  EXPECT_EQ(MakeAbsoluteForBuild("$(CMPDIR)/cc", env), Rooted("/proj/tc/cc"));
}

TEST(ParametersDisplayTest, ShowsExecutableAndParametersOnlyWhenAsked) {
  EXPECT_EQ(ParametersDisplay(true, "cc", "-c a.c"), " ...  with parameters  \"cc -c a.c\"");
  EXPECT_EQ(ParametersDisplay(false, "cc", "-c a.c"), "");
}

}  // namespace
}  // namespace quillon
