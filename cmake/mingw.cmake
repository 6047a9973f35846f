# Cross-compiling for Windows with Debian's mingw-w64, posix threads. Included by the toolchain file of
# each processor, which sets OMNISET_MINGW.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${OMNISET_MINGW})
set(CMAKE_CXX_COMPILER ${OMNISET_MINGW}-w64-mingw32-g++-posix)
set(CMAKE_C_COMPILER ${OMNISET_MINGW}-w64-mingw32-gcc-posix)
set(CMAKE_RC_COMPILER ${OMNISET_MINGW}-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${OMNISET_MINGW}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
