#include "ui/list_rows.h"

namespace omniset {

namespace {
constexpr int kPackageImage = 0;
}

void RouterRowsView::append(const std::array<std::string, 3>& texts, int image) {
  const int row = list_.rowCount();
  list_.insertRow(row, texts[0], image);
  for (int column = 1; column < static_cast<int>(texts.size()); ++column) {
    list_.setText(row, column, texts[static_cast<std::size_t>(column)]);
  }
}

void RouterRowsView::setText(int row, int column, const std::string& text) {
  list_.setText(row, column, text);
}

void RouterRowsView::remove(int row) {
  list_.removeRow(row);
}

int RouterRowsView::selected() const {
  return list_.selectedRow();
}

void RouterRowsView::select(int row) {
  list_.select(row);
}

void PackageRowsView::clear() {
  list_.clear();
}

// A new row comes with its mark clear.
void PackageRowsView::insertRow(int row, const std::string& name) {
  showingMarks_ = true;
  list_.insertRow(row, name, kPackageImage);
  showingMarks_ = false;
}

void PackageRowsView::setText(int row, int column, const std::string& text) {
  list_.setText(row, column, text);
}

void PackageRowsView::setImage(int row, int image) {
  list_.setImage(row, image);
}

void PackageRowsView::showMarks(const PackageMarks& marks) {
  showingMarks_ = true;
  for (int row = 0; row < list_.rowCount(); ++row) {
    const auto index = static_cast<std::size_t>(row);
    const bool marked = index < marks.size() && marks[index];
    if (list_.isChecked(row) != marked) list_.setChecked(row, marked);
  }
  showingMarks_ = false;
}

}  // namespace omniset
