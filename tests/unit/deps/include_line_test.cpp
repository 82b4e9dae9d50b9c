// Directive recognition line by line, the line splitting, and the fast
// directive scanner checked against the line-by-line rules.
#include "deps/include_line.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace quillon {
namespace {

std::string IncludeName(std::string_view line, char directive = '#') {
  const LineMatch match = MatchDirectiveLine(line, directive);
  if (match.kind == LineKind::kNoDependencies) return "<marker>";
  return match.kind == LineKind::kInclude ? std::string(match.name) : "<none>";
}

TEST(DirectiveLineTest, IncludesAndTheMarker) {
  EXPECT_EQ(IncludeName("#include <a.h>"), "a.h");
  EXPECT_EQ(IncludeName(" \t#  \tinclude \"dir/b.h\" // note"), "dir/b.h");
  EXPECT_EQ(IncludeName("#include\"x.h\""), "x.h");
  EXPECT_EQ(IncludeName("#include <mixed.h\""), "mixed.h");
  EXPECT_EQ(IncludeName("#include_next <n.h>"), "n.h");  // only "include" is compared
  EXPECT_EQ(IncludeName("#include <>"), "<none>");
  EXPECT_EQ(IncludeName("#include <open.h"), "<none>");
  EXPECT_EQ(IncludeName("#include plain.h"), "<none>");
  EXPECT_EQ(IncludeName("#define include <a.h>"), "<none>");
  EXPECT_EQ(IncludeName("int x; #include <a.h>"), "<none>");
  EXPECT_EQ(IncludeName("#include"), "<none>");
  EXPECT_EQ(IncludeName("  #inc<a>"), "<none>");  // 8 bytes after the blanks
  EXPECT_EQ(IncludeName("`include \"v.v\"", '`'), "v.v");
  EXPECT_EQ(IncludeName("#include \"v.v\"", '`'), "<none>");
  EXPECT_EQ(IncludeName("//{{NO_DEPENDENCIES}}"), "<marker>");
  EXPECT_EQ(IncludeName("\t//{{NO_DEPENDENCIES}} trailing", '`'), "<marker>");
  EXPECT_EQ(IncludeName("//{{NO_DEPENDENCIES}"), "<none>");
  EXPECT_EQ(IncludeName("// {{NO_DEPENDENCIES}}"), "<none>");
  EXPECT_EQ(IncludeName("x //{{NO_DEPENDENCIES}}"), "<none>");
}

TEST(KeywordLineTest, BlanksRules) {
  KeywordIncludeRules s{true, true, true, "INCLUDE", "'", "'"};
  EXPECT_EQ(MatchKeywordLine("  INCLUDE 'x.inc'", s), "x.inc");
  EXPECT_EQ(MatchKeywordLine("INCLUDE 'x.inc'", s), "");  // a leading blank is required
  s.allow_blanks = false;
  EXPECT_EQ(MatchKeywordLine("  INCLUDE 'x.inc'", s), "");
  s.req_blanks = false;
  EXPECT_EQ(MatchKeywordLine("INCLUDE 'x.inc'", s), "x.inc");
  EXPECT_EQ(MatchKeywordLine("include 'x.inc'", s), "");  // case matters
  EXPECT_EQ(MatchKeywordLine("INCLUDEx.inc'", s), "");    // no start string
  EXPECT_EQ(MatchKeywordLine("INCLUDE 'x.inc", s), "");   // no end string
  EXPECT_EQ(MatchKeywordLine("INCLUDE ''", s), "");
  EXPECT_EQ(MatchKeywordLine("INCLUDE '", s), "");  // start at the line's end
}

TEST(KeywordLineTest, StartAndEndStrings) {
  KeywordIncludeRules s{true, false, true, ".inc", "", ""};
  EXPECT_EQ(MatchKeywordLine(".inc   file.s  \t", s), "file.s");  // both empty
  EXPECT_EQ(MatchKeywordLine(".inc", s), "");
  EXPECT_EQ(MatchKeywordLine(".inc    ", s), "");
  s.end = ";";
  EXPECT_EQ(MatchKeywordLine(".inc a b ; comment", s), "a b");
  s.start = "<<";
  s.end = ">>";
  // The name starts one byte after the start string's first byte.
  EXPECT_EQ(MatchKeywordLine(".inc <<x>>", s), "<x");
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  LineReader reader(text.data(), text.size());
  for (std::string_view line; reader.Next(&line);) lines.emplace_back(line);
  return lines;
}

TEST(LineReaderTest, Endings) {
  using V = std::vector<std::string>;
  EXPECT_EQ(Lines(""), V{});
  EXPECT_EQ(Lines("a"), V{"a"});
  EXPECT_EQ(Lines("a\n"), V{"a"});
  EXPECT_EQ(Lines("a\rb\nc\r\nd"), (V{"a", "b", "c", "d"}));
  EXPECT_EQ(Lines("a\n\rb\r\r\n"), (V{"a", "", "b", ""}));
  EXPECT_EQ(Lines("\n\n"), (V{"", ""}));
}

// The fast scanner on the cases the line rules single out; that it finds
// exactly what they find on any bytes is fuzz_include_scan's to check.
TEST(DirectiveScannerTest, FindsWhatTheLineRulesFind) {
  const std::string text =
      "int a;\r\n  #  include \"a.h\"\rx #include <no.h>\n#include<b.h>\n\n"
      "`include \"v.v\"\n //{{NO_DEPENDENCIES}}x\n#include \"after.h\"\n";
  DirectiveScanner scanner(text.data(), text.size(), '#');
  std::vector<std::pair<std::string, int>> found;
  for (std::string_view name; scanner.Next(&name);) found.emplace_back(name, scanner.line());
  EXPECT_EQ(found, (std::vector<std::pair<std::string, int>>{{"a.h", 2}, {"b.h", 4}}));
  EXPECT_TRUE(scanner.has_marker());
}

}  // namespace
}  // namespace quillon
