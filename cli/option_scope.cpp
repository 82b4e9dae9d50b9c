#include "cli/option_scope.h"

#include "cli/lookup.h"
#include "cli/text_format.h"

namespace quillon::qpm {
namespace {

Status NotAt(const OptionInfo& info, const char* what) {
  return Status::Error(std::string(info.key) + " is a " + LevelName(info.level) +
                       " option; it takes " + what);
}

}  // namespace

Status FindOptionKey(const std::string& key, const OptionInfo** info) {
  *info = FindOption(key);
  if (*info != nullptr) return Status::OK();
  return Status::Error("unknown option " + Quote(key) + " (qpm option list shows them all)");
}

Status ResolveScope(const OptionInfo& info, const OptionPlace& place, OptionScope* scope) {
  *scope = host::ProjectScope();
  switch (info.level) {
    case OptionLevel::kGlobal:
    case OptionLevel::kFilter:
      if (place.target || place.file) return NotAt(info, "neither --target nor --file");
      return Status::OK();
    case OptionLevel::kTarget:
      if (place.file) return NotAt(info, "no --file");
      break;
    case OptionLevel::kFile:
      break;
  }
  std::string target;
  Status status = TargetOrDefault(place.target, &target);
  if (!status.ok()) return status;
  if (info.level == OptionLevel::kFile && place.file) {
    std::string file;
    status = FindFile(target, *place.file, &file);
    if (status.ok()) *scope = host::FileScope(place.target, file);
    return status;
  }
  *scope = host::TargetScope(place.target);
  return Status::OK();
}

}  // namespace quillon::qpm
