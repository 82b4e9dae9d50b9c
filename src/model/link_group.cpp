#include "model/link_group.h"

#include <algorithm>

#include "model/key_scope.h"
#include "model/project_data.h"
#include "model/project_target.h"

namespace quillon {

CLinkGroup::CLinkGroup(std::string name, CProjectTarget* owner,
                       std::unique_ptr<COptionSet> options)
    : name(std::move(name)), owner(owner), options_(std::move(options)) {}

int CLinkGroup::IndexOfFile(const CProjectFile* file) const {
  for (size_t i = 0; i < files.size(); ++i) {
    if (files[i].get() == file) return static_cast<int>(i);
  }
  return -1;
}

int CLinkGroup::Load(CSettingsRegistry& store, TransferPass pass) {
  if (pass == TransferPass::kLocal) return 1;
  store.ReadString("LinkGroupName", &name);
  // The files are read in the order the store keeps them, each into its place.
  const size_t first = files.size();
  store.VisitIndexedKeys(
      "File", [&](size_t count) { files.resize(first + count); },
      [&](size_t index) {
        auto file =
            std::make_unique<CProjectFile>(std::string(), owner->project().NewFileOptions());
        file->group = this;
        file->Load(store, pass);
        files[first + index] = std::move(file);
      });
  files.erase(std::remove(files.begin() + static_cast<std::ptrdiff_t>(first), files.end(), nullptr),
              files.end());
  LoadOptionsKey(store, "LinkGroupOptions", *options_, pass);
  return 1;
}

int CLinkGroup::Save(CSettingsRegistry& store, TransferPass pass) const {
  if (pass == TransferPass::kLocal) return 1;
  // In the store's name order ("File[" before "LinkGroup").
  WriteIndexedKeys(store, "File", files.size(), [&](size_t k) { files[k]->Save(store, pass); });
  store.WriteString("LinkGroupName", name);
  SaveOptionsKey(store, "LinkGroupOptions", *options_, pass);
  return 1;
}

}  // namespace quillon
