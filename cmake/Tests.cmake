# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT

# datadisplay_add_test(NAME LABELS label... [SOURCES file...] [LIBRARIES target...] [TIMEOUT seconds])
# Builds NAME.cpp, a Qt Test executable, and runs it headless with a home, a locale and a run-time folder of its own.
# Qt's libraries are built without the thread sanitizer, which sees races in them that are none.
function(datadisplay_add_test name)
    cmake_parse_arguments(TEST "" "TIMEOUT" "LABELS;SOURCES;LIBRARIES" ${ARGN})
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 120)
    endif()
    add_executable(${name} ${name}.cpp ${TEST_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE vornak_warnings Qt5::Test ${TEST_LIBRARIES})
    add_test(NAME ${name} COMMAND ${name})
    set(home "${CMAKE_CURRENT_BINARY_DIR}/${name}.home")
    file(MAKE_DIRECTORY "${home}")
    file(CHMOD "${home}" DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    set_tests_properties(${name} PROPERTIES
        LABELS "${TEST_LABELS}"
        TIMEOUT ${TEST_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${home};XDG_CONFIG_HOME=${home}/.config;XDG_RUNTIME_DIR=${home};LC_ALL=C.UTF-8;QT_LOGGING_RULES=qt.qpa.*=false;TSAN_OPTIONS=ignore_noninstrumented_modules=1;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0")
endfunction()
