#include "ui/toolkit/image_list.h"

#include "core/error.h"
#include "ui/toolkit/instance.h"

namespace omniset {

ImageList::ImageList(std::initializer_list<int> iconIds) {
  const int width = GetSystemMetrics(SM_CXSMICON);
  const int height = GetSystemMetrics(SM_CYSMICON);
  list_ =
      ImageList_Create(width, height, ILC_COLOR32 | ILC_MASK, static_cast<int>(iconIds.size()), 1);
  if (list_ == nullptr) throw Error("ImageList_Create");
  try {
    for (const int iconId : iconIds) add(iconId, width, height);
  } catch (...) {
    ImageList_Destroy(list_);
    throw;
  }
}

ImageList::~ImageList() {
  ImageList_Destroy(list_);
}

void ImageList::add(int iconId, int width, int height) {
  const HANDLE icon = LoadImageA(moduleInstance(), MAKEINTRESOURCEA(iconId), IMAGE_ICON, width,
                                 height, LR_DEFAULTCOLOR);
  if (icon == nullptr) throw Error("LoadImage");
  const int added = ImageList_ReplaceIcon(list_, -1, static_cast<HICON>(icon));
  const Error failure("ImageList_AddIcon");
  DestroyIcon(static_cast<HICON>(icon));
  if (added < 0) throw failure;
}

int ImageList::count() const {
  return ImageList_GetImageCount(list_);
}

}  // namespace omniset
