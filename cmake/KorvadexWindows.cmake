# What the Windows program needs beside it. Everything runs from build/windows/bin; `cmake --install` lays out the
# directory that people get.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# korvadex_add_runtime(): copies Qt's libraries and plug-ins and those of the compiler into bin, and installs those of
# the program.
function(korvadex_add_runtime)
  set(bin "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=libstdc++-6.dll
    OUTPUT_VARIABLE standard_library OUTPUT_STRIP_TRAILING_WHITESPACE)
  cmake_path(GET standard_library PARENT_PATH compiler)
  set(made)
  # With its symbols the compiler's library alone would be larger than the program.
  foreach(library IN ITEMS "${standard_library}" "${compiler}/libgcc_s_seh-1.dll"
      /usr/x86_64-w64-mingw32/lib/libwinpthread-1.dll)
    cmake_path(GET library FILENAME name)
    add_custom_command(OUTPUT "${bin}/${name}"
      COMMAND "${CMAKE_COMMAND}" -E env SOURCE_DATE_EPOCH=0 "${CMAKE_STRIP}" -o "${bin}/${name}" "${library}"
      DEPENDS "${library}" VERBATIM)
    list(APPEND made "${bin}/${name}")
    install(FILES "${bin}/${name}" DESTINATION .)
  endforeach()

  set(copied)
  foreach(library IN ITEMS Core Gui Network Widgets)
    list(APPEND copied "bin/Qt6${library}.dll")
  endforeach()
  foreach(plugin IN ITEMS platforms/qwindows styles/qwindowsvistastyle imageformats/qjpeg imageformats/qgif
      imageformats/qico)
    list(APPEND copied "plugins/${plugin}.dll")
  endforeach()
  set(for_tests "bin/Qt6Test.dll" "plugins/platforms/qoffscreen.dll")
  foreach(file IN LISTS copied for_tests)
    string(REGEX REPLACE "^(bin|plugins)/" "" name "${file}")
    add_custom_command(OUTPUT "${bin}/${name}"
      COMMAND "${CMAKE_COMMAND}" -E copy "${WIN_PREFIX}/${file}" "${bin}/${name}"
      DEPENDS "${WIN_PREFIX}/${file}" VERBATIM)
    list(APPEND made "${bin}/${name}")
    if(file IN_LIST copied)
      cmake_path(GET name PARENT_PATH directory)
      install(FILES "${bin}/${name}" DESTINATION "./${directory}")
    endif()
  endforeach()
  add_custom_target(korvadex_runtime ALL DEPENDS ${made})
endfunction()

# korvadex_add_windows_resources(TARGET): icon, version and manifest of the program.
function(korvadex_add_windows_resources target)
  find_program(ICOTOOL icotool REQUIRED)
  set(made "${CMAKE_CURRENT_BINARY_DIR}")
  set(pictures)
  foreach(size IN ITEMS 16 24 32 48 64 256)
    list(APPEND pictures "${made}/icons/korvadex-${size}.png")
  endforeach()
  add_custom_command(OUTPUT "${made}/korvadex.ico"
    COMMAND "${ICOTOOL}" --create --output "${made}/korvadex.ico" ${pictures}
    DEPENDS ${pictures} VERBATIM)
  set(version "${PROJECT_VERSION_MAJOR},${PROJECT_VERSION_MINOR},0,0")
  configure_file(korvadex.rc.in "${made}/korvadex.rc" @ONLY)
  configure_file(korvadex.manifest.in "${made}/korvadex.manifest" @ONLY)
  set_source_files_properties("${made}/korvadex.rc" PROPERTIES
    OBJECT_DEPENDS "${made}/korvadex.ico;${made}/korvadex.manifest")
  target_sources(${target} PRIVATE "${made}/korvadex.rc" "${made}/korvadex.ico")
endfunction()
