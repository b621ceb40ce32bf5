# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT

# Where the same sources are compiled once more, Qt's headers are read once for all rooms. The release build does
# without, so that each source is seen to include what it needs.
option(VORNAK_PRECOMPILE "Precompile Qt's headers for the product, too" OFF)
function(vornak_add_room_headers name header)
    file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/${name}.cpp" CONTENT "// Empty but for the headers.\n")
    add_library(${name} OBJECT "${CMAKE_BINARY_DIR}/${name}.cpp")
    target_link_libraries(${name} PRIVATE vornak_warnings ${ARGN})
    target_compile_definitions(${name} PRIVATE QT_NO_DEBUG)
    target_precompile_headers(${name} PRIVATE ${header})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
endfunction()
if(VORNAK_PRECOMPILE)
    vornak_add_room_headers(room_headers <QtWidgets> Qt5::Widgets)
    vornak_add_room_headers(room_core_headers <QtCore> Qt5::Core)
endif()

# vornak_precompile(TARGET [WIDGETS])
function(vornak_precompile target)
    if(VORNAK_PRECOMPILE AND "WIDGETS" IN_LIST ARGN)
        target_precompile_headers(${target} REUSE_FROM room_headers)
    elseif(VORNAK_PRECOMPILE)
        target_precompile_headers(${target} REUSE_FROM room_core_headers)
    endif()
endfunction()

# vornak_instrument(TARGET): libFuzzer shall learn the ways through the product, not those through tests and judges.
function(vornak_instrument target)
    if(VORNAK_FUZZ)
        # What -fsanitize=fuzzer-no-link stands for, which precompiled headers would have to be made with.
        target_compile_options(${target} PRIVATE
            -fsanitize-coverage=inline-8bit-counters,indirect-calls,trace-cmp,pc-table,stack-depth
            -fno-builtin-memcmp -fno-builtin-strcmp -fno-builtin-strncmp)
    endif()
endfunction()

# vornak_spare_moc(TARGET): no run of moc, and no source for it, where no file of the target asks for one.
function(vornak_spare_moc target)
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        file(STRINGS "${CMAKE_CURRENT_SOURCE_DIR}/${source}" objects REGEX "^ +Q_(OBJECT|GADGET)" LIMIT_COUNT 1)
        if(objects OR source MATCHES "\\.ui$")
            return()
        endif()
    endforeach()
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF)
endfunction()

# vornak_add_room(NAME [ENTRY] LIBRARIES target... SOURCES file...)
# The code of one folder, as objects for the plug-in and for the tests. It is compiled with the headers of LIBRARIES
# alone: a room that reaches further does not compile. With VORNAK_SHARED_CODE it is a shared library, so that a change
# is one compilation and one link; but for the ENTRY, which is the plug-in itself.
function(vornak_add_room name)
    cmake_parse_arguments(ROOM "ENTRY" "" "LIBRARIES;SOURCES" ${ARGN})
    if(VORNAK_SHARED_CODE AND NOT ROOM_ENTRY)
        add_library(${name} SHARED ${ROOM_SOURCES})
        # What a room leaves undefined is in another: an executable needs also those that it does not call itself.
        target_link_options(${name} INTERFACE -Wl,--no-as-needed)
    else()
        add_library(${name} OBJECT ${ROOM_SOURCES})
    endif()
    vornak_spare_moc(${name})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    # QT_NO_DEBUG in every build: it is part of the metadata that hosts compare with their own.
    target_compile_definitions(${name} PRIVATE QT_NO_DEBUG)
    target_link_libraries(${name} PRIVATE vornak_warnings PUBLIC ${ROOM_LIBRARIES})
    vornak_instrument(${name})
    if("Qt5::Widgets" IN_LIST ROOM_LIBRARIES)
        vornak_precompile(${name} WIDGETS)
    else()
        vornak_precompile(${name})
    endif()
endfunction()
