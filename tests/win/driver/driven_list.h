// A list view of the watched process, in its report form.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/win/driver/process.h"

namespace omniset::test {

struct ListRow {
  std::vector<std::string> texts;  // one for each column
  int image = -1;
  bool checked = false;
  bool selected = false;
};

class DrivenList {
 public:
  DrivenList(HWND list, std::shared_ptr<Process> process)
      : list_(list), process_(std::move(process)) {}

  int count() const;
  std::vector<std::string> titles() const;
  std::vector<int> columnWidths() const;
  ListRow row(int index) const;
  std::vector<ListRow> rows() const;
  // One column of all rows.
  std::vector<std::string> column(int column) const;
  // That column of the rows that are marked.
  std::vector<std::string> marked(int column = 0) const;
  bool isMarked(int index) const;
  // -1 when none is.
  int selectedRow() const;

  // The first row with this text in the column; raises WindowFault when there is none.
  int find(const std::string& text, int column = 0) const;
  void awaitCount(int expected, Milliseconds limit = kPatience) const;
  void awaitCell(int row, int column, const std::string& expected,
                 Milliseconds limit = kPatience) const;

  // A click of the left button on the text of the first column, on any column, or on the check box.
  void clickRow(int index);
  void clickCell(int index, int column);
  void clickCheckBox(int index);
  // A click beside all rows; the list must have room for one.
  void clickEmptyPlace();
  // A key in the list, which has the focus.
  void press(int virtualKey);

 private:
  std::string textOf(int row, int column) const;
  int imageOf(int row) const;
  int columnCount() const;
  bool hasState(int row, UINT mask, UINT state) const;
  RECT rectangle(int row, int part) const;
  void clickAt(int x, int y);

  HWND list_;
  std::shared_ptr<Process> process_;
};

}  // namespace omniset::test
