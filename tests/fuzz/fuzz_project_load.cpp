// A project load from hostile bytes, through the export the IDE calls: the
// shared part, then the same bytes as the per-user part, then a save of
// whatever was loaded. Nothing may crash, hang or leak.
#include <cstddef>
#include <cstdint>
#include <string>

#include "quillon/quillon.h"
#include "support/memory_istream.h"

namespace {

int QUILLON_CALL IgnoreChange(intptr_t, intptr_t, int) { return 0; }
int QUILLON_CALL IgnoreHost(int, void*) { return 0; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool initialised = false;
  if (!initialised) {
    _Set_IRF_FileName("/fuzz/project.qpj");
    initialised = true;
  }
  _InitProjectData(IgnoreChange, IgnoreHost);
  quillon::MemoryIStream input;
  input.Assign(std::string(reinterpret_cast<const char*>(data), size));
  _Transfer(input.get(), 0, 0);
  input.Rewind();
  _Transfer(input.get(), 0, 1);

  std::string name;
  for (int i = 0; _GetProjectFileName(&name, i) > 0; ++i) {
  }
  quillon::MemoryIStream output;
  _Transfer(output.get(), 1, 0);
  _DoneProjectData();
  return 0;
}
