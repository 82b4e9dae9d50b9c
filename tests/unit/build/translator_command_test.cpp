// Translator parameters, template batch files, the linker's repeated parts
// and its command file.
#include "build/translator_command.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
    project.AddLinkGroup("app");
    project.AddLinkGroup("lib");
    project.AddFile("main.c", "app");
    project.AddFile("start.asm", "app");
    project.AddFile("util.c", "lib");
    target->target_options().SetString(kTargetDirectoryId, "out", 0);
    project.global_options().SetString(kExecutableFileName, "demo.elf", 0);
    env.working_directory = Rooted("/proj/");
  }

  CProjectFile& File(const std::string& name) { return *target->FindFile(name); }
  std::string Params(TranslatorKind kind, const std::string& file) {
    return TranslatorParameters(kind, project, *target, File(file), env);
  }
  static std::string Out(const std::string& name) { return Rooted("/proj/out/") + name; }
  Items Repeat(std::string_view line) { return ExpandRepeatedParts(line, '&', project, *target); }
  COptionSet& TargetOptions() { return target->target_options(); }

  std::unique_ptr<CProjectData> owner = CProjectData::Create();
  CProjectData& project = *owner;
  CProjectTarget* target = nullptr;
  MacroEnvironment env;
};

TEST_F(TranslatorCommandTest, ParametersAreTheTrimmedExpandedOptionText) {
  File("main.c").options().SetString(kCompilerOptionsId, "  -c $(EDNAME)  -o $(NOEXT).o ", 2);
  EXPECT_EQ(Params(TranslatorCompiler, "main.c"), "-c " + Rooted("/proj/main.c") + "  -o main.o");
  EXPECT_EQ(CommandFilePath(project, *target, kCompilerBatchFile), Out("___Cmp.bat"));
}

TEST_F(TranslatorCommandTest, AssemblerGetsTheIntermediateFileOfACompilerSource) {
  File("main.c").options().SetInt(kRunAssemblerId, 1, 2);
  EXPECT_EQ(Params(TranslatorAssembler, "main.c"), Out("main.ASM"));
  EXPECT_EQ(Params(TranslatorCompiler, "main.c"), Rooted("/proj/main.c"));
  EXPECT_EQ(Params(TranslatorAssembler, "start.asm"), Rooted("/proj/start.asm"));
  File("main.c").options().SetInt(kRunAssemblerId, 0, 2);
  EXPECT_EQ(Params(TranslatorAssembler, "main.c"), Rooted("/proj/main.c"));
}

TEST(TemplateBatchFileTest, BatExtensionInAnyCase) {
  for (const char* name : {"run.bat", " C:/Tools/RUN.BAT ", "\"C:/my tools/Cc.Bat\""}) {
    EXPECT_TRUE(IsTemplateBatchFile(name)) << name;
  }
  for (const char* name : {"cc.exe", "bat", "x.batch"}) EXPECT_FALSE(IsTemplateBatchFile(name));
}

TEST_F(TranslatorCommandTest, RepeatedPartsListEveryObjectInLinkOrder) {
  EXPECT_EQ(Repeat("-o a&b.elf"), Items{"-o a&b.elf"});
  // One field goes before each file.
  EXPECT_EQ(Repeat("-o out &-l:& -Map m"),
            (Items{"-o out ", "-l:" + Out("main.OBJ"), "-l:" + Out("start.OBJ"),
                   "-l:" + Out("util.OBJ"), " -Map m"}));
  // Two surround it; an empty prefix or suffix gives no item.
  EXPECT_EQ(Repeat("&(&)&"), (Items{"(" + Out("main.OBJ") + ")", "(" + Out("start.OBJ") + ")",
                                    "(" + Out("util.OBJ") + ")"}));
  // Five separators: a list separator and a list terminator; a sixth one
  // belongs to the suffix.
  EXPECT_EQ(Repeat("L &  &&,&;& TO x&"),
            (Items{"L ", "  " + Out("main.OBJ") + ",", "  " + Out("start.OBJ") + ",",
                   "  " + Out("util.OBJ") + ";", " TO x&"}));
}

