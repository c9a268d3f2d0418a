# Toolchain of the presets windows-x86_64 and windows-i686: Debian's mingw-w64 with POSIX threads, and what
# tools/windows/dependencias.sh has built for it. UTILVEL90_WINDOWS names the target.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES UTILVEL90_WINDOWS)
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${UTILVEL90_WINDOWS})
set(CMAKE_C_COMPILER ${UTILVEL90_WINDOWS}-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER ${UTILVEL90_WINDOWS}-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER ${UTILVEL90_WINDOWS}-w64-mingw32-windres)

cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH raiz)
set(CMAKE_FIND_ROOT_PATH
  ${raiz}/build/windows/dependencias/${UTILVEL90_WINDOWS} /usr/${UTILVEL90_WINDOWS}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs of 64 bits run under wine; there is none for 32 bits in Debian's amd64 archive alone.
if(UTILVEL90_WINDOWS STREQUAL "x86_64")
  set(CMAKE_CROSSCOMPILING_EMULATOR env;WINEPREFIX=${raiz}/build/windows/wine;WINEDEBUG=-all;/usr/lib/wine/wine64)
endif()
