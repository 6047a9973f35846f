#include "ui/toolkit/list_view.h"

#include <gtest/gtest.h>

#include "core/error.h"
#include "resources/resource_ids.h"
#include "tests/contract/raised_text.h"
#include "tests/win/toolkit/test_ids.h"
#include "ui/toolkit/dialog.h"
#include "ui/toolkit/image_list.h"

namespace omniset::test {

namespace {

// Counts the changes that the list tells it of.
class ListDialog : public Dialog {
 public:
  ListDialog() {
    create(IDD_CONTROLS);
    list = ListView(control(IDC_TEST_LIST));
    list.addColumn(0, "Name", 80);
    list.addColumn(1, "Version", 60);
  }

  void addRows(int count) {
    for (int row = 0; row < count; ++row) list.insertRow(row, "row " + std::to_string(row), 0);
  }

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override {
    if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(value)->code == LVN_ITEMCHANGED) ++changes;
    return Dialog::dialogProcedure(message, word, value);
  }

  ListView list;
  int changes = 0;
};

POINT middleOf(const ListView& list, int row, int column) {
  RECT place{};
  place.top = column;
  place.left = LVIR_LABEL;
  SendMessageA(list.handle(), LVM_GETSUBITEMRECT, static_cast<WPARAM>(row),
               reinterpret_cast<LPARAM>(&place));
  return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

}  // namespace

TEST(ListView, CreatedInCodeIsAReportList) {
  ListDialog parent;
  const ListView made = ListView::create(parent.handle(), 55, {0, 0, 100, 50}, LVS_SINGLESEL);
  EXPECT_EQ(GetDlgItem(parent.handle(), 55), made.handle());
  const auto style = GetWindowLongPtrA(made.handle(), GWL_STYLE);
  EXPECT_EQ(LVS_REPORT, style & LVS_TYPEMASK);
  EXPECT_TRUE(style & LVS_SINGLESEL);
}

TEST(ListView, FailedCreationIsNamedAfterTheCall) {
  EXPECT_TRUE(raisedText<Error>([] {
                ListView::create(nullptr, 55, {0, 0, 1, 1}, 0);
              }).starts_with("CreateWindow ListView: "));
}

TEST(ListView, ColumnsHaveTitlesAndWidths) {
  ListDialog dialog;
  EXPECT_EQ(80, dialog.list.columnWidth(0));
  EXPECT_EQ(60, dialog.list.columnWidth(1));
  char title[20] = "";
  LVCOLUMNA column{};
  column.mask = LVCF_TEXT;
  column.pszText = title;
  column.cchTextMax = sizeof title;
  SendMessageA(dialog.list.handle(), LVM_GETCOLUMNA, 1, reinterpret_cast<LPARAM>(&column));
  EXPECT_STREQ("Version", title);
}

TEST(ListView, RowsAreInsertedRemovedAndCleared) {
  ListDialog dialog;
  ListView& list = dialog.list;
  EXPECT_EQ(0, list.rowCount());
  EXPECT_EQ(0, list.insertRow(0, "last", 0));
  EXPECT_EQ(0, list.insertRow(0, "first", 0));
  EXPECT_EQ(2, list.insertRow(100, "after all", 0));
  EXPECT_EQ(3, list.rowCount());
  EXPECT_EQ("first", list.text(0, 0));
  list.removeRow(0);
  EXPECT_EQ("last", list.text(0, 0));
  list.clear();
  EXPECT_EQ(0, list.rowCount());
}

TEST(ListView, TextsOfEveryLengthComeBackWhole) {
  ListDialog dialog;
  dialog.addRows(1);
  for (const size_t length : {0u, 1u, 258u, 259u, 260u, 261u, 3000u}) {
    const std::string text(length, 'x');
    dialog.list.setText(0, 1, text);
    EXPECT_EQ(text, dialog.list.text(0, 1)) << length;
  }
  EXPECT_EQ("", dialog.list.text(7, 0));
}

TEST(ListView, SameTextImageAndMarkTouchNothing) {
  ListDialog dialog;
  dialog.list.addExtendedStyles(LVS_EX_CHECKBOXES);
  dialog.addRows(1);
  dialog.list.setText(0, 1, "1.0");
  dialog.changes = 0;
  dialog.list.setText(0, 1, "1.0");
  dialog.list.setImage(0, 0);
  dialog.list.setChecked(0, false);
  EXPECT_EQ(0, dialog.changes);
  dialog.list.setChecked(0, true);
  EXPECT_EQ(1, dialog.changes);
}

TEST(ListView, ExtendedStylesAreAdded) {
  ListDialog dialog;
  dialog.list.addExtendedStyles(LVS_EX_FULLROWSELECT);
  dialog.list.addExtendedStyles(LVS_EX_CHECKBOXES);
  EXPECT_EQ(LVS_EX_FULLROWSELECT | LVS_EX_CHECKBOXES,
            SendMessageA(dialog.list.handle(), LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0));
}

TEST(ListView, RowsHaveCheckMarks) {
  ListDialog dialog;
  dialog.list.addExtendedStyles(LVS_EX_CHECKBOXES);
  dialog.addRows(2);
  EXPECT_FALSE(dialog.list.isChecked(1));
  dialog.list.setChecked(1, true);
  EXPECT_TRUE(dialog.list.isChecked(1));
  EXPECT_FALSE(dialog.list.isChecked(0));
  dialog.list.setChecked(1, false);
  EXPECT_FALSE(dialog.list.isChecked(1));
}

TEST(ListView, RowsHaveImages) {
  const ImageList images({IDI_ROUTER, IDI_FIXED_DRIVE, IDI_REMOVABLE_DRIVE});
  ListDialog dialog;
  dialog.list.setImages(images.handle());
  dialog.list.insertRow(0, "disk", 1);
  EXPECT_EQ(1, dialog.list.image(0));
  dialog.list.setImage(0, 2);
  EXPECT_EQ(2, dialog.list.image(0));
  EXPECT_EQ(-1, dialog.list.image(5));
}

TEST(ListView, SelectingARowUnselectsTheOthersAndShowsIt) {
  ListDialog dialog;
  dialog.addRows(100);
  ListView& list = dialog.list;
  EXPECT_EQ(-1, list.selectedRow());
  list.select(90);
  EXPECT_EQ(90, list.selectedRow());
  EXPECT_EQ(90, list.selectionMark());
  EXPECT_GT(SendMessageA(list.handle(), LVM_GETTOPINDEX, 0, 0), 50);
  EXPECT_EQ(90,
            SendMessageA(list.handle(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
  list.select(3);
  EXPECT_EQ(3, list.selectedRow());
  EXPECT_EQ(1, SendMessageA(list.handle(), LVM_GETSELECTEDCOUNT, 0, 0));
  list.select(-1);
  EXPECT_EQ(-1, list.selectedRow());
}

TEST(ListView, SelectionMarkIsSetByItself) {
  ListDialog dialog;
  dialog.addRows(3);
  dialog.list.setSelectionMark(2);
  EXPECT_EQ(2, dialog.list.selectionMark());
  EXPECT_EQ(-1, dialog.list.selectedRow());
}

TEST(ListView, PointIsFoundInItsRowOnAnyColumn) {
  ListDialog dialog;
  dialog.list.addExtendedStyles(LVS_EX_FULLROWSELECT | LVS_EX_CHECKBOXES);
  dialog.addRows(3);
  EXPECT_EQ(1, dialog.list.rowAt(middleOf(dialog.list, 1, 1)));
  EXPECT_EQ(2, dialog.list.rowAt(middleOf(dialog.list, 2, 0)));
  POINT onCheckMark = middleOf(dialog.list, 1, 0);
  onCheckMark.x = 8;
  EXPECT_EQ(1, dialog.list.rowAt(onCheckMark));
  EXPECT_EQ(-1, dialog.list.rowAt({10, 5000}));
}

}  // namespace omniset::test
