// The include scanner and the rebuild decision on a tree made by the anchor
// kit's gen_tree.py, in process, beside floors measured in the same run:
//
//   QUILLON_BENCH_TREE=DIR build/release/bench/deps_bench --benchmark_counters_tabular=true
//
// The request is built from the tree's sources.txt and incflags.txt (paths
// made absolute), as the library would build it from a project listing the
// same sources and include paths. The page cache is warm for every case, as
// it is for the floors. The hot header (manifest.json) is given newer times
// while the touched cases run and its own time back at the end.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "deps/dependency_scanner.h"
#include "platform/file_system.h"

namespace quillon {
namespace {

struct Tree {
  std::string root;
  std::vector<std::string> all_files;  // absolute: sources and headers
  std::string hot_header;              // absolute
  ScanRequest request;
};

std::vector<std::string> ReadLines(const std::string& path) {
  std::ifstream in(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

std::string Absolute(const std::string& root, const std::string& relative) {
  return (std::filesystem::path(root) / relative).lexically_normal().string();
}

// The one string field the benchmark needs from manifest.json.
std::string JsonString(const std::string& path, const std::string& key) {
  std::ifstream in(path);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  size_t at = text.find("\"" + key + "\"");
  if (at == std::string::npos) return std::string();
  size_t open = text.find('"', text.find(':', at) + 1);
  size_t close = text.find('"', open + 1);
  return text.substr(open + 1, close - open - 1);
}

bool LoadTree(const std::string& dir, Tree* tree) {
  tree->root = std::filesystem::absolute(dir).lexically_normal().string();
  std::vector<std::string> sources = ReadLines(tree->root + "/sources.txt");
  std::vector<std::string> all = ReadLines(tree->root + "/allfiles.txt");
  std::ifstream flags(tree->root + "/incflags.txt");
  std::string hot = JsonString(tree->root + "/manifest.json", "hot_header");
  if (sources.empty() || all.empty() || !flags || hot.empty()) return false;
  for (const std::string& source : sources) {
    tree->request.sources.push_back({Absolute(tree->root, source), ScanStyle::kC, -1});
  }
  for (std::string flag; flags >> flag;) {
    if (flag.rfind("-I", 0) == 0) {
      tree->request.include_paths.push_back({Absolute(tree->root, flag.substr(2)), false});
    }
  }
  for (const std::string& file : all) tree->all_files.push_back(Absolute(tree->root, file));
  tree->hot_header = Absolute(tree->root, hot);
  return true;
}

Tree& TheTree() {
  static Tree* tree = new Tree;
  return *tree;
}

// Gives the hot header a time newer than `newer_than`, another one per
// call, and its own time back when it goes.
class HotHeaderToucher {
 public:
  HotHeaderToucher(const std::string& path, FileTime newer_than)
      : fs_(FileSystem::Default()),
        path_(path),
        original_(fs_.Stat(path).time),
        base_(std::max(original_, newer_than) + 1000) {}
  ~HotHeaderToucher() { fs_.SetFileTime(path_, original_); }
  bool Touch() { return fs_.SetFileTime(path_, base_ + (++touches_ % 2)).ok(); }

 private:
  FileSystem& fs_;
  std::string path_;
  FileTime original_;
  FileTime base_;
  int touches_ = 0;
};

void GraphCounters(benchmark::State& state, const CDependencyScanner& scanner) {
  state.counters["roots"] = static_cast<double>(scanner.root_count());
  state.counters["nodes"] = static_cast<double>(scanner.node_count());
  state.counters["scanned"] = static_cast<double>(scanner.files_scanned());
}

// Newest time in the graph: an object of this time is up to date.
FileTime NewestTime(const CDependencyScanner& scanner) {
  FileTime newest = kMissingFile;
  for (size_t i = 0; i < scanner.node_count(); ++i) {
    newest = std::max(newest, scanner.NodeAt(i)->time());
  }
  for (size_t i = 0; i < scanner.root_count(); ++i) {
    newest = std::max(newest, scanner.RootAt(i)->time());
  }
  return newest;
}

// The walks IsNewer makes when every object has time `object_time`: one per
// root, the all-nodes flags cleared before each (how the decision used to
// ask, kept for comparison).
int CountOutOfDate(CDependencyScanner& scanner, FileTime object_time) {
  int out_of_date = 0;
  scanner.ClearVisited();
  for (size_t i = 0; i < scanner.root_count(); ++i) {
    scanner.ClearVisitedOfNodes();
    if (scanner.IsNewer(scanner.RootAt(i), object_time)) ++out_of_date;
  }
  return out_of_date;
}

void BM_ColdUpdate(benchmark::State& state) {
  const Tree& tree = TheTree();
  FileSystem& fs = FileSystem::Default();
  std::unique_ptr<CDependencyScanner> scanner;
  for (auto _ : state) {
    state.PauseTiming();
    scanner = std::make_unique<CDependencyScanner>(fs);
    state.ResumeTiming();
    scanner->Update(tree.request, nullptr);
    state.PauseTiming();
    GraphCounters(state, *scanner);
    scanner.reset();  // freeing the graph is not part of an update
    state.ResumeTiming();
  }
}

void BM_WarmUpdateNothingChanged(benchmark::State& state) {
  CDependencyScanner scanner(FileSystem::Default());
  scanner.Update(TheTree().request, nullptr);
  for (auto _ : state) scanner.Update(TheTree().request, nullptr);
  GraphCounters(state, scanner);
  if (scanner.files_scanned() != 0) state.SkipWithError("an unchanged tree was scanned again");
}

void BM_WarmUpdateHotHeaderTouched(benchmark::State& state) {
  CDependencyScanner scanner(FileSystem::Default());
  scanner.Update(TheTree().request, nullptr);
  HotHeaderToucher hot(TheTree().hot_header, NewestTime(scanner));
  for (auto _ : state) {
    state.PauseTiming();
    if (!hot.Touch()) state.SkipWithError("cannot set the hot header's time");
    state.ResumeTiming();
    scanner.Update(TheTree().request, nullptr);
  }
  GraphCounters(state, scanner);
  if (scanner.files_scanned() != 1) state.SkipWithError("expected one file scanned");
}

// What the decision asks now: every root's newest time in one pass over
// the graph, each root then compared with its object's time.
int CountOutOfDateInOnePass(CDependencyScanner& scanner, FileTime object_time) {
  int out_of_date = 0;
  for (FileTime newest : scanner.NewestTimesOfRoots()) out_of_date += newest > object_time;
  return out_of_date;
}

// Times `count` over the graph, with nothing to do or after touching the
// hot header (its time is given back when the case ends).
void RunDecision(benchmark::State& state, int (*count)(CDependencyScanner&, FileTime),
                 bool touch_hot_header) {
  CDependencyScanner scanner(FileSystem::Default());
  scanner.Update(TheTree().request, nullptr);
  const FileTime objects = NewestTime(scanner);
  int out_of_date = 0;
  {
    HotHeaderToucher hot(TheTree().hot_header, objects);
    if (touch_hot_header) {
      if (!hot.Touch()) state.SkipWithError("cannot set the hot header's time");
      scanner.Update(TheTree().request, nullptr);
    }
    for (auto _ : state) out_of_date = count(scanner, objects);
  }
  state.counters["out_of_date"] = out_of_date;
  GraphCounters(state, scanner);
}

void BM_DecisionOnePassNothingToDo(benchmark::State& state) {
  RunDecision(state, CountOutOfDateInOnePass, false);
}
void BM_DecisionOnePassHotHeaderTouched(benchmark::State& state) {
  RunDecision(state, CountOutOfDateInOnePass, true);
}
void BM_IsNewerWalksNothingToDo(benchmark::State& state) {
  RunDecision(state, CountOutOfDate, false);
}
void BM_IsNewerWalksHotHeaderTouched(benchmark::State& state) {
  RunDecision(state, CountOutOfDate, true);
}

// Floors in this process, as the kit's floor.c measures them: stat every
// file once; map every file and count its include lines.
void BM_FloorStat(benchmark::State& state) {
  for (auto _ : state) {
    int64_t bytes = 0;
    for (const std::string& path : TheTree().all_files) {
      struct stat st;
      if (stat(path.c_str(), &st) == 0) bytes += st.st_size;
    }
    benchmark::DoNotOptimize(bytes);
  }
}

size_t CountIncludeLines(const char* p, size_t size) {
  size_t hits = 0;
  const char* end = p + size;
  for (const char* s = p; s < end;) {
    const char* nl = static_cast<const char*>(memchr(s, '\n', end - s));
    const char* e = nl ? nl : end;
    const char* q = s;
    while (q < e && (*q == ' ' || *q == '\t')) ++q;
    if (q < e && *q == '#') {
      ++q;
      while (q < e && (*q == ' ' || *q == '\t')) ++q;
      if (e - q >= 7 && memcmp(q, "include", 7) == 0) ++hits;
    }
    s = e + 1;
  }
  return hits;
}

void BM_FloorMapScan(benchmark::State& state) {
  size_t hits = 0;
  for (auto _ : state) {
    hits = 0;
    for (const std::string& path : TheTree().all_files) {
      int fd = open(path.c_str(), O_RDONLY);
      if (fd < 0) continue;
      struct stat st;
      if (fstat(fd, &st) != 0 || st.st_size == 0) {
        close(fd);
        continue;
      }
      size_t size = static_cast<size_t>(st.st_size);
      void* p = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
      close(fd);
      if (p == MAP_FAILED) continue;
      hits += CountIncludeLines(static_cast<const char*>(p), size);
      munmap(p, size);
    }
  }
  state.counters["include_lines"] = static_cast<double>(hits);
}

void Register() {
  auto ms = benchmark::kMillisecond;
  benchmark::RegisterBenchmark("BM_FloorStat", BM_FloorStat)->Unit(ms);
  benchmark::RegisterBenchmark("BM_FloorMapScan", BM_FloorMapScan)->Unit(ms);
  benchmark::RegisterBenchmark("BM_ColdUpdate", BM_ColdUpdate)->Unit(ms);
  benchmark::RegisterBenchmark("BM_WarmUpdateNothingChanged", BM_WarmUpdateNothingChanged)
      ->Unit(ms);
  benchmark::RegisterBenchmark("BM_WarmUpdateHotHeaderTouched", BM_WarmUpdateHotHeaderTouched)
      ->Unit(ms);
  benchmark::RegisterBenchmark("BM_DecisionOnePassNothingToDo", BM_DecisionOnePassNothingToDo)
      ->Unit(ms);
  benchmark::RegisterBenchmark("BM_DecisionOnePassHotHeaderTouched",
                               BM_DecisionOnePassHotHeaderTouched)
      ->Unit(ms);
  benchmark::RegisterBenchmark("BM_IsNewerWalksNothingToDo", BM_IsNewerWalksNothingToDo)->Unit(ms);
  benchmark::RegisterBenchmark("BM_IsNewerWalksHotHeaderTouched", BM_IsNewerWalksHotHeaderTouched)
      ->Unit(ms);
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const char* dir = std::getenv("QUILLON_BENCH_TREE");
  if (dir == nullptr || *dir == '\0') {
    std::fprintf(stderr,
                 "deps_bench: QUILLON_BENCH_TREE is not set; point it at a tree made by the "
                 "anchor kit's gen_tree.py. Nothing measured.\n");
    return 0;
  }
  if (!quillon::LoadTree(dir, &quillon::TheTree())) {
    std::fprintf(stderr, "deps_bench: %s holds no gen_tree.py tree\n", dir);
    return 1;
  }
  quillon::Register();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
