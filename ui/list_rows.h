// The two lists of the main window as the router list and the package catalogue see them.
#pragma once

#include <array>
#include <string>

#include "install/router_rows.h"
#include "packages/package_view.h"
#include "ui/toolkit/list_view.h"
#include "ui/workflow/package_marks.h"

namespace omniset {

// The list of routers and drives.
class RouterRowsView : public RouterRows {
 public:
  explicit RouterRowsView(ListView list) : list_(list) {}

  void append(const std::array<std::string, 3>& texts, int image) override;
  void setText(int row, int column, const std::string& text) override;
  void remove(int row) override;
  int selected() const override;
  void select(int row) override;

 private:
  ListView list_;
};

// The list of packages. Its marks change through showMarks() alone: a click or a key on a row says
// what the operator wants, not how the list looks afterwards.
class PackageRowsView : public PackageRows {
 public:
  explicit PackageRowsView(ListView list) : list_(list) {}

  void clear() override;
  void insertRow(int row, const std::string& name) override;
  void setText(int row, int column, const std::string& text) override;
  void setImage(int row, int image) override;

  void showMarks(const PackageMarks& marks);
  // A change of a mark comes from showMarks().
  bool isShowingMarks() const { return showingMarks_; }

 private:
  ListView list_;
  bool showingMarks_ = false;
};

}  // namespace omniset
