// Where the router list shows its rows: the window has a list view for them. Called by the list's
// thread.
#pragma once

#include <array>
#include <string>

namespace omniset {

constexpr int kLabelColumn = 0;
constexpr int kMediaColumn = 1;
constexpr int kStatusColumn = 2;
constexpr std::array<const char*, 3> kRouterColumnTitles = {"Label", "MAC address / Media",
                                                            "Status"};

// The images of the rows.
constexpr int kRouterImage = 0;
constexpr int kFixedDriveImage = 3;
constexpr int kRemovableDriveImage = 4;

class RouterRows {
 public:
  virtual ~RouterRows() = default;
  // Adds a row behind the last one, with the texts of its columns.
  virtual void append(const std::array<std::string, 3>& texts, int image) = 0;
  virtual void setText(int row, int column, const std::string& text) = 0;
  virtual void remove(int row) = 0;
  // The selected row, -1 for none. At most one is selected.
  virtual int selected() const = 0;
  virtual void select(int row) = 0;
};

}  // namespace omniset
