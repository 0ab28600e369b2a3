# Cross-compile for 64-bit Windows with Debian's mingw-w64 (posix threads).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER   ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER  ${triplet}-windres)
# The same sources make the same bytes.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,--no-insert-timestamp")
endforeach()

# WIN_PREFIX (environment or -D): where packaging/windows/libraries has put what Debian has only for Linux.
if(NOT WIN_PREFIX)
  if(DEFINED ENV{WIN_PREFIX})
    set(WIN_PREFIX "$ENV{WIN_PREFIX}")
  elseif(DEFINED ENV{XDG_CACHE_HOME})
    set(WIN_PREFIX "$ENV{XDG_CACHE_HOME}/korvadex/windows-libs")
  else()
    set(WIN_PREFIX "$ENV{HOME}/.cache/korvadex/windows-libs")
  endif()
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WIN_PREFIX)

set(CMAKE_FIND_ROOT_PATH ${WIN_PREFIX} /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Test programs run under Wine (see tools/wine-env.sh).
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/lib/wine/wine64)
