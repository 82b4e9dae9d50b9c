// The XML writer's escaping and the exported document, line by line.
#include <gtest/gtest.h>

#include "model/project_xml.h"
#include "support/fake_file_system.h"
#include "support/native_path.h"

namespace quillon {
namespace {

const std::string kEnd = kPathSeparator == '\\' ? "\r\n" : "\n";

TEST(XmlEscapeTest, EntitiesHaveNoSemicolon) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"a&b", "a&ampb"},
      {"it's", "it&aposs"},
      {"\"<x>\"", "&quot&ltx&gt&quot"},
      {"plain;text", "plain;text"},
  };
  for (const auto& [in, out] : cases) EXPECT_EQ(XmlEscape(in), out) << in;
}

TEST(XmlEscapeTest, StopsOnceLongerThan16384) {
  EXPECT_EQ(XmlEscape(std::string(16384, 'a')).size(), 16384u);
  EXPECT_EQ(XmlEscape(std::string(20000, 'a')).size(), 16385u);
  // The entity that crosses the line is kept whole, nothing after it.
  const std::string crossing = std::string(16383, 'a') + "\"\"";
  EXPECT_EQ(XmlEscape(crossing), std::string(16383, 'a') + "&quot");
}

class XmlExportTest : public ::testing::Test {
 protected:
  XmlExportTest() {
    project->Initialise(0);
    project->set_project_file(Rooted("/p/demo.qpj"));
    fs.MakeDirectories(Rooted("/p"));
  }

  // The document without its comment line; lines split at the line end.
  std::vector<std::string> Export(const std::vector<std::string>& dependencies) {
    CXmlWriter writer(fs, -1);
    EXPECT_TRUE(writer.Open(out));
    EXPECT_TRUE(WriteProjectXml(writer, *project, "P&Q", dependencies, "now").ok());
    std::string text = fs.Contents(out);
    std::vector<std::string> lines;
    for (size_t at = 0; at < text.size();) {
      size_t end = text.find(kEnd, at);
      EXPECT_NE(end, std::string::npos) << "unterminated last line";
      if (end == std::string::npos) break;
      lines.push_back(text.substr(at, end - at));
      at = end + kEnd.size();
    }
    EXPECT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[1], "<!-- Created on now-->");
    lines.erase(lines.begin() + 1);
    return lines;
  }

  FakeFileSystem fs;
  std::string out = Rooted("/p/out.xml");
  std::unique_ptr<CProjectData> project = CProjectData::Create();
};

TEST_F(XmlExportTest, FirstTargetsGroupsThenTheDependencies) {
  project->AddTarget("First", "");
  project->AddTarget("Second", "");
  project->SetDefaultTarget(project->FindTarget("Second"));
  project->AddLinkGroup("A&B");
  project->AddLinkGroup("Empty");
  project->AddFile("src/it's.c", "A&B");
  project->AddFile("<odd>.c", "A&B");
  // Only the default target has this group: it is not exported.
  project->FindTarget("Second")->AddGroup("SecondOnly");
  EXPECT_EQ(Export({"/i/a.h", "/i/b\".h"}), (std::vector<std::string>{
                                                "<?xml version=\"1.0\" standalone=\"yes\"?>",
                                                "<Project Name=\"P&ampQ\">",
                                                "\t<Group Name=\"A&ampB\">",
                                                "\t\t<File>it&aposs.c</File>",
                                                "\t\t<File>&ltodd&gt.c</File>",
                                                "\t</Group>",
                                                "\t<Group Name=\"Empty\">",
                                                "\t</Group>",
                                                "\t<Dependencies>",
                                                "\t\t<File>/i/a.h</File>",
                                                "\t\t<File>/i/b&quot.h</File>",
                                                "\t</Dependencies>",
                                                "</Project>",
                                            }));
}

TEST_F(XmlExportTest, NoGroupsAndNoDependencies) {
  project->AddTarget("Only", "");
  EXPECT_EQ(Export({}), (std::vector<std::string>{
                            "<?xml version=\"1.0\" standalone=\"yes\"?>",
                            "<Project Name=\"P&ampQ\">",
                            "\t<Dependencies>",
                            "\t</Dependencies>",
                            "</Project>",
                        }));
}

TEST_F(XmlExportTest, SpacesPerLevelWhenTheIndentIsPositive) {
  CXmlWriter writer(fs, 2);
  ASSERT_TRUE(writer.Open(out));
  const char* top = writer.BeginElement("a");
  writer.LeafElement("b", "x");
  writer.EndElement(top);
  ASSERT_TRUE(writer.Close().ok());
  EXPECT_EQ(fs.Contents(out), "<?xml version=\"1.0\" standalone=\"yes\"?>" + kEnd + "<a>" + kEnd +
                                  "  <b>x</b>" + kEnd + "</a>" + kEnd);
}

TEST_F(XmlExportTest, OpenFailsWithoutWritingAndWriteFailuresReachClose) {
  CXmlWriter nowhere(fs, -1);
  fs.Create(Rooted("/p/file"), "");
  EXPECT_FALSE(nowhere.Open(Rooted("/p/file/out.xml")));  // a file is in the way

  CXmlWriter writer(fs, -1);
  ASSERT_TRUE(writer.Open(out));
  fs.FailNthWrite(1);
  writer.Comment("lost");
  EXPECT_FALSE(writer.Close().ok());
}

}  // namespace
}  // namespace quillon
