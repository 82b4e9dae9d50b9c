// What the dialogs tell the user, word for word as the IDE has always
// shown it (odd blanks and spellings included: users search for them).
#ifndef QUILLON_UI_DIALOG_TEXTS_H
#define QUILLON_UI_DIALOG_TEXTS_H

namespace quillon {

inline constexpr char kAskDeleteTarget[] = "\n\nAre you sure you want to delete this target ?";
inline constexpr char kTargetNameInUse[] =
    "\n\nThis target name is already in use!\nPlease,choose a different name.";
inline constexpr char kGroupNameInUse[] =
    "\n\nThis group name is already in use!\nPlease,choose a different name.";
inline constexpr char kAskAddTargetFirst[] = "First you must add a project target.\nAdd now?";
inline constexpr char kAskAddGroupFirst[] = "First you must add a project group.\nAdd now?";
inline constexpr char kFileAlreadyInProject[] = "File is already in Project!";
inline constexpr char kSomeFilesAlreadyInProject[] = "Some files were already in Project!";

}  // namespace quillon

#endif  // QUILLON_UI_DIALOG_TEXTS_H
