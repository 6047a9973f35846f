#include "ui/toolkit/list_view.h"

#include "core/error.h"
#include "ui/toolkit/instance.h"

namespace omniset {

namespace {

// The system's structures take texts that they only read as writable.
char* asWritable(const std::string& text) {
  return const_cast<char*>(text.c_str());
}

constexpr UINT kSelectedAndFocused = LVIS_SELECTED | LVIS_FOCUSED;

}  // namespace

ListView ListView::create(HWND parent, int id, const RECT& place, DWORD style) {
  const HWND made = CreateWindowExA(
      WS_EX_CLIENTEDGE, WC_LISTVIEWA, "", style | LVS_REPORT | WS_CHILD | WS_VISIBLE | WS_TABSTOP,
      place.left, place.top, place.right - place.left, place.bottom - place.top, parent,
      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), moduleInstance(), nullptr);
  if (made == nullptr) throw Error("CreateWindow ListView");
  return ListView(made);
}

LRESULT ListView::send(UINT message, WPARAM word, LPARAM value) const {
  return SendMessageA(control_, message, word, value);
}

LRESULT ListView::sendItem(UINT message, WPARAM word, const LVITEMA& item) const {
  return send(message, word, reinterpret_cast<LPARAM>(&item));
}

void ListView::addExtendedStyles(DWORD styles) {
  send(LVM_SETEXTENDEDLISTVIEWSTYLE, styles, static_cast<LPARAM>(styles));
}

void ListView::setImages(HIMAGELIST images) {
  send(LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(images));
}

void ListView::addColumn(int column, const std::string& title, int width) {
  LVCOLUMNA added{};
  added.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  added.pszText = asWritable(title);
  added.cx = width;
  added.iSubItem = column;
  send(LVM_INSERTCOLUMNA, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&added));
}

int ListView::columnWidth(int column) const {
  return static_cast<int>(send(LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column)));
}

int ListView::rowCount() const {
  return static_cast<int>(send(LVM_GETITEMCOUNT));
}

int ListView::insertRow(int row, const std::string& text, int image) {
  LVITEMA item{};
  item.mask = LVIF_TEXT | LVIF_IMAGE;
  item.iItem = row;
  item.pszText = asWritable(text);
  item.iImage = image;
  return static_cast<int>(sendItem(LVM_INSERTITEMA, 0, item));
}

void ListView::removeRow(int row) {
  send(LVM_DELETEITEM, static_cast<WPARAM>(row));
}

void ListView::clear() {
  send(LVM_DELETEALLITEMS);
}

std::string ListView::text(int row, int column) const {
  // The control tells no text's length: a text that fills the room may go on.
  for (size_t room = 260;; room *= 4) {
    std::string text(room, '\0');
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(room);
    const auto length =
        static_cast<size_t>(sendItem(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), item));
    if (length + 1 < room) {
      text.resize(length);
      return text;
    }
  }
}

void ListView::setText(int row, int column, const std::string& wanted) {
  if (text(row, column) == wanted) return;
  LVITEMA item{};
  item.iSubItem = column;
  item.pszText = asWritable(wanted);
  sendItem(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), item);
}

int ListView::image(int row) const {
  LVITEMA item{};
  item.mask = LVIF_IMAGE;
  item.iItem = row;
  return sendItem(LVM_GETITEMA, 0, item) ? item.iImage : -1;
}

void ListView::setImage(int row, int wanted) {
  if (image(row) == wanted) return;
  LVITEMA item{};
  item.mask = LVIF_IMAGE;
  item.iItem = row;
  item.iImage = wanted;
  sendItem(LVM_SETITEMA, 0, item);
}

// A row's check mark is its state image: the first is the empty box, the second the ticked one.
bool ListView::isChecked(int row) const {
  return send(LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK) ==
         INDEXTOSTATEIMAGEMASK(2);
}

void ListView::setChecked(int row, bool checked) {
  if (isChecked(row) == checked) return;
  LVITEMA item{};
  item.state = INDEXTOSTATEIMAGEMASK(checked ? 2u : 1u);
  item.stateMask = LVIS_STATEIMAGEMASK;
  sendItem(LVM_SETITEMSTATE, static_cast<WPARAM>(row), item);
}

int ListView::selectedRow() const {
  return static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void ListView::select(int row) {
  LVITEMA item{};
  item.stateMask = kSelectedAndFocused;
  for (int old = selectedRow(); old >= 0;) {
    if (old != row) sendItem(LVM_SETITEMSTATE, static_cast<WPARAM>(old), item);
    old = static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(old), LVNI_SELECTED));
  }
  if (row < 0) return;
  item.state = kSelectedAndFocused;
  sendItem(LVM_SETITEMSTATE, static_cast<WPARAM>(row), item);
  setSelectionMark(row);
  send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

int ListView::selectionMark() const {
  return static_cast<int>(send(LVM_GETSELECTIONMARK));
}

void ListView::setSelectionMark(int row) {
  send(LVM_SETSELECTIONMARK, 0, row);
}

int ListView::rowAt(POINT client) const {
  LVHITTESTINFO test{};
  test.pt = client;
  return send(LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&test)) < 0 ? -1 : test.iItem;
}

}  // namespace omniset
