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

#endif  // QUILLON_UI_WIN32_DIALOG_IDS_H
