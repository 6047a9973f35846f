// The numbers in this program's own dialogs.
#pragma once

#define IDD_CONTROLS 900
#define IDD_UNKNOWN_CLASS 901

#define IDC_TEST_EDIT 910
#define IDC_TEST_CHECK 911
#define IDC_TEST_BUTTON 912
#define IDC_TEST_COMBO 913
#define IDC_TEST_SORTED 914
#define IDC_TEST_PROGRESS 915
#define IDC_TEST_STATIC 916
#define IDC_TEST_LIST 917
