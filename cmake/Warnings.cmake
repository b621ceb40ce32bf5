# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT

# Link every target of ours against this one: the project's warnings, as errors when VORNAK_WERROR is on.
option(VORNAK_WERROR "Treat warnings as errors" OFF)

add_library(vornak_warnings INTERFACE)
target_compile_options(vornak_warnings INTERFACE
    -Wall -Wextra -Wpedantic $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow> -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wformat=2 -Wnull-dereference
    # What Qt asks for and clang alone complains of: QSKIP("..."), and Qt::CTRL | Qt::Key_E.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
    $<$<CXX_COMPILER_ID:Clang>:-Wno-enum-enum-conversion>
    $<$<BOOL:${VORNAK_WERROR}>:-Werror>)
target_compile_definitions(vornak_warnings INTERFACE
    QT_DEPRECATED_WARNINGS QT_DISABLE_DEPRECATED_BEFORE=0x050F00
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_USE_QSTRINGBUILDER)
