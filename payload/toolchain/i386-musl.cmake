# Static programs for 32-bit PCs: the system's compiler and its 32-bit C++ library, with the C library
# musl in place of the system's, which would be larger than the whole RAM disk.
# OMNISET_MUSL is the folder into which payload/toolchain/fetch-musl has unpacked the C library.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES OMNISET_MUSL)

function(compiler_answer variable)
  execute_process(COMMAND g++ -m32 ${ARGN} OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
  set(${variable} ${answer} PARENT_SCOPE)
endfunction()

compiler_answer(version -dumpversion)
compiler_answer(machine -dumpmachine)
set(libraries crtbeginT.o crtend.o libstdc++.a libgcc.a libgcc_eh.a)
foreach(file ${libraries})
  compiler_answer(path -print-file-name=${file})
  if(NOT IS_ABSOLUTE ${path})
    message(FATAL_ERROR "${file} for 32 bits is missing: install lib32gcc-12-dev, lib32stdc++-12-dev")
  endif()
  set(${file} ${path})
endforeach()
compiler_answer(compiler_headers -print-file-name=include)
set(musl_headers ${OMNISET_MUSL}/usr/include/i386-linux-musl)
set(musl ${OMNISET_MUSL}/usr/lib/i386-linux-musl)

# The kernel's headers lie among the C library's: they are reached through links.
set(kernel_headers ${OMNISET_MUSL}/kernel-headers)
file(MAKE_DIRECTORY ${kernel_headers})
foreach(folder linux asm-generic ${machine}/asm)
  get_filename_component(name ${folder} NAME)
  file(CREATE_LINK /usr/include/${folder} ${kernel_headers}/${name} SYMBOLIC)
endforeach()

set(headers /usr/include/c++/${version} /usr/include/${machine}/c++/${version}/32 ${musl_headers}
  ${compiler_headers} ${kernel_headers})
list(TRANSFORM headers PREPEND "-isystem ")
list(JOIN headers " " headers)
set(CMAKE_CXX_FLAGS_INIT "-m32 -march=i686 -fno-pie -nostdinc -nostdinc++ ${headers} \
-include ${CMAKE_CURRENT_LIST_DIR}/musl_port.h -ffunction-sections -fdata-sections \
-fno-asynchronous-unwind-tables")
set(CMAKE_CXX_FLAGS_MINSIZEREL_INIT "-Os -flto=auto")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-m32 -static -no-pie -nostdlib -s -Wl,--gc-sections \
-Wl,--build-id=none ${musl}/crt1.o ${musl}/crti.o ${crtbeginT.o}")
set(CMAKE_CXX_STANDARD_LIBRARIES_INIT "-Wl,--start-group ${libstdc++.a} ${libgcc.a} ${libgcc_eh.a} \
${musl}/libc.a -Wl,--end-group ${crtend.o} ${musl}/crtn.o")
