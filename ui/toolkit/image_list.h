// Icons of the program's resources, as lists and trees show them. Main thread only.
#pragma once

#include <windows.h>
// After windows.h, whose types it uses.
#include <commctrl.h>

#include <initializer_list>

namespace omniset {

class ImageList {
 public:
  // The icons in this order, in the screen's size of small icons. Raises Error "ImageList_Create",
  // "LoadImage" or "ImageList_AddIcon".
  explicit ImageList(std::initializer_list<int> iconIds);
  ~ImageList();
  ImageList(const ImageList&) = delete;
  ImageList& operator=(const ImageList&) = delete;

  HIMAGELIST handle() const { return list_; }
  int count() const;

 private:
  void add(int iconId, int width, int height);

  HIMAGELIST list_ = nullptr;
};

}  // namespace omniset
