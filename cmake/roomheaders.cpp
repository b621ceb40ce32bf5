// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
//
// Empty but for the headers that are compiled with it, once for all rooms.
