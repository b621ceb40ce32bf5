// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

// UNDER_ADDRESS_SANITIZER, UNDER_THREAD_SANITIZER: 1 where this is compiled with the sanitizer, else 0. GCC says so by
// a macro, clang by a feature.
#if defined(__has_feature)
#define UNDER_ADDRESS_SANITIZER __has_feature(address_sanitizer)
#define UNDER_THREAD_SANITIZER __has_feature(thread_sanitizer)
#else
#if defined(__SANITIZE_ADDRESS__)
#define UNDER_ADDRESS_SANITIZER 1
#else
#define UNDER_ADDRESS_SANITIZER 0
#endif
#if defined(__SANITIZE_THREAD__)
#define UNDER_THREAD_SANITIZER 1
#else
#define UNDER_THREAD_SANITIZER 0
#endif
#endif
