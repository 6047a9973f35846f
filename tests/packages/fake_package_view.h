// A package list and a status text that remember what they were told.
#pragma once

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "packages/package_view.h"

namespace omniset::test {

class FakePackageRows : public PackageRows {
 public:
  struct Row {
    std::array<std::string, 3> text;
    int image = 0;
  };

  void clear() override { rows.clear(); }
  void insertRow(int row, const std::string& name) override {
    rows.insert(rows.begin() + row, Row{{name, "", ""}});
  }
  void setText(int row, int column, const std::string& text) override {
    at(row).text.at(static_cast<std::size_t>(column)) = text;
  }
  void setImage(int row, int image) override { at(row).image = image; }

  // The row whose first column says so; fails the test when there is none.
  const Row& named(const std::string& name) const {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.text[0] == name; });
    if (found == rows.end()) throw std::out_of_range("no row " + name);
    return *found;
  }

  std::vector<Row> rows;

 private:
  Row& at(int row) { return rows.at(static_cast<std::size_t>(row)); }
};

class FakeStatusText : public StatusText {
 public:
  void show(const std::string& text) override { shown.push_back(text); }

  std::vector<std::string> shown;
};

}  // namespace omniset::test
