// The numbers of the program's resources and of the controls in its dialogs. Read by the compiler
// and by the resource compiler, hence macros. The numbers are fixed: other programs drive the
// window by them.
#pragma once

// Dialogs.
#define IDD_MAIN 101
#define IDD_SET_NAME 102
#define IDD_MAKER 103
#define IDD_HELP 106
#define IDD_NET_BOOTING 107

// Icons. The application's is the first: the shell shows it.
#define IDI_APPLICATION_ICON 101
#define IDI_ROUTER 201
#define IDI_FIXED_DRIVE 202
#define IDI_REMOVABLE_DRIVE 203
#define IDI_PACKAGE 204
#define IDI_UNMET_DEPENDENCY 205

// The main window: routers and drives.
#define IDC_ROUTERS_GROUP 1029
#define IDC_ROUTERS 1002
#define IDC_STATUS_LINE 1025
#define IDC_PROGRESS 1022
#define IDC_MAKE_FLOPPY 1000
#define IDC_NET_BOOTING 1026
#define IDC_INSTALL 1023
#define IDC_CANCEL 1024
#define IDC_SHOW_HELP 1027  // IDC_HELP is a cursor of the system

// The main window: what the selected one is installed with.
#define IDC_KEEP_CONFIGURATION 1028
#define IDC_ADDRESS 1006
#define IDC_NETMASK 1005
#define IDC_GATEWAY 1008
#define IDC_BAUD_RATE 1030
#define IDC_USE_SCRIPT 1032
#define IDC_SCRIPT_FILE 1033
#define IDC_CHOOSE_SCRIPT 1034

// The main window: packages.
#define IDC_PACKAGES_GROUP 1017
#define IDC_SETS 1010
#define IDC_SAVE_SET 1011
#define IDC_DELETE_SET 1012
#define IDC_FOLDER 1003
#define IDC_BROWSE 1004
#define IDC_SELECT_ALL 1014
#define IDC_SELECT_NONE 1015
#define IDC_PACKAGES 1001

// The prompt for a set's name.
#define IDC_SET_NAME 1000
#define IDC_SET_NAME_OK 1001
#define IDC_SET_NAME_CANCEL 1024

// Making a boot floppy.
#define IDC_MAKER_EXPLANATION 1000
#define IDC_MAKER_LABEL 1003
#define IDC_MAKER_STATUS 1001
#define IDC_MAKER_PROGRESS 1005
#define IDC_MAKER_START 1006
#define IDC_MAKER_CANCEL 1007
#define IDC_MAKER_DONE 1008

// The help.
#define IDC_HELP_TEXT 1030
#define IDC_HELP_CLOSE 1031

// The settings of the network boot service.
#define IDC_BOOT_SERVER_ENABLED 1032
#define IDC_BOOT_CLIENT_ADDRESS 1033
#define IDC_NET_BOOTING_OK 1001
#define IDC_NET_BOOTING_CANCEL 1024