TEST_F(TranslatorCommandTest, RepeatedPartsSkipExcludedFilesAndListEachObjectOnce) {
  project.AddFile("util.asm", "lib");  // the same object as util.c
  project.AddFile("inc/defs.h", "lib");
  project.AddFile("rt.lib", "lib");
  File("start.asm").options().SetInt(kExcludeFromMakeId, 1, 2);
  EXPECT_EQ(Repeat("&&"), (Items{Out("main.OBJ"), Out("util.OBJ"), Rooted("/proj/rt.lib")}));

  // Quoted when holding a blank; backslashes (on Windows) become the option.
  TargetOptions().SetString(kTargetDirectoryId, "my out", 0);
  project.global_options().SetString(kPathSeparatorString, "/", 0);
  std::string expected = Rooted("/proj/my out/main.OBJ");
  for (char& c : expected) c = c == '\\' ? '/' : c;
  EXPECT_EQ(Repeat("&&").front(), "\"" + expected + "\"");
}

TEST_F(TranslatorCommandTest, LinkerParametersJoinTheItemsWithSingleBlanks) {
  TargetOptions().SetString(kLinkerOptionsId, "  -o $(OUTPUTPATH) &\"&\" & -lc ", 0);
  bool misused = true;
  EXPECT_EQ(LinkerParameters(project, *target, env, &misused),
            "-o " + Out("demo.elf") + " \"" + Out("main.OBJ") + "\" \"" + Out("start.OBJ") +
                "\" \"" + Out("util.OBJ") + "\" -lc");
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
            "ld " + Out("main.OBJ") + " " + Out("start.OBJ") + " " + Out("util.OBJ"));
}

class CommandFileTest : public TranslatorCommandTest {
 protected:
  CommandFileResult Write(bool crlf) {
    return WriteExpandedFile(
        fs, template_path, output_path,
        [&](std::string_view line) { return ExpandLinkerLine(line, project, *target, env); }, crlf);
  }
  static std::string Lines(const Items& lines) {
    std::string out;
    for (const std::string& line : lines) out += line + std::string(kCommandFileLineEnd);
    return out;
  }

  FakeFileSystem fs;
  std::string template_path = Rooted("/proj/link.lnk");
  std::string output_path = Rooted("/proj/out/___Lnk.lnk");
};

TEST_F(CommandFileTest, CrLfPutsEveryItemOnALineOfItsOwn) {
  fs.Create(template_path, "-o $(OUTPUTFILE)\r\n\nIN &&& -end\n");
  fs.MakeDirectories(Rooted("/proj/out"));
  const std::string objects[] = {Out("main.OBJ"), Out("start.OBJ"), Out("util.OBJ")};
  ASSERT_TRUE(Write(true).ok());
  EXPECT_EQ(fs.Contents(output_path),
            Lines({"-o demo.elf", "", "IN ", objects[0], objects[1], objects[2], " -end"}));
  // Cleared: one line per template line, its items run together.
  ASSERT_TRUE(Write(false).ok());
  EXPECT_EQ(fs.Contents(output_path),
            Lines({"-o demo.elf", "", "IN " + objects[0] + objects[1] + objects[2] + " -end"}));
}

TEST_F(CommandFileTest, ReportsWhichFileFailedAndWhy) {
  CommandFileResult result = Write(false);
  EXPECT_EQ(result.outcome, CommandFileResult::kCannotRead);
  EXPECT_EQ(result.file, template_path);
  EXPECT_EQ(result.system_text, "No such file or directory");
  EXPECT_TRUE(fs.files_written().empty());

  fs.Create(template_path, "x\n");  // but the output directory is missing
  result = Write(false);
  EXPECT_EQ(result.outcome, CommandFileResult::kCannotCreate);
  EXPECT_EQ(result.file, output_path);
  EXPECT_EQ(result.system_text, "No such file or directory");

  fs.MakeDirectories(Rooted("/proj/out"));
  fs.FailNthWrite(1);
  EXPECT_EQ(Write(false).outcome, CommandFileResult::kCannotCreate);
}

}  // namespace
}  // namespace quillon
