#include "ui/static_text.h"

namespace omniset {

INT_PTR StaticText::dialogProcedure(UINT message, WPARAM word, LPARAM value) {
  return Dialog::dialogProcedure(message, word, value);
}

}  // namespace omniset
