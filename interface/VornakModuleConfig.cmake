# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT

# Gives Vornak::ModuleInterface, the headers by which hosts and modules know each other.
include(CMakeFindDependencyMacro)
find_dependency(Qt5 5.15 COMPONENTS Core Widgets)
include("${CMAKE_CURRENT_LIST_DIR}/VornakModuleTargets.cmake")
