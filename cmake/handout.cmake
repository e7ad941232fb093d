# What is handed out: the targets "zip" and "installer" leave their files in handout/ of the build folder.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(HANDOUT_NAME TolvanP-${PROJECT_VERSION}-win64)
    set(INSTALLER_TARGET amd64-unicode)
else()
    set(HANDOUT_NAME TolvanP-${PROJECT_VERSION}-win32)
    set(INSTALLER_TARGET x86-unicode)
endif()
set(HANDOUT ${CMAKE_BINARY_DIR}/handout)
configure_file(handout/README.txt generated/README.txt @ONLY NEWLINE_STYLE DOS)
set(HANDOUT_PARTS TolvanP.exe=$<TARGET_FILE:TolvanP> README.txt=${CMAKE_BINARY_DIR}/generated/README.txt
                  samples=${CMAKE_SOURCE_DIR}/samples)
if(TARGET manual)
    list(APPEND HANDOUT_PARTS help=${CMAKE_BINARY_DIR}/help)
endif()

# The run-time library is linked statically, and its terms ask to be handed on.
string(REPLACE "_" "-" MINGW_PROCESSOR ${CMAKE_SYSTEM_PROCESSOR})
set(MINGW_TERMS /usr/share/doc/mingw-w64-${MINGW_PROCESSOR}-dev/copyright CACHE FILEPATH "The terms of MinGW-w64")
list(APPEND HANDOUT_PARTS MinGW-w64.txt=${MINGW_TERMS})

find_package(Python3 REQUIRED COMPONENTS Interpreter)
add_custom_target(zip
    COMMAND Python3::Interpreter ${CMAKE_SOURCE_DIR}/handout/pack.py ${HANDOUT} ${HANDOUT_NAME} ${HANDOUT_PARTS}
    COMMENT "Packing ${HANDOUT_NAME}.zip"
    VERBATIM)
add_dependencies(zip TolvanP)

find_program(MAKENSIS makensis)
if(MAKENSIS)
    add_custom_target(installer
        COMMAND ${MAKENSIS} -V2 -WX -NOCD -DTARGET=${INSTALLER_TARGET} -DVERSION=${PROJECT_VERSION} -DFOLDER=${HANDOUT}
                -DOUTPUT=${HANDOUT}/${HANDOUT_NAME}-setup.exe handout/installer.nsi
        WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
        COMMENT "Packing ${HANDOUT_NAME}-setup.exe"
        VERBATIM)
    add_dependencies(installer zip)
else()
    add_custom_target(installer
        COMMAND ${CMAKE_COMMAND} -E echo "The installer needs makensis: install the package nsis."
        COMMAND ${CMAKE_COMMAND} -E false
        VERBATIM)
endif()
