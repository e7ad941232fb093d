# The Windows side: the program, its tests and the tool that drives it from outside.
enable_language(RC)

# One file that needs nothing but Windows.
target_link_options(tolvan_options INTERFACE -static)
# The same sources give the same bytes, whatever the folder and the time.
target_compile_options(tolvan_options INTERFACE $<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=>)
target_link_options(tolvan_options INTERFACE -Wl,--no-insert-timestamp)
target_compile_definitions(tolvan_options INTERFACE WINVER=0x0601 _WIN32_WINNT=0x0601 NOMINMAX)

# An object library, as the logic calls back into it: every seam is linked, whoever asks for it.
add_library(tolvan_screens OBJECT
    app/about.cpp
    app/desktop_win32.cpp
    app/dialogs.cpp
    app/file_dialog.cpp
    app/help.cpp
    app/ini_file.cpp
    app/main_window.cpp
    app/progress.cpp
    comm/PCOM_screens.cpp
    comm/PCOM_setup.cpp
    comm/line_win32.cpp
    files/FILEGEN_dialogs.cpp
    files/FILEGEN_editor.cpp
    files/FILEGEN_lines.cpp
    library/LIB_dialogs.cpp
    monitor/MONITOR_print.cpp
    monitor/MONITOR_prompts.cpp
    monitor/MONITOR_view.cpp
    monitor/MONITOR_window.cpp
    program/LOOKUP_dialogs.cpp
    program/LOOKUP_file_dialog.cpp
    program/LOOKUP_table_dialog.cpp
    program/Prog_edits.cpp
    program/Prog_field.cpp
    program/Prog_field_controls.cpp
    program/Prog_global.cpp
    program/Prog_lcd.cpp
    program/Prog_special.cpp
    program/Prog_window.cpp
    setup/SETUP_barcodes.cpp
    setup/SETUP_dialogs.cpp
    setup/SETUP_options.cpp)
target_link_libraries(tolvan_screens PUBLIC tolvan_logic comctl32 comdlg32 gdi32 ole32 shell32 user32 winmm)

# The one resource script includes all that lies beside it.
set(TOLVAN_RESOURCES resources/TolvanP.rc)
file(GLOB TOLVAN_RESOURCE_PARTS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/*)
configure_file(resources/TolvanP.manifest.in generated/TolvanP.manifest @ONLY)
set_source_files_properties(${TOLVAN_RESOURCES} PROPERTIES
    COMPILE_OPTIONS "-c;65001"
    OBJECT_DEPENDS "${TOLVAN_RESOURCE_PARTS};${CMAKE_BINARY_DIR}/generated/app/version.h")

add_executable(TolvanP WIN32 app/main.cpp ${TOLVAN_RESOURCES})
target_include_directories(TolvanP PRIVATE ${CMAKE_SOURCE_DIR})
target_link_libraries(TolvanP PRIVATE tolvan_screens)
# The window procedure is exported under its plain name, on 32-bit Windows too.
target_link_options(TolvanP PRIVATE -s -Wl,--kill-at)

include(cmake/manual.cmake)
add_dependencies(TolvanP manual)

# GoogleTest for Windows is built from the sources that Debian packages.
set(GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest's sources")
if(EXISTS ${GOOGLETEST_SOURCE}/CMakeLists.txt)
    set(INSTALL_GTEST OFF CACHE INTERNAL "")
    set(BUILD_GMOCK OFF CACHE INTERNAL "")
    add_subdirectory(${GOOGLETEST_SOURCE} googletest EXCLUDE_FROM_ALL SYSTEM)
    add_executable(windows_tests tests/windows_test.cpp ${TOLVAN_RESOURCES})
    target_include_directories(windows_tests PRIVATE ${CMAKE_SOURCE_DIR})
    target_link_libraries(windows_tests PRIVATE tolvan_screens gtest)
endif()

# The program tests start the program by the one and call Windows inside it through the other.
add_executable(launch tests/program/launch.cpp)
target_link_libraries(launch PRIVATE tolvan_options)
add_library(bridge MODULE tests/program/bridge.cpp)
set_target_properties(bridge PROPERTIES PREFIX "")
target_link_libraries(bridge PRIVATE tolvan_options user32)

# Start-up against that of Wine's notepad; built only when it is asked for.
add_executable(start_up_bench EXCLUDE_FROM_ALL bench/start_up.cpp)
target_link_libraries(start_up_bench PRIVATE tolvan_options user32)
add_dependencies(start_up_bench TolvanP)
