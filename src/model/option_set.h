// Option sets: the settings that steer the translators, at global, project,
// target, link-group and file level.
//
// A set knows its keys and defaults, copies itself, reads and writes itself
// into the store's current key node, and hands values out and takes them in
// by numeric id. Options that carry an own-value flag honour the set mode;
// the flag is stored beside the value under the key name with "WR" appended.
#ifndef QUILLON_MODEL_OPTION_SET_H
#define QUILLON_MODEL_OPTION_SET_H

#include <string>
#include <vector>

namespace quillon {

class CSettingsRegistry;

// How a set operation treats an option with an own-value flag.
enum OptionMode {
  Propagate = 0,  // store only while the item still inherits
  Inherit = 1,    // store and clear the own-value flag
  Own = 2,        // store and set the own-value flag
};

// Which pass a load or save runs: the shared project file, or the per-user
// local file, which carries only the per-translator run switches.
enum class TransferPass { kShared, kLocal };

class COptionSet {
 public:
  virtual ~COptionSet() = default;

  // Both work on the store's current key node and answer 1.
  virtual int Load(CSettingsRegistry& store, TransferPass pass) = 0;
  virtual int Save(CSettingsRegistry& store, TransferPass pass) const = 0;
  // Level 1 turns own values into inherited ones without changing them;
  // any other level restores the factory values.
  virtual void SetDefault(int level) = 0;
  // Copies every value and flag into a set of the same class; a set of
  // another class is left alone.
  virtual void CopyTo(COptionSet& other) const = 0;

  virtual void SetInt(int id, int value, int mode);
  // Mode 0 answers the value, any other mode the own-value flag (0 or 1).
  virtual int GetInt(int id, int mode) const;
  virtual void SetString(int id, const std::string& text, int mode);
  // Mode 0 answers the value, any other mode the flag as "1" or "0".
  virtual std::string GetString(int id, int mode) const;
  virtual void SetStringList(int id, const std::vector<std::string>& list);
  virtual void GetStringList(int id, std::vector<std::string>* list) const;

  // Carried by every set; no key uses it.
  std::string name;
};

// A value with an own-value flag, stored as the mode says.
template <typename T>
void StoreWithMode(T* value, bool* own, const T& new_value, int mode) {
  if (mode == Propagate && *own) return;
  *value = new_value;
  if (mode == Inherit) *own = false;
  if (mode == Own) *own = true;
}

// Sets with no keys of their own in this translator family; they exist so
// that another family can add project-level and link-group-level options.
class CProjectOptions : public COptionSet {
 public:
  int Load(CSettingsRegistry&, TransferPass) override { return 1; }
  int Save(CSettingsRegistry&, TransferPass) const override { return 1; }
  void SetDefault(int) override {}
  void CopyTo(COptionSet& other) const override;
};

class CLinkGroupOptions : public COptionSet {
 public:
  int Load(CSettingsRegistry&, TransferPass) override { return 1; }
  int Save(CSettingsRegistry&, TransferPass) const override { return 1; }
  void SetDefault(int) override {}
  void CopyTo(COptionSet& other) const override;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_OPTION_SET_H
