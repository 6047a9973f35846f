// Messages to windows of other processes.
#pragma once

#include <windows.h>

#include <string>

namespace omniset::test {

// Sends the message and returns its result; raises WindowFault when the window does not answer.
LRESULT ask(HWND window, UINT message, WPARAM word = 0, LPARAM value = 0);

// Puts the message into the window's queue, as input comes.
void post(HWND window, UINT message, WPARAM word = 0, LPARAM value = 0);

std::string windowText(HWND window);
std::string windowClass(HWND window);

// Sends the text as WM_SETTEXT does for a program that fills a field.
void setWindowText(HWND window, const std::string& text);

template <class T>
LPARAM asParameter(T* pointer) {
  return reinterpret_cast<LPARAM>(pointer);
}

}  // namespace omniset::test
