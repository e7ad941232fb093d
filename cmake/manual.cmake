# The operator's manual, made beside the program as the help command looks for it.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
file(GLOB MANUAL_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/manual/*.md
     ${CMAKE_SOURCE_DIR}/docs/manual/pictures/*.png ${CMAKE_SOURCE_DIR}/tools/manual/*.py)
set(MANUAL_MAKER ${CMAKE_SOURCE_DIR}/tools/make_manual.py)
set(MANUAL_FOLDER ${CMAKE_BINARY_DIR}/help)

# The help file is the last that the maker writes and stands for all.
add_custom_command(
    OUTPUT ${MANUAL_FOLDER}/helpfile.hlp
    COMMAND Python3::Interpreter -B ${MANUAL_MAKER} ${CMAKE_SOURCE_DIR}/docs/manual ${MANUAL_FOLDER}
    DEPENDS ${MANUAL_MAKER} ${MANUAL_SOURCES}
    COMMENT "Making the manual"
    VERBATIM)
add_custom_target(manual DEPENDS ${MANUAL_FOLDER}/helpfile.hlp)
