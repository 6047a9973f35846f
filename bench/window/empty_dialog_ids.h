// The numbers and the caption of the empty dialog. Read by the compiler and by the resource
// compiler.
#pragma once

#define IDD_EMPTY 900
#define IDC_EMPTY_BUTTON 901
#define EMPTY_CAPTION "Empty dialog"
