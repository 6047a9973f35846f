# 64-bit Windows.
set(OMNISET_MINGW x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
