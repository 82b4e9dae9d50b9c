// A link group: files linked together, in order, within one target.
#ifndef QUILLON_MODEL_LINK_GROUP_H
#define QUILLON_MODEL_LINK_GROUP_H

#include <memory>
#include <string>
#include <vector>

#include "model/option_set.h"
#include "model/project_file.h"

namespace quillon {

class CProjectTarget;

class CLinkGroup {
 public:
  CLinkGroup(std::string name, CProjectTarget* owner, std::unique_ptr<COptionSet> options);

  std::string name;
  CProjectTarget* owner;
  std::vector<std::unique_ptr<CProjectFile>> files;

  COptionSet& options() { return *options_; }
  const COptionSet& options() const { return *options_; }

  // Index of the file with that stored name, or -1.
  int IndexOfFile(const CProjectFile* file) const;

  int Load(CSettingsRegistry& store, TransferPass pass);
  int Save(CSettingsRegistry& store, TransferPass pass) const;

 private:
  std::unique_ptr<COptionSet> options_;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_LINK_GROUP_H
