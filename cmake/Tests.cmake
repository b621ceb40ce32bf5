# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT

# What all tests compile with. Most of a test's compilation is Qt's headers: they are read once. Tests are not optimised,
# but for those that loop over millions of values.
find_program(LLD ld.lld)
function(vornak_add_test_headers name optimisation)
    add_library(${name} OBJECT "${PROJECT_SOURCE_DIR}/tests/support/testheaders.cpp")
    target_link_libraries(${name} PRIVATE vornak_warnings Qt5::Test ${ARGN})
    target_compile_options(${name} PRIVATE ${optimisation})
    if(ARGN)
        target_precompile_headers(${name} PRIVATE <QtTest> <QtWidgets>)
    else()
        target_precompile_headers(${name} PRIVATE <QtTest> <QtCore>)
    endif()
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
endfunction()
if(BUILD_TESTING)
    vornak_add_test_headers(test_headers -O0 Qt5::Widgets)
    vornak_add_test_headers(test_core_headers -O0)
    vornak_add_test_headers(test_loop_headers -O1)
endif()

# vornak_compile_as_test(TARGET [CORE|LOOPS]): for an executable or library of tests. It links Qt5::Widgets; or, with
# CORE, no more of Qt than Core and Test; or, with LOOPS, the same, and its own code costs time.
# moc runs on the sources and headers with a Q_OBJECT alone: CMake's AUTOMOC would cost each test more than its source.
function(vornak_compile_as_test target)
    cmake_parse_arguments(TEST "CORE;LOOPS" "" "" ${ARGN})
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        file(STRINGS "${source}" objects REGEX "^ +Q_OBJECT" LIMIT_COUNT 1)
        get_filename_component(unit "${source}" NAME_WE)
        if(objects AND source MATCHES "\\.h$")
            qt5_wrap_cpp(mocs "${source}" TARGET ${target})
            target_sources(${target} PRIVATE ${mocs})
        elseif(objects)
            qt5_generate_moc("${source}" "${CMAKE_CURRENT_BINARY_DIR}/${unit}.moc" TARGET ${target})
            target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${unit}.moc")
            target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}")
        endif()
    endforeach()
    if(TEST_LOOPS)
        target_compile_options(${target} PRIVATE -O1)
        target_precompile_headers(${target} REUSE_FROM test_loop_headers)
    elseif(TEST_CORE)
        target_compile_options(${target} PRIVATE -O0)
        target_precompile_headers(${target} REUSE_FROM test_core_headers)
    else()
        target_compile_options(${target} PRIVATE -O0)
        target_link_libraries(${target} PRIVATE Qt5::Widgets)
        target_precompile_headers(${target} REUSE_FROM test_headers)
    endif()
    target_link_libraries(${target} PRIVATE Qt5::Test)
    if(LLD)
        target_link_options(${target} PRIVATE -fuse-ld=lld)
    endif()
endfunction()

# vornak_find_tool(VARIABLE NAME [HINTS folder...]): a program that tests need. Without it they are disabled, and with
# VORNAK_STRICT nothing is configured.
function(vornak_find_tool variable name)
    find_program(${variable} ${name} ${ARGN})
    if(NOT ${variable})
        vornak_report_missing("${name}")
    endif()
endfunction()

function(vornak_report_missing what)
    if(VORNAK_STRICT)
        message(FATAL_ERROR "${what} is missing, which tests need: scripts/setup check installs it")
    endif()
    message(NOTICE "${what} is missing: the tests that need it are disabled (scripts/setup check installs it)")
endfunction()

vornak_find_tool(ABIDIFF abidiff)
vornak_find_tool(QTPLUGININFO qtplugininfo HINTS /usr/lib/qt5/bin)
execute_process(COMMAND locale -a OUTPUT_VARIABLE locales ERROR_QUIET)
set(GERMAN_LOCALE OFF)
if(locales MATCHES "de_DE\\.(utf8|UTF-8)")
    set(GERMAN_LOCALE ON)
else()
    vornak_report_missing("The locale de_DE.UTF-8")
endif()

# vornak_disable_without(VARIABLE test...): disables the tests where what the variable stands for was not found.
function(vornak_disable_without variable)
    if(NOT ${variable})
        set_tests_properties(${ARGN} PROPERTIES DISABLED TRUE)
    endif()
endfunction()

# vornak_add_homed_test(NAME LABELS label... TIMEOUT seconds LEAKS file COMMAND argument...)
# Runs a command headless with a locale and an empty home and run-time folder of its own. LEAKS names those that are
# none of ours. Qt's libraries are built without the thread sanitizer, which sees races in them that are none.
function(vornak_add_homed_test name)
    cmake_parse_arguments(TEST "" "TIMEOUT;LEAKS" "LABELS;COMMAND" ${ARGN})
    set(home "${CMAKE_CURRENT_BINARY_DIR}/${name}.home")
    add_test(NAME ${name} COMMAND "${PROJECT_SOURCE_DIR}/cmake/freshhome" "${home}" ${TEST_COMMAND})
    set_tests_properties(${name} PROPERTIES
        LABELS "${TEST_LABELS}"
        TIMEOUT ${TEST_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${home};XDG_CONFIG_HOME=${home}/.config;XDG_RUNTIME_DIR=${home};LC_ALL=C.UTF-8;QT_LOGGING_RULES=qt.qpa.*=false;TSAN_OPTIONS=ignore_noninstrumented_modules=1;LSAN_OPTIONS=suppressions=${TEST_LEAKS}:print_suppressions=0")
endfunction()

# datadisplay_add_test(NAME LABELS label... [SOURCES file...] [LIBRARIES target...] [TIMEOUT seconds] [COST seconds]
#                      [CORE|LOOPS])
# Builds NAME.cpp, a Qt Test executable, and runs it as above. Tests of a high COST are started first.
function(datadisplay_add_test name)
    cmake_parse_arguments(TEST "CORE;LOOPS" "TIMEOUT;COST" "LABELS;SOURCES;LIBRARIES" ${ARGN})
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 120)
    endif()
    add_executable(${name} ${name}.cpp ${TEST_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE vornak_warnings ${TEST_LIBRARIES})
    set(kind "")
    if(TEST_LOOPS)
        set(kind LOOPS)
    elseif(TEST_CORE)
        set(kind CORE)
    endif()
    vornak_compile_as_test(${name} ${kind})
    vornak_add_homed_test(${name} LABELS ${TEST_LABELS} TIMEOUT ${TEST_TIMEOUT}
        LEAKS "${PROJECT_SOURCE_DIR}/tests/lsan.supp" COMMAND "$<TARGET_FILE:${name}>")
    if(TEST_COST)
        set_tests_properties(${name} PROPERTIES COST ${TEST_COST})
    endif()
endfunction()
