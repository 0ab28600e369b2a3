# A second build of the same sources is quick where ccache is installed. It keeps what is compiled with a precompiled
# header only when it may overlook the times in that (see "Precompiled headers" in its manual).
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "${CCACHE}")
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
  else()
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
  endif()
endif()

# korvadex_options: the language level, warnings and sanitizers that every target of the project shares.
add_library(korvadex_options INTERFACE)
target_compile_features(korvadex_options INTERFACE cxx_std_20)
target_include_directories(korvadex_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(korvadex_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 sees overlapping copies in std::string's operator+ where there are none (its bug 105651).
  target_compile_options(korvadex_options INTERFACE -Wno-restrict)
endif()
if(KORVADEX_WERROR)
  target_compile_options(korvadex_options INTERFACE -Werror)
endif()
if(KORVADEX_SANITIZE)
  target_compile_options(korvadex_options INTERFACE
    -fsanitize=${KORVADEX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(korvadex_options INTERFACE -fsanitize=${KORVADEX_SANITIZE})
endif()
if(WIN32)
  target_compile_definitions(korvadex_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX
    _WIN32_WINNT=0x0A00)
endif()

# korvadex_floor(NAME SOURCES ... LINKS ...): one static library for one folder of the house.
function(korvadex_floor name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
  add_library(korvadex_${name} STATIC ${arg_SOURCES})
  target_link_libraries(korvadex_${name} PUBLIC korvadex_options ${arg_LINKS})
endfunction()
