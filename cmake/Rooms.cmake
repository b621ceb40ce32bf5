# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT

# vornak_add_room(NAME LIBRARIES target... SOURCES file...)
# The code of one folder, as objects for the plug-in and for the tests. It is compiled with the headers of LIBRARIES
# alone: a room that reaches further does not compile.
function(vornak_add_room name)
    cmake_parse_arguments(ROOM "" "" "LIBRARIES;SOURCES" ${ARGN})
    add_library(${name} OBJECT ${ROOM_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    # QT_NO_DEBUG in every build: it is part of the metadata that hosts compare with their own.
    target_compile_definitions(${name} PRIVATE QT_NO_DEBUG)
    target_link_libraries(${name} PRIVATE vornak_warnings PUBLIC ${ROOM_LIBRARIES})
endfunction()
