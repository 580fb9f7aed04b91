# The library: its generated sources, the object library that both the
# shared library and the internal tests link, and the shared library itself.

set(VLCORE_GEN ${CMAKE_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${VLCORE_GEN})

add_custom_command(
  OUTPUT ${VLCORE_GEN}/string_table.inc ${VLCORE_GEN}/vlcore.rc
  COMMAND ${CMAKE_COMMAND} -DSTRINGS=${PROJECT_SOURCE_DIR}/resources/strings.tsv
          -DRC_IN=${PROJECT_SOURCE_DIR}/resources/vlcore.rc.in -DRC_OUT=${VLCORE_GEN}/vlcore.rc
          -DINC_OUT=${VLCORE_GEN}/string_table.inc -P ${PROJECT_SOURCE_DIR}/cmake/GenerateResources.cmake
  DEPENDS ${PROJECT_SOURCE_DIR}/resources/strings.tsv ${PROJECT_SOURCE_DIR}/resources/vlcore.rc.in
          ${PROJECT_SOURCE_DIR}/resources/script.rc ${PROJECT_SOURCE_DIR}/resources/script_ids.h
          ${PROJECT_SOURCE_DIR}/cmake/GenerateResources.cmake
  COMMENT "Generating the string table")

# The memory block helpers are exported natively besides the entries.
set(VLCORE_NATIVE_EXTRA_EXPORTS "vl_global_alloc,vl_global_lock,vl_global_unlock,vl_global_size,vl_global_free")
add_custom_command(
  OUTPUT ${VLCORE_GEN}/vlcore.def ${VLCORE_GEN}/vlcore.map
  COMMAND ${CMAKE_COMMAND} -DLIST=${PROJECT_SOURCE_DIR}/src/frame/exports.txt -DDEF_OUT=${VLCORE_GEN}/vlcore.def
          -DMAP_OUT=${VLCORE_GEN}/vlcore.map -DEXTRA=${VLCORE_NATIVE_EXTRA_EXPORTS}
          -P ${PROJECT_SOURCE_DIR}/cmake/GenerateExports.cmake
  DEPENDS ${PROJECT_SOURCE_DIR}/src/frame/exports.txt ${PROJECT_SOURCE_DIR}/cmake/GenerateExports.cmake
  COMMENT "Generating the export list")
add_custom_target(vlcore_generated DEPENDS ${VLCORE_GEN}/string_table.inc ${VLCORE_GEN}/vlcore.rc
                                           ${VLCORE_GEN}/vlcore.def ${VLCORE_GEN}/vlcore.map)

set(VLCORE_SOURCES
  src/data/data_state.cpp
  src/data/file_io.cpp
  src/data/file_wrappers.cpp
  src/data/memobject.cpp
  src/data/multiline.cpp
  src/data/names.cpp
  src/data/package.cpp
  src/data/rawmem.cpp
  src/data/section_entry.cpp
  src/data/section_file.cpp
  src/data/section_filename.cpp
  src/data/section_mem.cpp
  src/datetime/calendar.cpp
  src/datetime/custom.cpp
  src/datetime/custom_parse.cpp
  src/datetime/cvtdouble.cpp
  src/datetime/date2str.cpp
  src/datetime/date_core.cpp
  src/datetime/dateinc.cpp
  src/datetime/numeric_date.cpp
  src/datetime/regional.cpp
  src/datetime/state.cpp
  src/datetime/step_units.cpp
  src/datetime/str2date.cpp
  src/datetime/time_text.cpp
  src/frame/main.cpp
  src/math/distributions.cpp
  src/math/expressions.cpp
  src/math/function_table.cpp
  src/math/inverse.cpp
  src/math/normal.cpp
  src/math/quality.cpp
  src/math/random.cpp
  src/math/small_functions.cpp
  src/math/sort.cpp
  src/math/gamma_functions.cpp
  src/math/state.cpp
  src/platform/common.cpp
  src/text/bracket.cpp
  src/text/edit.cpp
  src/text/numparse.cpp
  src/text/search.cpp
  src/text/tokens.cpp)
# Number formatting and format-directed output.
list(APPEND VLCORE_SOURCES
  src/text/digits.cpp
  src/text/format_output.cpp
  src/text/format_text.cpp
  src/text/real2str.cpp)
# The file dialogs' path registry and file type table, and the directories
# and drives they ask the system about.
list(APPEND VLCORE_SOURCES src/filedlg/filedlg_state.cpp src/filedlg/file_types.cpp src/filedlg/path_registry.cpp)
if(WIN32)
  list(APPEND VLCORE_SOURCES src/filedlg/file_types_win32.cpp src/platform/win32/paths.cpp)
else()
  list(APPEND VLCORE_SOURCES src/platform/posix/paths.cpp)
endif()
# The open, save and multiple-file dialogs, their hooks and the list of
# chosen files; natively the dialogs themselves fail at once.
list(APPEND VLCORE_SOURCES src/filedlg/file_dialog.cpp src/filedlg/file_list.cpp src/filedlg/dialog_logic.cpp)
if(WIN32)
  list(APPEND VLCORE_SOURCES src/filedlg/dialogs_win32.cpp)
else()
  list(APPEND VLCORE_SOURCES src/filedlg/dialogs_posix.cpp)
endif()
# The colour table and palette; pens, brushes and palettes need the window
# system and are made in the Windows half only.
list(APPEND VLCORE_SOURCES src/colour/color_table.cpp src/colour/colour_state.cpp src/colour/palette.cpp
  src/colour/square.cpp src/colour/color_editor.cpp)
if(WIN32)
  list(APPEND VLCORE_SOURCES src/colour/gdi_win32.cpp src/colour/color_dialog_win32.cpp)
else()
  list(APPEND VLCORE_SOURCES src/colour/gdi_posix.cpp)
endif()
# The script window's decisions that need no window system.
list(APPEND VLCORE_SOURCES src/script/script_logic.cpp)
# Device-independent bitmaps: the platform-free DIB arithmetic.
list(APPEND VLCORE_SOURCES src/output/dib.cpp)
if(WIN32)
  list(APPEND VLCORE_SOURCES src/output/dib_win32.cpp)
endif()
# The printer device and the status window: the block logic everywhere,
# contexts and dialogs on Windows.
list(APPEND VLCORE_SOURCES src/output/printer_block.cpp src/output/status_text.cpp)
if(WIN32)
  list(APPEND VLCORE_SOURCES src/output/printer_win32.cpp src/output/status_win32.cpp)
else()
  list(APPEND VLCORE_SOURCES src/output/printer_posix.cpp)
endif()

if(WIN32)
  list(APPEND VLCORE_SOURCES
    src/platform/win32/runtime_math.cpp
    src/data/names_window_win32.cpp
    src/platform/win32/clock.cpp
    src/platform/win32/dllmain.cpp
    src/platform/win32/files.cpp
    src/platform/win32/memory.cpp
    src/platform/win32/picture.cpp
    src/platform/win32/profile.cpp
    src/platform/win32/strings.cpp
    src/platform/win32/system.cpp
    src/platform/win32/text.cpp
    src/script/window_class.cpp)
  # The script window: its procedure, the Enter key, files and printing.
  list(APPEND VLCORE_SOURCES src/script/script_window_win32.cpp src/script/script_edit_win32.cpp
    src/script/script_file_win32.cpp src/script/script_print_win32.cpp)
else()
  list(APPEND VLCORE_SOURCES
    src/platform/posix/runtime_math.cpp
    src/data/names_window_posix.cpp
    src/platform/posix/files.cpp
    src/platform/posix/clock.cpp
    src/platform/posix/load.cpp
    src/platform/posix/memory.cpp
    src/platform/posix/picture.cpp
    src/platform/posix/profile.cpp
    src/platform/posix/strings.cpp
    src/platform/posix/system.cpp
    src/platform/posix/text.cpp)
endif()

if(WIN32)
  enable_language(RC)
  # Dialog templates stand in resources/, included by the generated script.
  string(APPEND CMAKE_RC_FLAGS " -I${PROJECT_SOURCE_DIR}/resources")
  file(GLOB vlcore_rc_parts ${PROJECT_SOURCE_DIR}/resources/*.rc ${PROJECT_SOURCE_DIR}/resources/*.h)
  set_source_files_properties(${VLCORE_GEN}/vlcore.rc PROPERTIES OBJECT_DEPENDS "${vlcore_rc_parts}")
endif()

add_library(vlcore_objects OBJECT ${VLCORE_SOURCES})
add_dependencies(vlcore_objects vlcore_generated)
# resources/ holds the dialog scripts that vlcore.rc includes and their id
# headers, which the code shares.
target_include_directories(vlcore_objects PUBLIC include src resources ${VLCORE_GEN})
if(WIN32)
  target_compile_definitions(vlcore_objects PUBLIC WIN32_LEAN_AND_MEAN NOMINMAX)
  target_link_libraries(vlcore_objects PUBLIC user32 gdi32 comdlg32)
else()
  target_link_libraries(vlcore_objects PUBLIC ${CMAKE_DL_LIBS})
endif()

add_library(vlcore SHARED $<TARGET_OBJECTS:vlcore_objects>)
target_include_directories(vlcore PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
add_dependencies(vlcore vlcore_generated)
if(WIN32)
  target_sources(vlcore PRIVATE ${VLCORE_GEN}/vlcore.rc)
  set_target_properties(vlcore PROPERTIES OUTPUT_NAME VLCORE PREFIX "")
  # One self-contained DLL: the host ships no compiler runtime.
  target_link_options(vlcore PRIVATE -static -static-libgcc -static-libstdc++)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # WINAPI entries are exported under their plain names; the .def with
    # the decorated names is made from the objects just before the link.
    set(def_i686 ${VLCORE_GEN}/vlcore_i686.def)
    add_custom_command(TARGET vlcore PRE_LINK
      COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DLIST=${PROJECT_SOURCE_DIR}/src/frame/exports.txt
              -DDEF_OUT=${def_i686} "-DOBJECTS=$<JOIN:$<TARGET_OBJECTS:vlcore_objects>,|>"
              -P ${PROJECT_SOURCE_DIR}/cmake/DecorateExports.cmake
      VERBATIM)
    target_link_options(vlcore PRIVATE ${def_i686} -Wl,--kill-at)
    # The linker's own import library loses the decoration with --kill-at;
    # dlltool keeps the decorated symbols and imports by the plain names.
    add_custom_command(TARGET vlcore POST_BUILD
      COMMAND ${CMAKE_DLLTOOL} -d ${def_i686} -l $<TARGET_LINKER_FILE:vlcore> -k -D VLCORE.dll
      VERBATIM)
    set_target_properties(vlcore PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/src/frame/exports.txt)
  else()
    target_sources(vlcore PRIVATE ${VLCORE_GEN}/vlcore.def)
  endif()
  target_link_libraries(vlcore PRIVATE user32 gdi32 comdlg32)
else()
  set_target_properties(vlcore PROPERTIES OUTPUT_NAME vlcore LINK_DEPENDS ${VLCORE_GEN}/vlcore.map)
  target_link_options(vlcore PRIVATE -Wl,--version-script=${VLCORE_GEN}/vlcore.map)
  if(NOT VLCORE_BUILD_FUZZ)
    # A sanitised clang build leaves its runtime to the executable.
    target_link_options(vlcore PRIVATE -Wl,--no-undefined)
  endif()
  target_link_libraries(vlcore PRIVATE ${CMAKE_DL_LIBS})
endif()
