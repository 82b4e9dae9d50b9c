// One file of a link group, as one target sees it.
#ifndef QUILLON_MODEL_PROJECT_FILE_H
#define QUILLON_MODEL_PROJECT_FILE_H

#include <memory>
#include <string>
#include <string_view>

#include "model/option_set.h"
#include "model/slab_allocator.h"

namespace quillon {

class CLinkGroup;
class CSettingsRegistry;

class CProjectFile {
 public:
  CProjectFile(std::string file_name, std::unique_ptr<COptionSet> options);
  QUILLON_SLAB_ALLOCATED

  // The name as stored: absolute, or relative to the project's directory.
  const std::string& file_name() const { return file_name_; }
  // Name and extension, without directory: the end of the stored name.
  std::string_view display_name() const {
    return std::string_view(file_name_).substr(display_start_);
  }
  void set_file_name(std::string file_name);

  COptionSet& options() { return *options_; }
  const COptionSet& options() const { return *options_; }

  // Set when the file's options changed and it must be translated again.
  bool is_changed = false;
  CLinkGroup* group = nullptr;

  int Load(CSettingsRegistry& store, TransferPass pass);
  int Save(CSettingsRegistry& store, TransferPass pass) const;
  void CopyFrom(const CProjectFile& other);

 private:
  std::string file_name_;
  size_t display_start_ = 0;
  std::unique_ptr<COptionSet> options_;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_PROJECT_FILE_H
