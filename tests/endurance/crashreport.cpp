// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/crashreport.h"

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>

#include <dlfcn.h>
#include <unistd.h>
#include <unwind.h>

namespace {

using Place = CrashReport::Place;

CrashReport *crash = nullptr;

struct Frame {
    std::uintptr_t address = 0;
    bool wasInterrupted = false; ///< by a signal
    bool endsException = false; ///< an exception that comes by here terminates the process
    Dl_info info{};
    Place place = CrashReport::Elsewhere;
};

struct Stack {
    std::array<Frame, 200> frames;
    std::size_t size = 0;
};

Place placeOf(const Dl_info &info)
{
    Dl_info own{};
    ::dladdr(reinterpret_cast<const void *>(&reportCrashTo), &own);
    if (info.dli_fbase == own.dli_fbase)
        return CrashReport::InOurCode;
    const bool isQt = info.dli_fname && (std::strstr(info.dli_fname, "libQt5") || std::strstr(info.dli_fname, "libq"));
    return isQt ? CrashReport::InQt : CrashReport::Elsewhere;
}

std::uintptr_t readUleb(const unsigned char *&place)
{
    std::uintptr_t value = 0;
    unsigned shift = 0;
    do {
        value |= static_cast<std::uintptr_t>(*place & 0x7FU) << shift;
        shift += 7;
    } while ((*place++ & 0x80U) != 0);
    return value;
}

/// Whether the function of \a context has a table of what to do with exceptions, in which its present place is missing:
/// so the compiler writes down "noexcept".
bool endsException(_Unwind_Context *context, std::uintptr_t address)
{
    const auto *table = reinterpret_cast<const unsigned char *>(_Unwind_GetLanguageSpecificData(context));
    constexpr unsigned char omitted = 0xFF;
    constexpr unsigned char uleb = 0x01;
    if (!table || *table++ != omitted)
        return false;
    if (*table++ != omitted)
        readUleb(table);
    if (*table++ != uleb)
        return false;
    const std::uintptr_t length = readUleb(table);
    const std::uintptr_t place = address - _Unwind_GetRegionStart(context);
    for (const unsigned char *const end = table + length; table < end;) {
        const std::uintptr_t start = readUleb(table);
        const std::uintptr_t size = readUleb(table);
        readUleb(table); // landing pad
        readUleb(table); // action
        if (place >= start && place < start + size)
            return false;
    }
    return true;
}

/// Whether it is a destructor, which lets no exception pass either: one that comes out of Qt's all the same ends the
/// process at its caller, or not, as the compiler has laid out the caller's table.
bool isDestructor(const Frame &frame)
{
    const char *const name = frame.info.dli_sname ? frame.info.dli_sname : "";
    const std::size_t length = std::strlen(name);
    const char *const end = name + (length > 4 ? length - 4 : length);
    return end[0] == 'D' && std::strcmp(end + 2, "Ev") == 0;
}

_Unwind_Reason_Code addFrame(_Unwind_Context *context, void *stack)
{
    auto &all = *static_cast<Stack *>(stack);
    if (all.size == all.frames.size())
        return _URC_END_OF_STACK;
    Frame &frame = all.frames[all.size++];
    int isExact = 0;
    frame.address = _Unwind_GetIPInfo(context, &isExact);
    frame.wasInterrupted = isExact != 0;
    if (!frame.wasInterrupted)
        --frame.address; // in the call, not behind it
    frame.endsException = endsException(context, frame.address);
    ::dladdr(reinterpret_cast<const void *>(frame.address), &frame.info);
    frame.place = placeOf(frame.info);
    return _URC_NO_REASON;
}

void describe(const Frame &frame, char *text, std::size_t size)
{
    const char *const file = frame.info.dli_fname ? std::strrchr(frame.info.dli_fname, '/') : nullptr;
    if (frame.info.dli_sname)
        std::snprintf(text, size, "%s", frame.info.dli_sname);
    else
        std::snprintf(text, size, "%s+0x%zx", file ? file + 1 : "?",
                      static_cast<std::size_t>(frame.address - reinterpret_cast<std::uintptr_t>(frame.info.dli_fbase)));
}

/// Of the frames from \a first on, reports the one that \a isGuilty.
template<typename Condition>
[[noreturn]] void report(const char *what, const Stack &stack, std::size_t first, Condition isGuilty)
{
    std::size_t guilty = first;
    while (guilty < stack.size && !isGuilty(stack.frames[guilty]))
        ++guilty;
    std::size_t ours = guilty;
    while (ours < stack.size && stack.frames[ours].place != CrashReport::InOurCode)
        ++ours;
    crash->place = guilty < stack.size ? stack.frames[guilty].place : CrashReport::Elsewhere;
    std::array<char, 120> where{};
    std::array<char, 120> caller{};
    if (guilty < stack.size)
        describe(stack.frames[guilty], where.data(), where.size());
    if (ours < stack.size)
        describe(stack.frames[ours], caller.data(), caller.size());
    std::snprintf(crash->text.data(), crash->text.size(), "%s %s %s", what, where.data(), caller.data());
    ::_exit(1);
}

[[noreturn]] void onTerminate()
{
    static Stack stack;
    _Unwind_Backtrace(addFrame, &stack);
    std::size_t first = 0;
    while (first < stack.size && stack.frames[first].place == CrashReport::InOurCode)
        ++first; // this function
    report("exception", stack, first, [](const Frame &frame) {
        return (frame.endsException || isDestructor(frame)) && frame.place != CrashReport::Elsewhere;
    });
}

void onSignal(int signal)
{
    static Stack stack;
    _Unwind_Backtrace(addFrame, &stack);
    std::size_t first = 0;
    while (first < stack.size && !stack.frames[first].wasInterrupted)
        ++first; // this function
    report(::strsignal(signal), stack, first, [](const Frame &frame) { return frame.place != CrashReport::Elsewhere; });
}

} // namespace

void reportCrashTo(CrashReport &report)
{
    crash = &report;
    std::set_terminate(onTerminate);
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGTRAP})
        std::signal(signal, onSignal);
}
