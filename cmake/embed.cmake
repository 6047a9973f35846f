# Turns binary files into the C++ source behind a header that declares them:
#   cmake -DHEADER=folder/name.h "-DARRAYS=name=file=size;..." -DOUTPUT=source.cpp -P embed.cmake

set(definitions "")
foreach(array ${ARRAYS})
  string(REPLACE "=" ";" parts "${array}")
  list(POP_FRONT parts name file size)
  file(READ ${file} bytes HEX)
  string(LENGTH "${bytes}" digits)
  math(EXPR held "${digits} / 2")
  if(NOT held EQUAL size)
    message(FATAL_ERROR "${file} has ${held} bytes instead of ${size}.")
  endif()
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  string(REPEAT "....." 16 line)
  string(REGEX REPLACE "(${line})" "\\1\n    " bytes "${bytes}")
  string(APPEND definitions "const std::array<std::uint8_t, ${size}> ${name} = {\n    ${bytes}};\n\n")
endforeach()

file(WRITE ${OUTPUT} "// Generated from assembled code.
#include \"${HEADER}\"

namespace omniset {

${definitions}}  // namespace omniset
")
