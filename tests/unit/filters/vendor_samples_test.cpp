// Every parser on real tool output. The samples are tests/data/diagnostics/*.txt
// (their format is told in INDEX.md there); each *.expect file names a sample,
// a filter and a translator and lists, in order, the entries the filter must
// give, one per line:
//
//   = SAMPLE-ID | FILTER NAME | compiler|assembler|linker
//   SEVERITY|FILE|LINE|COLUMN|CODE|TEXT
//
// SEVERITY is E, W or F; FILE is written with '/' for separators; TEXT is
// last and may hold '|'; a line feed in it is written \n and other control
// bytes \xNN. Lines starting with '#' are remarks.
// An entry that names no file gets the project file, written here as
// PROJECT.c (the link has none).
//
// After a parser changes, QUILLON_WRITE_EXPECTED=1 rewrites the entry lines of
// the source tree's files from what the parsers give now; review the diff
// against the samples' EXPECT lines before keeping it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "filters/output_filter.h"
#include "filters/parser_factory.h"
#include "support/embedded_files.h"
#include "support/fake_file_system.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

Lines SplitLines(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

std::string Trim(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return "";
  return std::string(text.substr(first, text.find_last_not_of(" \t") - first + 1));
}

bool EndsWith(std::string_view text, std::string_view tail) {
  return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

// Sample id -> its captured output, one LF after each line.
std::map<std::string, std::string> LoadSamples() {
  std::map<std::string, std::string> samples;
  for (const EmbeddedFile& file : DiagnosticSampleFiles()) {
    if (!EndsWith(file.name, ".txt")) continue;
    std::string id;
    std::string* output = nullptr;
    for (const std::string& line : SplitLines(file.text)) {
      if (output != nullptr) {
        if (line == "---- END") {
          output = nullptr;
        } else {
          *output += line + "\n";
        }
      } else if (line.rfind("SAMPLE ", 0) == 0) {
        id = line.substr(7, line.find(' ', 7) - 7);
      } else if (line == "OUTPUT:" && !id.empty()) {
        EXPECT_EQ(samples.count(id), 0u) << "sample " << id << " twice";
        output = &samples[id];
      }
    }
  }
  return samples;
}

std::string Escape(const std::string& text) {
  std::string out;
  for (unsigned char c : text) {
    if (c == '\n') {
      out += "\\n";
    } else if (c < 0x20 && c != '\t') {
      static const char kHex[] = "0123456789ABCDEF";
      out += std::string("\\x") + kHex[c >> 4] + kHex[c & 15];
    } else {
      out += static_cast<char>(c);
    }
  }
  return out;
}

// Files with '/' whatever the platform: parsers that tidy a name use the
// native separator.
std::string Format(const MessageEntry& e) {
  const char severity = e.severity >= 0 && e.severity <= 2 ? "EWF"[e.severity] : '?';
  std::string file = e.file;
  for (char& c : file) {
    if (c == '\\') c = '/';
  }
  return std::string(1, severity) + "|" + file + "|" + std::to_string(e.line) + "|" +
         std::to_string(e.column) + "|" + e.code + "|" + Escape(e.text);
}

struct Case {
  std::string sample, filter, translator;
  Lines expected;
};

// Cases of one .expect file, with the remark lines kept for rewriting.
struct ExpectFile {
  std::string name;
  Lines head;  // remarks before the first case
  std::vector<std::pair<Case, Lines>> cases;  // each with the remarks behind it
};

ExpectFile ParseExpectFile(const EmbeddedFile& file) {
  ExpectFile parsed{std::string(file.name), {}, {}};
  for (const std::string& line : SplitLines(file.text)) {
    if (line.rfind("= ", 0) == 0) {
      const std::string fields = line.substr(2);
      const size_t bar1 = fields.find('|');
      const size_t bar2 = fields.rfind('|');
      Case c{Trim(fields.substr(0, bar1)), Trim(fields.substr(bar1 + 1, bar2 - bar1 - 1)),
             Trim(fields.substr(bar2 + 1)), {}};
      EXPECT_TRUE(bar1 != std::string::npos && bar2 > bar1) << file.name << ": " << line;
      parsed.cases.push_back({c, {}});
    } else if (line.empty() || line[0] == '#') {
      (parsed.cases.empty() ? parsed.head : parsed.cases.back().second).push_back(line);
    } else if (!parsed.cases.empty()) {
      parsed.cases.back().first.expected.push_back(line);
    } else {
      ADD_FAILURE() << file.name << ": an entry before any case: " << line;
    }
  }
  return parsed;
}

// What `filter` finds in `output` as the captured output of `translator`.
Lines RunFilter(const std::string& filter, const std::string& translator,
                const std::string& output) {
  FakeFileSystem fs;
  CollectingSink sink;
  CMessageTable table;
  fs.Create("/capture.txt", output);
  COutputFilter f(filter, fs, sink, table);
  int kind = kCompilerMessage;
  if (translator == "compiler") {
    f.FilterCompilerOutput("PROJECT.c", "/capture.txt");
  } else if (translator == "assembler") {
    kind = kAssemblerMessage;
    f.FilterAssemblerOutput("PROJECT.c", "/capture.txt");
  } else if (translator == "linker") {
    kind = kLinkerMessage;
    f.FilterLinkerOutput("/capture.txt");
  } else {
    ADD_FAILURE() << "no translator " << translator;
  }
  Lines shown;
  for (const MessageEntry& e : sink.entries) {
    EXPECT_EQ(e.kind, kind) << filter << " " << translator << ": " << e.text;
    shown.push_back(Format(e));
  }
  return shown;
}

void Rewrite(const ExpectFile& file, const std::vector<Lines>& actual) {
  std::ofstream out(std::string(QUILLON_DIAGNOSTICS_DIR) + "/" + file.name, std::ios::binary);
  for (const std::string& line : file.head) out << line << "\n";
  for (size_t i = 0; i < file.cases.size(); ++i) {
    const Case& c = file.cases[i].first;
    out << "= " << c.sample << " | " << c.filter << " | " << c.translator << "\n";
    for (const std::string& line : actual[i]) out << line << "\n";
    for (const std::string& line : file.cases[i].second) out << line << "\n";
  }
}

TEST(VendorSamplesTest, EveryParserGivesTheExpectedEntries) {
  const std::map<std::string, std::string> samples = LoadSamples();
  const bool rewrite = std::getenv("QUILLON_WRITE_EXPECTED") != nullptr;
  std::set<std::string> filters_seen;
  int cases = 0;
  for (const EmbeddedFile& file : DiagnosticSampleFiles()) {
    if (!EndsWith(file.name, ".expect")) continue;
    const ExpectFile parsed = ParseExpectFile(file);
    std::vector<Lines> actual;
    for (const auto& [c, remarks] : parsed.cases) {
      const auto sample = samples.find(c.sample);
      if (sample == samples.end()) {
        ADD_FAILURE() << file.name << ": no sample " << c.sample;
        actual.push_back(c.expected);
        continue;
      }
      actual.push_back(RunFilter(c.filter, c.translator, sample->second));
      if (!rewrite) {
        EXPECT_EQ(actual.back(), c.expected)
            << file.name << ": " << c.sample << " | " << c.filter << " | " << c.translator;
      }
      filters_seen.insert(c.filter);
      ++cases;
    }
    if (rewrite) Rewrite(parsed, actual);
  }
  EXPECT_GT(cases, 0);
  // Each parser meets real or reconstructed output at least once.
  for (std::string_view name : ParserFilterNames()) {
    EXPECT_EQ(filters_seen.count(std::string(name)), 1u) << "no sample case for " << name;
  }
}

}  // namespace
}  // namespace quillon
