// Run-time loading for the host test: LoadLibrary/GetProcAddress on Windows,
// dlopen/dlsym elsewhere. The library is never unloaded.
#include "host_library.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace quillon {
namespace {

#ifdef _WIN32
void* OpenLibrary(const std::string& path, std::string* error) {
  HMODULE module = LoadLibraryA(path.c_str());
  if (module == nullptr) *error = "LoadLibrary failed with error " + std::to_string(GetLastError());
  return reinterpret_cast<void*>(module);
}

void* FindExport(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}
#else
void* OpenLibrary(const std::string& path, std::string* error) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) *error = dlerror();
  return library;
}

void* FindExport(void* library, const char* name) { return dlsym(library, name); }
#endif

template <typename Function>
void Bind(void* library, const char* name, Function* slot, std::vector<std::string>* missing) {
  void* address = FindExport(library, name);
  if (address == nullptr) missing->push_back(name);
  *slot = reinterpret_cast<Function>(address);
}

}  // namespace

bool LoadHostLibrary(const std::string& path, HostLibrary* lib, std::string* error) {
  void* library = OpenLibrary(path, error);
  if (library == nullptr) return false;
  lib->missing.clear();
#define QUILLON_HOST_BIND(name) Bind(library, "_" #name, &lib->name, &lib->missing);
  QUILLON_HOST_EXPORTS(QUILLON_HOST_BIND)
#undef QUILLON_HOST_BIND
  return true;
}

HostLibrary& Quillon() {
  static HostLibrary library;
  return library;
}

}  // namespace quillon
