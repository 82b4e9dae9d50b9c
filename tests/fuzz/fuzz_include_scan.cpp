// Arbitrary bytes scanned as a source, as a dependency update reads one.
// Beyond the sanitizers: the fast directive search must find exactly what
// the line rules find, at the same lines; a keyword match lies within its
// line; and an update on an in-memory disk, with the bytes as a C, a
// Verilog and a keyword-style source and as a header they may include,
// leaves a graph whose every edge names a node, that a snapshot restores,
// and that a second update does not read again.
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "deps/dependency_scanner.h"
#include "deps/include_line.h"
#include "support/fake_file_system.h"

namespace {

using namespace quillon;
using Found = std::pair<std::vector<std::pair<std::string, int>>, bool>;

Found ByLines(const std::string& text, char directive) {
  Found found;
  LineReader reader(text.data(), text.size());
  int number = 1;
  for (std::string_view line; reader.Next(&line); ++number) {
    const LineMatch match = MatchDirectiveLine(line, directive);
    if (match.kind == LineKind::kNoDependencies) return {found.first, true};
    if (match.kind == LineKind::kInclude) found.first.emplace_back(match.name, number);
  }
  return found;
}

Found ByScanner(const std::string& text, char directive) {
  Found found;
  DirectiveScanner scanner(text.data(), text.size(), directive);
  for (std::string_view name; scanner.Next(&name);) found.first.emplace_back(name, scanner.line());
  found.second = scanner.has_marker();
  return found;
}

void CheckKeywordLines(const std::string& text, const KeywordIncludeRules& rules) {
  LineReader reader(text.data(), text.size());
  for (std::string_view line; reader.Next(&line);) {
    const std::string_view name = MatchKeywordLine(line, rules);
    if (name.empty()) continue;
    if (name.data() < line.data() || name.data() + name.size() > line.data() + line.size()) {
      __builtin_trap();
    }
  }
}

void CheckEdges(const CDependencyScanner& scanner, const CDependencyNode* node) {
  for (const CDependencyNode* dep : node->dependencies()) {
    if (scanner.FindNode(dep->name()) != dep) __builtin_trap();
  }
}

void Update(const std::string& text, const KeywordIncludeRules& rules) {
  FakeFileSystem fs;
  for (const char* path : {"/p/a.c", "/p/a.v", "/p/a.asm", "/p/inc/a.h", "/p/inc/sub/b.h"}) {
    fs.Create(path, text);
  }
  ScanRequest request;
  request.sources = {{"/p/a.c", ScanStyle::kC}, {"/p/a.v", ScanStyle::kVerilog},
                     {"/p/a.asm", ScanStyle::kKeyword}};
  request.include_paths = {{"/p/inc", true}};
  request.keywords = rules;
  CDependencyScanner scanner(fs);
  scanner.Update(request, nullptr);
  for (size_t i = 0; i < scanner.root_count(); ++i) CheckEdges(scanner, scanner.RootAt(i));
  for (size_t i = 0; i < scanner.node_count(); ++i) CheckEdges(scanner, scanner.NodeAt(i));

  CDependencyScanner restored(fs);
  if (!restored.Restore(scanner.Snapshot()) || restored.node_count() != scanner.node_count() ||
      restored.root_count() != scanner.root_count()) {
    __builtin_trap();
  }
  fs.ClearRecords();
  scanner.Update(request, nullptr);
  if (!fs.files_mapped().empty()) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  for (char directive : {'#', '`'}) {
    if (ByScanner(text, directive) != ByLines(text, directive)) __builtin_trap();
  }
  const KeywordIncludeRules quoted{true, true, true, "INCLUDE", "'", "'"};
  const KeywordIncludeRules bare{true, false, false, ".inc", "", ""};
  CheckKeywordLines(text, quoted);
  CheckKeywordLines(text, bare);
  Update(text, quoted);
  return 0;
}
