# Settings and helpers shared by every folder of the project.

option(OMNISET_PROGRAMS "Build the command line and the target agent" ON)
option(OMNISET_AGENT "Build the agent of the installer system (by payload/)" OFF)
option(OMNISET_TESTS "Build the tests" ON)
option(OMNISET_FUZZ "Build the fuzz targets (clang)" OFF)
option(OMNISET_BENCH "Build the benchmarks" OFF)
set(OMNISET_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
  -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wimplicit-fallthrough -Werror)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees bounds broken inside std::string that are not.
  add_compile_options(-Wno-array-bounds -Wno-stringop-overflow -Wno-restrict)
endif()

if(OMNISET_SANITIZE)
  add_compile_options(-fsanitize=${OMNISET_SANITIZE} -fno-omit-frame-pointer)
  # A finding ends the program, so that no test can pass over one.
  string(FIND "${OMNISET_SANITIZE}" "undefined" has_ubsan)
  if(NOT has_ubsan EQUAL -1)
    add_compile_options(-fno-sanitize-recover=all)
  endif()
  add_link_options(-fsanitize=${OMNISET_SANITIZE})
endif()

if(WIN32)
  # ANSI calls, and the oldest Windows that the C runtime itself still starts on.
  add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0501 __USE_MINGW_ANSI_STDIO=1)
  add_link_options(-static -static-libgcc -static-libstdc++)
endif()

# omniset_headers(NAME folder/file.hpp): a header-only library of the system. A cross compiler sees it
# through a folder that links to just its folder: the rest of the host's headers would break it.
function(omniset_headers name header)
  get_filename_component(folder ${header} DIRECTORY)
  find_path(${name}_found ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(headers ${PROJECT_BINARY_DIR}/headers/${folder})
  file(MAKE_DIRECTORY ${headers})
  file(CREATE_LINK ${${name}_found}/${folder} ${headers}/${folder} SYMBOLIC)
  add_library(${name} INTERFACE)
  target_include_directories(${name} SYSTEM INTERFACE ${headers})
endfunction()

# omniset_library(NAME SOURCES a.cpp ... SEAMS b c ... LINKS other ...)
# One static library of a folder. Each name under SEAMS stands for the pair b_win32.cpp and
# b_posix.cpp, of which the one for the target system is compiled.
function(omniset_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;SEAMS;LINKS" ${ARGN})
  if(WIN32)
    set(suffix win32)
  else()
    set(suffix posix)
  endif()
  list(TRANSFORM ARG_SEAMS APPEND "_${suffix}.cpp")
  add_library(${name} STATIC ${ARG_SOURCES} ${ARG_SEAMS})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_LINKS})
endfunction()
