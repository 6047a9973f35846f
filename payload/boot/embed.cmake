# Turns assembled boot code into the C++ source behind boot_code.h:
#   cmake -DMBR=mbr.bin -DVOLUME=volume.bin -DOUTPUT=boot_code.cpp -P embed.cmake

function(array name file size out)
  file(READ ${file} bytes HEX)
  string(LENGTH "${bytes}" digits)
  math(EXPR held "${digits} / 2")
  if(NOT held EQUAL size)
    message(FATAL_ERROR "${file} has ${held} bytes instead of ${size}.")
  endif()
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  string(REPEAT "....." 16 line)
  string(REGEX REPLACE "(${line})" "\\1\n    " bytes "${bytes}")
  set(${out} "const std::array<std::uint8_t, ${size}> ${name} = {\n    ${bytes}};\n" PARENT_SCOPE)
endfunction()

array(mbrBootCode ${MBR} 440 mbr)
array(volumeBootCode ${VOLUME} 448 volume)
file(WRITE ${OUTPUT} "// Generated from mbr.asm and volume.asm.
#include \"payload/boot/boot_code.h\"

namespace omniset {

${mbr}
${volume}
}  // namespace omniset
")
