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

Status ResolveScope(CProjectData& project, const OptionInfo& info, const OptionPlace& place,
                    OptionScope* scope) {
  *scope = OptionScope{&project, nullptr, nullptr};
  switch (info.level) {
    case OptionLevel::kGlobal:
    case OptionLevel::kFilter:
      if (place.target || place.file) return NotAt(info, "neither --target nor --file");
      return Status::OK();
    case OptionLevel::kTarget:
      if (place.file) return NotAt(info, "no --file");
      return TargetOrDefault(project, place.target, &scope->target);
    case OptionLevel::kFile:
      break;
  }
  Status status = TargetOrDefault(project, place.target, &scope->target);
  if (status.ok() && place.file)
    status = FindFile(project, *scope->target, *place.file, &scope->file);
  return status;
}

}  // namespace quillon::qpm
