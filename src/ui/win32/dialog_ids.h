// Resource ids of the dialogs and their controls, shared by dialogs.rc and
// the dialog procedures. The control ids are the IDE's: its tests and
// macros find the controls by them.
#ifndef QUILLON_UI_WIN32_DIALOG_IDS_H
#define QUILLON_UI_WIN32_DIALOG_IDS_H

#define IDD_TARGETS 100
#define IDD_RENAME_TARGET 101
#define IDD_NEW_TARGET 102
#define IDD_NEW_GROUP 103
#define IDD_LINK_ORDER 104
#define IDD_PROJECT_FILES 105
#define IDD_CHOOSE_DIRECTORY 106
#define IDD_SETTINGS_PAGE 110
#define IDD_LIST_EDITOR 111
#define IDD_ERROR_FILES 112

// Targets
#define IDC_TARGET_LIST 1501
#define IDC_CURRENT_TARGET 1701
#define IDC_TARGET_NEW 1901
#define IDC_TARGET_DELETE 1902
#define IDC_TARGET_RENAME 1903
#define IDC_TARGET_SET_DEFAULT 1904

// Rename Target
#define IDC_OLD_TARGET_NAME 1591
#define IDC_NEW_TARGET_NAME 1592

// New Target
#define IDC_TARGET_NAME 1593
#define IDC_COPY_SETTINGS 1594
#define IDC_DEFAULT_SETTINGS 1595
#define IDC_COPY_FROM 1596

// New Group; also the extra edit of Choose Directory
#define IDC_GROUP_NAME 1201
#define IDC_DIRECTORY_NAME 1201

// Select Link Order
#define IDC_GROUP_LIST 1501
#define IDC_FILE_LIST 1502
#define IDC_GROUP_SPIN 2401
#define IDC_FILE_SPIN 2402

// Project Files (child of the open-file dialog)
#define IDC_ADD_TO_GROUP 1601
#define IDC_GROUP_FILES 1501
#define IDC_REMOVE_FILES 1901
#define IDC_ADD_ALL 1902
#define IDC_FILES_OK 1903
#define IDC_ADD_TO_GROUP_LABEL 1602
#define IDC_GROUP_FILES_LABEL 1603

// Project Settings: one page template serves all nine pages
#define IDC_SETTINGS_TREE 2501
#define IDC_SETTINGS_GRID 2502
#define IDC_SETTINGS_EDIT 2503   // the grid's in-place edit
#define IDC_SETTINGS_COMBO 2504  // the grid's in-place combo box
#define IDC_SET_TO_DEFAULT 2505
#define IDC_SET_TO_TARGET 2506
#define IDC_INSERT_MACRO 2507
#define IDC_ERROR_FILES 2508
#define IDC_TREE_LABEL 2509
#define IDC_GRID_LABEL 2510
#define IDC_SETTINGS_LEGEND 2511
#define IDC_TREE_HINT 2512

// List editor (include paths, environment)
#define IDC_LIST_ITEMS 2521
#define IDC_LIST_TEXT 2522
#define IDC_LIST_ADD 2523
#define IDC_LIST_REPLACE 2524
#define IDC_LIST_REMOVE 2525
#define IDC_LIST_UP 2526
#define IDC_LIST_DOWN 2527
#define IDC_LIST_HINT 2528

// Error files (the General page's Advanced dialog); per translator i
// (compiler, assembler, linker) the ids are base + i.
#define IDC_ERR_FILTER 2531
#define IDC_ERR_USE_DEFAULT 2541
#define IDC_ERR_CUSTOM 2544
#define IDC_ERR_DEFAULT_NAME 2547

#endif  // QUILLON_UI_WIN32_DIALOG_IDS_H
