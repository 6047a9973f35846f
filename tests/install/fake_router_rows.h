// A list of routers that remembers what it was told.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "install/router_rows.h"

namespace omniset::test {

class FakeRouterRows : public RouterRows {
 public:
  struct Row {
    std::array<std::string, 3> texts;
    int image = 0;
  };

  void append(const std::array<std::string, 3>& texts, int image) override {
    rows.push_back({texts, image});
  }
  void setText(int row, int column, const std::string& text) override {
    ++textsSet;
    rows.at(index(row)).texts.at(index(column)) = text;
  }
  // As a list view does: told while the row is still there, and the selection stays with its row.
  void remove(int row) override {
    if (onRemove) onRemove();
    rows.erase(rows.begin() + row);
    if (selected_ == row) {
      selected_ = -1;
    } else if (selected_ > row) {
      --selected_;
    }
  }
  int selected() const override { return selected_; }
  void select(int row) override { selected_ = row; }

  const Row& at(int row) const { return rows.at(index(row)); }

  std::vector<Row> rows;
  int textsSet = 0;
  std::function<void()> onRemove;

 private:
  static std::size_t index(int number) { return static_cast<std::size_t>(number); }

  int selected_ = -1;
};

}  // namespace omniset::test
