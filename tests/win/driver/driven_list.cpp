#include "tests/win/driver/driven_list.h"

#include <algorithm>

#include "tests/win/driver/messages.h"
#include "tests/win/driver/remote_memory.h"

namespace omniset::test {

namespace {

constexpr int kTextSize = 1024;
constexpr int kInset = 3;  // pixels from a cell's edge that are surely within the cell

// The text of a structure lies behind it.
template <class Structure>
struct WithText {
  Structure structure{};
  char text[kTextSize] = "";
};

constexpr UINT checkedState() {
  return INDEXTOSTATEIMAGEMASK(2);
}

}  // namespace

int DrivenList::count() const {
  return static_cast<int>(ask(list_, LVM_GETITEMCOUNT));
}

int DrivenList::columnCount() const {
  const auto header = reinterpret_cast<HWND>(ask(list_, LVM_GETHEADER));
  return static_cast<int>(ask(header, HDM_GETITEMCOUNT));
}

std::vector<std::string> DrivenList::titles() const {
  std::vector<std::string> titles;
  const int columns = columnCount();
  for (int i = 0; i < columns; ++i) {
    WithText<LVCOLUMNA> column;
    RemoteMemory memory(process_->handle(), sizeof column);
    column.structure.mask = LVCF_TEXT;
    column.structure.pszText = memory.address(offsetof(WithText<LVCOLUMNA>, text));
    column.structure.cchTextMax = kTextSize;
    memory.write(&column, sizeof column);
    ask(list_, LVM_GETCOLUMNA, static_cast<WPARAM>(i), asParameter(memory.address()));
    memory.read(&column, sizeof column);
    titles.push_back(column.text);
  }
  return titles;
}

std::vector<int> DrivenList::columnWidths() const {
  std::vector<int> widths;
  const int columns = columnCount();
  for (int i = 0; i < columns; ++i) {
    widths.push_back(static_cast<int>(ask(list_, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(i))));
  }
  return widths;
}

std::string DrivenList::textOf(int row, int column) const {
  WithText<LVITEMA> item;
  RemoteMemory memory(process_->handle(), sizeof item);
  item.structure.iSubItem = column;
  item.structure.pszText = memory.address(offsetof(WithText<LVITEMA>, text));
  item.structure.cchTextMax = kTextSize;
  memory.write(&item, sizeof item);
  ask(list_, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), asParameter(memory.address()));
  memory.read(item.text, sizeof item.text, offsetof(WithText<LVITEMA>, text));
  return item.text;
}

int DrivenList::imageOf(int row) const {
  LVITEMA item{};
  RemoteMemory memory(process_->handle(), sizeof item);
  item.mask = LVIF_IMAGE;
  item.iItem = row;
  memory.write(&item, sizeof item);
  if (!ask(list_, LVM_GETITEMA, 0, asParameter(memory.address()))) return -1;
  memory.read(&item, sizeof item);
  return item.iImage;
}

bool DrivenList::hasState(int row, UINT mask, UINT state) const {
  return static_cast<UINT>(ask(list_, LVM_GETITEMSTATE, static_cast<WPARAM>(row), mask)) == state;
}

bool DrivenList::isMarked(int index) const {
  return hasState(index, LVIS_STATEIMAGEMASK, checkedState());
}

ListRow DrivenList::row(int index) const {
  ListRow row;
  const int columns = columnCount();
  for (int i = 0; i < columns; ++i) row.texts.push_back(textOf(index, i));
  row.image = imageOf(index);
  row.checked = isMarked(index);
  row.selected = hasState(index, LVIS_SELECTED, LVIS_SELECTED);
  return row;
}

std::vector<ListRow> DrivenList::rows() const {
  std::vector<ListRow> rows;
  const int number = count();
  for (int i = 0; i < number; ++i) rows.push_back(row(i));
  return rows;
}

std::vector<std::string> DrivenList::column(int column) const {
  std::vector<std::string> texts;
  const int number = count();
  for (int i = 0; i < number; ++i) texts.push_back(textOf(i, column));
  return texts;
}

std::vector<std::string> DrivenList::marked(int column) const {
  std::vector<std::string> texts;
  const int number = count();
  for (int i = 0; i < number; ++i) {
    if (isMarked(i)) texts.push_back(textOf(i, column));
  }
  return texts;
}

int DrivenList::selectedRow() const {
  return static_cast<int>(
      ask(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)));
}

int DrivenList::find(const std::string& text, int column) const {
  const std::vector<std::string> texts = this->column(column);
  const auto found = std::find(texts.begin(), texts.end(), text);
  if (found == texts.end()) throw WindowFault("there is no row \"" + text + "\"");
  return static_cast<int>(found - texts.begin());
}

void DrivenList::awaitCount(int expected, Milliseconds limit) const {
  waitUntil(
      "the list has " + std::to_string(expected) + " rows", [&] { return count() == expected; },
      [&] { return std::to_string(count()); }, limit);
}

void DrivenList::awaitCell(int row, int column, const std::string& expected,
                           Milliseconds limit) const {
  waitUntil(
      "row " + std::to_string(row) + " shows \"" + expected + "\"",
      [&] { return textOf(row, column) == expected; },
      [&] { return "\"" + textOf(row, column) + "\""; }, limit);
}

RECT DrivenList::rectangle(int row, int part) const {
  ask(list_, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
  RECT rectangle{part, 0, 0, 0};
  RemoteMemory memory(process_->handle(), sizeof rectangle);
  memory.write(&rectangle, sizeof rectangle);
  if (!ask(list_, LVM_GETITEMRECT, static_cast<WPARAM>(row), asParameter(memory.address()))) {
    throw WindowFault("row " + std::to_string(row) + " has no place");
  }
  memory.read(&rectangle, sizeof rectangle);
  return rectangle;
}

void DrivenList::clickAt(int x, int y) {
  if (!IsWindowEnabled(list_)) throw WindowFault("the list is disabled");
  const LPARAM place = MAKELPARAM(x, y);
  post(list_, WM_LBUTTONDOWN, MK_LBUTTON, place);
  post(list_, WM_LBUTTONUP, 0, place);
}

void DrivenList::clickRow(int index) {
  const RECT label = rectangle(index, LVIR_LABEL);
  clickAt(label.left + kInset, (label.top + label.bottom) / 2);
}

void DrivenList::clickCell(int index, int column) {
  const RECT bounds = rectangle(index, LVIR_BOUNDS);
  const std::vector<int> widths = columnWidths();
  int left = bounds.left;
  for (int i = 0; i < column; ++i) left += widths[static_cast<std::size_t>(i)];
  clickAt(left + kInset, (bounds.top + bounds.bottom) / 2);
}

void DrivenList::clickCheckBox(int index) {
  const RECT bounds = rectangle(index, LVIR_BOUNDS);
  const RECT icon = rectangle(index, LVIR_ICON);
  clickAt((bounds.left + icon.left) / 2, (bounds.top + bounds.bottom) / 2);
}

void DrivenList::clickEmptyPlace() {
  RECT area{};
  GetClientRect(list_, &area);
  const int rows = count();
  if (rows > 0 && rectangle(rows - 1, LVIR_BOUNDS).bottom >= area.bottom - kInset) {
    throw WindowFault("the list has no empty place");
  }
  clickAt(area.left + kInset, area.bottom - kInset);
}

void DrivenList::press(int virtualKey) {
  const auto key = static_cast<WPARAM>(virtualKey);
  post(list_, WM_KEYDOWN, key, 1);
  post(list_, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

}  // namespace omniset::test
