// Save and load of a big project (10,000 files in 4 targets, so 40,000 file
// nodes; and 100,000 files, to show how the cost grows) beside writing and
// reading the same bytes in one piece. The argument is the number of files.
//
//   build/release/bench/project_bench --benchmark_counters_tabular=true
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "model/project_data.h"
#include "model/registry/settings_registry.h"
#include "platform/file_system.h"

namespace quillon {
namespace {

constexpr int kTargets = 4;
constexpr int kGroups = 20;

int Files(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

// File i goes to group i % kGroups. Filling one group after the other gives
// the same project as adding the files in order, without moving the target's
// file list at every file.
std::unique_ptr<CProjectData> BigProject(int files) {
  auto project = CProjectData::Create(0);
  project->Initialise(0);
  project->set_project_file("/bench/big.qpj");
  project->AddTarget("Debug", "");
  for (int g = 0; g < kGroups; ++g) project->AddLinkGroup("Group " + std::to_string(g));
  for (int g = 0; g < kGroups; ++g) {
    std::string group = "Group " + std::to_string(g);
    for (int i = g; i < files; i += kGroups) {
      project->AddFile("src/module" + std::to_string(i % 97) + "/file" + std::to_string(i) + ".c",
                       group);
    }
  }
  for (int t = 1; t < kTargets; ++t) project->AddTarget("Target " + std::to_string(t), "Debug");
  project->SetDefaultTarget(project->first_target());
  return project;
}

std::string SaveToBytes(const CProjectData& project) {
  CSettingsRegistry store(nullptr, true);
  store.OpenKey("Project", true);
  project.Save(store, TransferPass::kShared);
  return store.Serialize();
}

std::string TempPath(int files) {
  const char* dir = std::getenv("TMPDIR");
  return std::string(dir ? dir : "/tmp") + "/quillon_project_bench_" + std::to_string(files) +
         ".qpj";
}

void SetBytes(benchmark::State& state, size_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
  state.counters["bytes"] = static_cast<double>(bytes);
  state.counters["file_nodes"] = static_cast<double>(Files(state) * kTargets);
}

void BM_SaveProject(benchmark::State& state) {
  auto project = BigProject(Files(state));
  FileSystem& fs = FileSystem::Default();
  std::string path = TempPath(Files(state));
  size_t bytes = 0;
  for (auto _ : state) {
    std::string image = SaveToBytes(*project);
    bytes = image.size();
    if (!fs.WriteFile(path, image).ok()) state.SkipWithError("write failed");
  }
  SetBytes(state, bytes);
}

void BM_LoadProject(benchmark::State& state) {
  FileSystem& fs = FileSystem::Default();
  std::string path = TempPath(Files(state));
  fs.WriteFile(path, SaveToBytes(*BigProject(Files(state))));
  size_t bytes = 0;
  for (auto _ : state) {
    std::string image;
    if (!fs.ReadFile(path, &image).ok()) state.SkipWithError("read failed");
    bytes = image.size();
    MemoryByteStream stream(std::move(image));
    CSettingsRegistry store(&stream, false);
    auto project = CProjectData::Create(0);
    project->Initialise(0);
    store.OpenKey("Project", false);
    project->Load(store, TransferPass::kShared);
    if (project->first_target() == nullptr ||
        project->first_target()->files.size() != static_cast<size_t>(Files(state))) {
      state.SkipWithError("project did not load");
    }
  }
  SetBytes(state, bytes);
}

// The parts of a load apart. The store alone: the bytes copied from memory
// (in place of the read) and parsed, no project built.
void BM_ParseStore(benchmark::State& state) {
  std::string image = SaveToBytes(*BigProject(Files(state)));
  for (auto _ : state) {
    MemoryByteStream stream(image);
    CSettingsRegistry store(&stream, false);
    benchmark::DoNotOptimize(store.root().child_count());
  }
  SetBytes(state, image.size());
}

// The project built from a store parsed once, then freed.
void BM_BuildModel(benchmark::State& state) {
  std::string image = SaveToBytes(*BigProject(Files(state)));
  MemoryByteStream stream(image);
  CSettingsRegistry store(&stream, false);
  for (auto _ : state) {
    auto project = CProjectData::Create(0);
    project->Initialise(0);
    store.OpenKeyFromRoot("Project", false);
    project->Load(store, TransferPass::kShared);
  }
  SetBytes(state, image.size());
}

// Two floors under any load of these bytes into this model, whatever the
// store does. The records' lengths chain each record's place to the one
// before, so walking them (no nodes, no checks) is a chain of dependent
// loads:
const unsigned char* SkipRecords(const unsigned char* at, const unsigned char* end,
                                 uint32_t count, size_t* records) {
  auto u16 = [&] {
    uint32_t value = at[0] | (at[1] << 8);
    at += 2;
    return value;
  };
  auto u32 = [&] {
    uint32_t value = at[0] | (at[1] << 8) | (at[2] << 16) | (static_cast<uint32_t>(at[3]) << 24);
    at += 4;
    return value;
  };
  for (uint32_t i = 0; i < count && at != nullptr && at + 3 <= end; ++i) {
    ++*records;
    const int type = *at++;
    const uint32_t children = type == kRegKey ? u16() : 0;
    at += u16();
    switch (type) {
      case kRegKey: break;
      case kRegInt: at += 4; break;
      case kRegInt64: at += 8; break;
      case kRegString: at += u16(); break;
      case kRegBuffer: at += u32(); break;
      case kRegWords: at += 4 * u32(); break;
      case kRegStringList:
        for (uint32_t n = u32(); n > 0; --n) at += u16();
        break;
      default: return nullptr;
    }
    if (children != 0) at = SkipRecords(at, end, children, records);
  }
  return at;
}

void BM_FloorWalkRecords(benchmark::State& state) {
  std::string image = SaveToBytes(*BigProject(Files(state)));
  size_t records = 0;
  for (auto _ : state) {
    records = 0;
    const auto* start = reinterpret_cast<const unsigned char*>(image.data());
    // After the header: the root key's type, count and name.
    const unsigned char* at = start + 10;
    const uint32_t count = at[1] | (at[2] << 8);
    at += 5 + (at[3] | (at[4] << 8));
    benchmark::DoNotOptimize(SkipRecords(at, start + image.size(), count, &records));
  }
  SetBytes(state, image.size());
  state.counters["records"] = static_cast<double>(records);
}

// ...and the project's files, made and freed without any store.
void BM_FloorMakeFiles(benchmark::State& state) {
  auto project = CProjectData::Create(0);
  std::vector<std::string> names;
  for (int t = 0; t < kTargets; ++t) {
    for (int i = 0; i < Files(state); ++i) {
      names.push_back("src/module" + std::to_string(i % 97) + "/file" + std::to_string(i) + ".c");
    }
  }
  for (auto _ : state) {
    std::vector<std::unique_ptr<CProjectFile>> files(names.size());
    for (size_t i = 0; i < names.size(); ++i) {
      files[i] = std::make_unique<CProjectFile>(names[i], project->NewFileOptions());
    }
    benchmark::DoNotOptimize(files.data());
  }
  state.counters["file_nodes"] = static_cast<double>(names.size());
}

void BM_RawWrite(benchmark::State& state) {
  FileSystem& fs = FileSystem::Default();
  std::string image = SaveToBytes(*BigProject(Files(state)));
  std::string path = TempPath(Files(state)) + ".raw";
  for (auto _ : state) {
    if (!fs.WriteFile(path, image).ok()) state.SkipWithError("write failed");
  }
  SetBytes(state, image.size());
}

void BM_RawRead(benchmark::State& state) {
  FileSystem& fs = FileSystem::Default();
  std::string path = TempPath(Files(state)) + ".raw";
  fs.WriteFile(path, SaveToBytes(*BigProject(Files(state))));
  size_t bytes = 0;
  for (auto _ : state) {
    std::string image;
    if (!fs.ReadFile(path, &image).ok()) state.SkipWithError("read failed");
    bytes = image.size();
    benchmark::DoNotOptimize(image.data());
  }
  SetBytes(state, bytes);
}

// Each project's cases side by side: save, load, raw write, raw read.
BENCHMARK(BM_SaveProject)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadProject)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseStore)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BuildModel)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FloorWalkRecords)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FloorMakeFiles)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RawWrite)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RawRead)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveProject)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadProject)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseStore)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BuildModel)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FloorWalkRecords)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FloorMakeFiles)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RawWrite)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RawRead)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillon

BENCHMARK_MAIN();
