// "$(NAME)" macro expansion, translator parameters, template batch files,
// the linker's repeated parts and its command file.
#include "build/translator_command.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "build/macro_expansion.h"
#include "support/fake_file_system.h"
#include "support/native_path.h"

namespace quillon {
namespace {

using Items = std::vector<std::string>;

class TranslatorCommandTest : public ::testing::Test {
 protected:
  TranslatorCommandTest() {
    project.Initialise(0);
    project.set_project_file(Rooted("/proj/demo.qpj"));
    target = project.AddTarget("T", "");
    for (const char* group : {"app", "lib"}) project.AddLinkGroup(group);
    for (const char* file : {"src/main.c", "start.asm"}) project.AddFile(file, "app");
    project.AddFile("util.c", "lib");
    TargetOptions().SetString(kTargetDirectoryId, "out", 0);
    options().SetString(kExecutableFileName, "demo.elf", 0);
    env = {Rooted("/proj/"), Rooted("/tools/cc/"), Rooted("/ide/")};
  }

  CGlobalOptions& options() { return project.global_options(); }
  COptionSet& TargetOptions() { return target->target_options(); }
  std::string File(std::string_view text, const std::string& file = "src/main.c",
                   std::string_view extra = {}) {
    return ExpandFileMacros(text, project, *target, *target->FindFile(file), env, extra);
  }
  std::string Target(std::string_view text, std::string_view target_string = {}) {
    return ExpandTargetMacros(text, project, *target, env, target_string);
  }
  std::string Params(TranslatorKind kind, const std::string& file) {
    return TranslatorParameters(kind, project, *target, *target->FindFile(file), env);
  }
  static std::string Out(const std::string& name) { return Rooted("/proj/out/") + name; }
  Items Repeat(std::string_view line) { return ExpandRepeatedParts(line, '&', project, *target); }
  // Writes the linker's command file; answers "outcome file reason".
  std::string Write(bool crlf) {
    const CommandFileResult result = WriteExpandedFile(
        fs, Rooted("/proj/link.lnk"), Out("___Lnk.lnk"),
        [&](std::string_view line) { return ExpandLinkerLine(line, project, *target, env); }, crlf);
    return std::to_string(result.outcome) + " " + result.file + " " + result.system_text;
  }

