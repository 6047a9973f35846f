// A report list. A value that only names the control: it neither owns nor destroys it. Rows and
// columns count from 0; -1 means none. Main thread only.
#pragma once

#include <windows.h>
// After windows.h, whose types it uses.
#include <commctrl.h>

#include <string>

namespace omniset {

class ListView {
 public:
  ListView() = default;
  explicit ListView(HWND control) : control_(control) {}

  // A new list as a child window. Raises Error "CreateWindow ListView".
  static ListView create(HWND parent, int id, const RECT& place, DWORD style);

  HWND handle() const { return control_; }

  void addExtendedStyles(DWORD styles);  // LVS_EX_...
  // The list destroys its image list at its end unless it has the style LVS_SHAREIMAGELISTS.
  void setImages(HIMAGELIST images);

  void addColumn(int column, const std::string& title, int width);
  int columnWidth(int column) const;  // in pixels

  int rowCount() const;
  int insertRow(int row, const std::string& text, int image);  // returns where it came to stand
  void removeRow(int row);
  void clear();

  std::string text(int row, int column) const;
  // Touches the list only when the text, the image or the mark differs.
  void setText(int row, int column, const std::string& text);
  int image(int row) const;
  void setImage(int row, int image);
  bool isChecked(int row) const;  // with LVS_EX_CHECKBOXES
  void setChecked(int row, bool checked);

  int selectedRow() const;  // the first
  // Selects the row alone, gives it the focus mark and brings it into view; -1 selects nothing.
  void select(int row);
  int selectionMark() const;
  void setSelectionMark(int row);

  // On whichever column.
  int rowAt(POINT client) const;

 private:
  LRESULT send(UINT message, WPARAM word = 0, LPARAM value = 0) const;
  LRESULT sendItem(UINT message, WPARAM word, const LVITEMA& item) const;

  HWND control_ = nullptr;
};

}  // namespace omniset
