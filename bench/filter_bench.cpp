// The output filters over a big captured log, for the ratio to the floor of
// reading the same file line by line (run-filter-bench.sh times `wc -l`
// beside it).
//
//   filter_bench make gcc|microsoft|iar FILE MEGABYTES   writes a log
//   filter_bench run FILTER FILE [RUNS]                  filters it as compiler output
//
// A log is one fifth diagnostics; the rest is what surrounds them in real
// output: notes, context, source excerpts and caret lines.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "build/message_table.h"
#include "filters/output_filter.h"
#include "platform/file_system.h"

namespace quillon {
namespace {

// Counts entries and their bytes, so that nothing is optimised away; the
// error list's formatting is the build's cost, not the filter's.
class CountingSink : public MessageListSink {
 public:
  void AddMessage(const MessageEntry& entry) override {
    ++entries;
    bytes += entry.text.size() + entry.file.size() + entry.code.size();
  }
  long long entries = 0;
  long long bytes = 0;
};

// Five lines of one vendor's output, diagnostic first; `i` varies names and numbers.
std::string Block(const std::string& vendor, long long i) {
  char buf[1024];
  const int line = static_cast<int>(i % 4000) + 1;
  const int module = static_cast<int>(i % 613);
  const char* severity = i % 3 == 0 ? "error" : "warning";
  if (vendor == "gcc") {
    std::snprintf(buf, sizeof buf,
                  "src/drivers/module_%d.c:%d:%d: %s: unused variable 'value_%lld' "
                  "[-Wunused-variable]\n"
                  "src/drivers/module_%d.c: In function 'update_%lld':\n"
                  " %4d |     int value_%lld = compute_checksum(buffer, length, %lld);\n"
                  "      |         ^~~~~~~~~~\n"
                  "compilation of module_%d continues with %lld remaining\n",
                  module, line, 9, severity, i, module, i, line, i, i, module, i);
  } else if (vendor == "microsoft") {
    std::snprintf(buf, sizeof buf,
                  "src\\drivers\\module_%d.c(%d): %s C4101: 'value_%lld': unreferenced local "
                  "variable\n"
                  "module_%d.c\n"
                  "        with\n"
                  "        [\n"
                  "            T=struct buffer_%lld\n",
                  module, line, severity, i, module, i);
  } else {
    std::snprintf(buf, sizeof buf,
                  "      int value_%lld = compute_checksum(buffer, length, %lld);\n"
                  "          ^\n"
                  "\"src\\drivers\\module_%d.c\",%d  %s[Pe177]: variable \"value_%lld\" was "
                  "declared but never referenced\n"
                  "\n"
                  "  while compiling module_%d for the target, %lld lines to go\n",
                  i, i, module, line, i % 3 == 0 ? "Error" : "Warning", i, module, i);
  }
  return buf;
}

int Make(const std::string& vendor, const std::string& path, long long megabytes) {
  if (vendor != "gcc" && vendor != "microsoft" && vendor != "iar") {
    std::fprintf(stderr, "filter_bench: no log layout %s\n", vendor.c_str());
    return 2;
  }
  std::ofstream out(path, std::ios::binary);
  std::string chunk;
  long long written = 0;
  for (long long i = 0; written < megabytes * 1000000; ++i) {
    chunk += Block(vendor, i);
    if (chunk.size() > (1 << 20)) {
      out << chunk;
      written += static_cast<long long>(chunk.size());
      chunk.clear();
    }
  }
  out << chunk;
  return out ? 0 : 1;
}

int Run(const std::string& filter, const std::string& path, int runs) {
  FileSystem& fs = FileSystem::Default();
  std::string bytes;
  if (!fs.ReadFile(path, &bytes).ok()) {
    std::fprintf(stderr, "filter_bench: cannot read %s\n", path.c_str());
    return 1;
  }
  const long long lines = std::count(bytes.begin(), bytes.end(), '\n');
  bytes.clear();
  bytes.shrink_to_fit();
  double best = 1e30;
  CountingSink sink;
  for (int r = 0; r < runs; ++r) {
    sink = CountingSink();
    CMessageTable table;
    COutputFilter output_filter(filter, fs, sink, table);
    const auto start = std::chrono::steady_clock::now();
    output_filter.FilterCompilerOutput("/bench/src/main.c", path);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    best = std::min(best, took.count());
  }
  std::printf("%s: %lld lines, %lld entries, best of %d: %.3f s, %.1f M lines/s\n",
              filter.c_str(), lines, sink.entries, runs, best, lines / best / 1e6);
  return 0;
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
  const std::string verb = argc > 1 ? argv[1] : "";
  if (verb == "make" && argc == 5) return quillon::Make(argv[2], argv[3], std::atoll(argv[4]));
  if (verb == "run" && (argc == 4 || argc == 5)) {
    return quillon::Run(argv[2], argv[3], argc == 5 ? std::max(1, std::atoi(argv[4])) : 3);
  }
  std::fprintf(stderr,
               "usage: filter_bench make gcc|microsoft|iar FILE MEGABYTES\n"
               "       filter_bench run FILTER FILE [RUNS]\n");
  return 2;
}