  std::unique_ptr<CProjectData> owner = CProjectData::Create();
  CProjectData& project = *owner;
  CProjectTarget* target = nullptr;
  MacroEnvironment env;
  FakeFileSystem fs;
  const std::string main_o = Out("main.OBJ"), start_o = Out("start.OBJ"), util_o = Out("util.OBJ");
};

TEST_F(TranslatorCommandTest, FileMacros) {
  EXPECT_EQ(File("-c $(edname) $(Noext) $(cmpdir)x"), "-c $(edname) $(Noext) $(cmpdir)x");
  EXPECT_EQ(File("$(EDNAME) -o $(OUTPUTDIR)$(NOEXT).$(COUTEXT) $(NOEXT)"),
            Rooted("/proj/src/main.c") + " -o " + Out("main.OBJ main"));
  EXPECT_EQ(File("$(DIR)|$(FILEGROUP)|$(AEXT)|$(AOUTEXT)"), Rooted("/proj/src/") + "|app|ASM|OBJ");
  // A source extension is the file's own when listed, else the list's first.
  project.AddFile("util.cpp", "app");
  EXPECT_EQ(File("$(NOEXT).$(CEXT)", "util.cpp"), "util.cpp");
  EXPECT_EQ(File("$(CEXT) $(AEXT)", "start.asm"), "C asm");
  // Paths with blanks are quoted, group names not.
  project.AddLinkGroup("my group");
  project.AddFile("my src/main file.c", "my group");
  EXPECT_EQ(File("$(DIR) $(NOEXT) $(FILEGROUP)", "my src/main file.c"),
            "\"" + Rooted("/proj/my src/") + "\" \"main file\" my group");
  options().SetString(kCOutExtensions, "", 0);  // an empty value removes the macro
  EXPECT_EQ(File("$(NOEXT).$(COUTEXT)"), "main.");
  options().SetInt(kRunWithRelativePath, 1, 0);
  options().SetInt(kChangeWorkingDirectory, 1, 0);
  EXPECT_EQ(File("$(EDNAME)"), "main.c");
  options().SetInt(kChangeWorkingDirectory, 0, 0);
  EXPECT_EQ(File("$(EDNAME)"), Native("src/main.c"));
}

TEST_F(TranslatorCommandTest, TargetMacrosAndTheFixedOrder) {
  EXPECT_EQ(Target("-o $(outputpath) @$(indpath)"), "-o $(outputpath) @$(indpath)");
  EXPECT_EQ(Target("ld @$(INDPATH) x"), "ld @ x");  // no indirection file
  EXPECT_EQ(Target("%1 %2", "cfg"), "cfg " + Out("demo.elf"));
  EXPECT_EQ(File("-D%1 %1", "src/main.c", "X"), "-DX X");
  EXPECT_EQ(File("-D%1"), "-D%1");
  // %1 comes first: macros in its value are expanded by the later steps.
  EXPECT_EQ(File("%1", "src/main.c", "$(NOEXT)"), "main");
  // FILEGROUP comes last: an earlier macro in a group name stays, a directory macro not.
  for (const char* group : {"$(EDNAME)", "$(IRFDIR)"}) project.AddLinkGroup(group);
  project.AddFile("a.c", "$(EDNAME)");
  project.AddFile("b.c", "$(IRFDIR)");
  EXPECT_EQ(File("$(FILEGROUP)", "a.c") + "|" + File("$(FILEGROUP)", "b.c"),
            "$(EDNAME)|" + Rooted("/proj/"));
  // Output paths with blanks are quoted, but not the one without extension.
  TargetOptions().SetString(kTargetDirectoryId, "out dir", 0);
  TargetOptions().SetString(kIndirectionFileId, "link.cmd", 0);
  const std::string out = Rooted("/proj/out dir/");
  EXPECT_EQ(Target("$(OUTPUTPATH) %2"), "\"" + out + "demo.elf\" \"" + out + "demo.elf\"");
  EXPECT_EQ(Target("$(OUTPUTFILE)|$(OUTPUTDIR)"), "demo.elf|\"" + out + "\"");
  EXPECT_EQ(Target("$(OUTPUTNOEXT).map @$(INDPATH)"), out + "demo.map @" + out + "___Lnk.cmd");
}

TEST_F(TranslatorCommandTest, DirectoryMacroIsJoinedWithTheFollowingPath) {
  EXPECT_EQ(ExpandDirectoryMacros("$(CMPDIR)bin/cc -c $(IRFDIR)a $(EXEDIR)", env, true),
            Rooted("/tools/cc/") + "bin/cc -c " + Rooted("/proj/") + "a " + Rooted("/ide/"));
  EXPECT_EQ(MakeAbsoluteForBuild("$(CMPDIR)bin/../cc", env), Rooted("/tools/cc/cc"));
  env.compiler_directory = Rooted("/Program Files/cc/");
  const std::string joined = "\"" + Rooted("/Program Files/cc/") + "bin/cc\" -c";
  // Quotes in the joined path are dropped; a macro inside quotes is not quoted twice.
  for (const char* text :
       {"$(CMPDIR)bin/cc -c", "$(CMPDIR)\"bin/cc\" -c", "\"$(CMPDIR)bin/cc\" -c"}) {
    EXPECT_EQ(ExpandDirectoryMacros(text, env, true), joined) << text;
  }
  EXPECT_EQ(ExpandDirectoryMacros("$(CMPDIR)bin/cc -c", env, false),
            Rooted("/Program Files/cc/") + "bin/cc -c");
  env.compiler_directory = "tc";  // a relative directory counts from the working one
  EXPECT_EQ(MakeAbsoluteForBuild("$(CMPDIR)/cc", env), Rooted("/proj/tc/cc"));
  EXPECT_EQ(MakeAbsoluteForBuild("   ", env), "");
  EXPECT_EQ(MakeAbsoluteForBuild(" " + Rooted("/bin/tool") + " ", env), Rooted("/bin/tool"));
  EXPECT_EQ(MakeAbsoluteForBuild("\"my hooks/x.sh\"", env), Rooted("/proj/my hooks/x.sh"));
  // A directory that names its own macro does not expand forever.
  env.working_directory = "$(IRFDIR)";
  EXPECT_EQ(ExpandDirectoryMacros("$(IRFDIR)x $(IRFDIR)y", env, false), "$(IRFDIR)x $(IRFDIR)y");
}

TEST_F(TranslatorCommandTest, ParametersAreTheTrimmedExpandedOptionText) {
  COptionSet& main = target->FindFile("src/main.c")->options();
  main.SetString(kCompilerOptionsId, "  -c $(EDNAME)  -o $(NOEXT).o ", 2);
  EXPECT_EQ(Params(TranslatorCompiler, "src/main.c"),
            "-c " + Rooted("/proj/src/main.c") + "  -o main.o");
  EXPECT_EQ(CommandFilePath(project, *target, kCompilerBatchFile), Out("___Cmp.bat"));
  // The assembler gets the intermediate file of a compiler source.
  main.SetInt(kRunAssemblerId, 1, 2);
  EXPECT_EQ(Params(TranslatorAssembler, "src/main.c"), Out("main.ASM"));
  EXPECT_EQ(Params(TranslatorAssembler, "start.asm"), Rooted("/proj/start.asm"));
  main.SetInt(kRunAssemblerId, 0, 2);
  EXPECT_EQ(Params(TranslatorAssembler, "src/main.c"), Rooted("/proj/src/main.c"));
  for (const char* name : {"run.bat", " C:/Tools/RUN.BAT ", "\"C:/my tools/Cc.Bat\""}) {
    EXPECT_TRUE(IsTemplateBatchFile(name)) << name;
  }
  for (const char* name : {"cc.exe", "bat", "x.batch"}) EXPECT_FALSE(IsTemplateBatchFile(name));
}

TEST_F(TranslatorCommandTest, RepeatedPartsListEveryObjectInLinkOrder) {
  EXPECT_EQ(Repeat("-o a&b.elf"), Items{"-o a&b.elf"});
  // One field goes before each file.
  EXPECT_EQ(Repeat("-o out &-l:& -Map m"),
            (Items{"-o out ", "-l:" + main_o, "-l:" + start_o, "-l:" + util_o, " -Map m"}));
  // Two surround it; an empty prefix or suffix gives no item.
  EXPECT_EQ(Repeat("&(&)&"), (Items{"(" + main_o + ")", "(" + start_o + ")", "(" + util_o + ")"}));
  // Five separators add a list separator and a terminator; a sixth is in the suffix.
  EXPECT_EQ(Repeat("L &  &&,&;& TO x&"), (Items{"L ", "  " + main_o + ",", "  " + start_o + ",",
                                                "  " + util_o + ";", " TO x&"}));
  // Excluded files are left out, and each object is listed once.
  for (const char* file : {"util.asm", "inc/defs.h", "rt.lib"}) project.AddFile(file, "lib");
  target->FindFile("start.asm")->options().SetInt(kExcludeFromMakeId, 1, 2);
  EXPECT_EQ(Repeat("&&"), (Items{main_o, util_o, Rooted("/proj/rt.lib")}));
  // Quoted when holding a blank; backslashes (on Windows) become the option.
  TargetOptions().SetString(kTargetDirectoryId, "my out", 0);
  options().SetString(kPathSeparatorString, "/", 0);
  std::string expected = Rooted("/proj/my out/main.OBJ");
  for (char& c : expected) c = c == '\\' ? '/' : c;
  EXPECT_EQ(Repeat("&&").front(), "\"" + expected + "\"");
}

TEST_F(TranslatorCommandTest, LinkerParametersJoinTheItemsWithSingleBlanks) {
  TargetOptions().SetString(kLinkerOptionsId, "  -o $(OUTPUTPATH) &<&> & -lc ", 0);
  bool misused = true;
  EXPECT_EQ(LinkerParameters(project, *target, env, &misused),
            "-o " + Out("demo.elf") + " <" + main_o + "> <" + start_o + "> <" + util_o + "> -lc");
  EXPECT_FALSE(misused);
  TargetOptions().SetInt(kCrLfId, 1, 0);
  LinkerParameters(project, *target, env, &misused);
  EXPECT_TRUE(misused);
  // Without repeated parts CR-LF does no harm; another separator character.
  TargetOptions().SetString(kLinkerOptionsId, "ld # x", 0);
  EXPECT_EQ(LinkerParameters(project, *target, env, &misused), "ld # x");
  EXPECT_FALSE(misused);
  TargetOptions().SetInt(kTranslateCharacterId, '#', 0);
  TargetOptions().SetString(kLinkerOptionsId, "ld ##", 0);
  EXPECT_EQ(LinkerParameters(project, *target, env, nullptr),
            "ld " + main_o + " " + start_o + " " + util_o);
}

TEST_F(TranslatorCommandTest, CommandFileLinesAndWhichFileFailed) {
  const std::string link = Rooted("/proj/link.lnk"), out = Out("___Lnk.lnk");
  EXPECT_EQ(Write(false), "1 " + link + " No such file or directory");
  EXPECT_TRUE(fs.files_written().empty());
  fs.Create(link, "-o $(OUTPUTFILE)\r\n\nIN &&& -end\n");  // the output directory is missing
  EXPECT_EQ(Write(false), "2 " + out + " No such file or directory");
  fs.MakeDirectories(Rooted("/proj/out"));
  // CR-LF puts every item on a line of its own; cleared, a template line's items join.
  const std::string end(kCommandFileLineEnd);
  EXPECT_EQ(Write(true), "0 " + out + " ");
  EXPECT_EQ(fs.Contents(out), "-o demo.elf" + end + end + "IN " + end + main_o + end + start_o +
                                  end + util_o + end + " -end" + end);
  EXPECT_EQ(Write(false), "0 " + out + " ");
  EXPECT_EQ(fs.Contents(out),
            "-o demo.elf" + end + end + "IN " + main_o + start_o + util_o + " -end" + end);
  fs.FailNthWrite(1);
  EXPECT_EQ(Write(false).substr(0, 2), "2 ");
}

}  // namespace
}  // namespace quillon
