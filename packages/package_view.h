// Where the catalogue shows what it finds: a list with a row per package, and a line of text. The
// window has a list view and a status bar for them. Called by the catalogue's thread.
#pragma once

#include <array>
#include <string>

namespace omniset {

constexpr int kNameColumn = 0;
constexpr int kVersionColumn = 1;
constexpr int kDescriptionColumn = 2;
constexpr std::array<const char*, 3> kPackageColumnTitles = {"Name", "Version", "Description"};

// The image of a row whose package lacks something that it depends on.
constexpr int kUnmetDependencyImage = 3;

class PackageRows {
 public:
  virtual ~PackageRows() = default;
  virtual void clear() = 0;
  // Inserts a row before the one that has this index now, with its text for the first column.
  virtual void insertRow(int row, const std::string& name) = 0;
  virtual void setText(int row, int column, const std::string& text) = 0;
  virtual void setImage(int row, int image) = 0;
};

class StatusText {
 public:
  virtual ~StatusText() = default;
  // Replaces the text that is shown.
  virtual void show(const std::string& text) = 0;
};

// For programs without a window.
class NoPackageRows : public PackageRows {
 public:
  void clear() override {}
  void insertRow(int, const std::string&) override {}
  void setText(int, int, const std::string&) override {}
  void setImage(int, int) override {}
};

class NoStatusText : public StatusText {
 public:
  void show(const std::string&) override {}
};

}  // namespace omniset
