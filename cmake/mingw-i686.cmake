# 32-bit Windows.
set(OMNISET_MINGW i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
