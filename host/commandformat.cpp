// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/commandformat.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace host {

namespace {

/// Puts this thread into the C locale for the scope, and leaves the locale of the others alone.
class CLocaleScope {
public:
    CLocaleScope()
        : previous(uselocale(cLocale()))
    {
    }
    ~CLocaleScope() { uselocale(previous); }

private:
    Q_DISABLE_COPY(CLocaleScope)

    static locale_t cLocale()
    {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

    locale_t previous;
};

} // namespace

QByteArray formatCommand(const char *format, va_list values)
{
    const CLocaleScope scope;
    char *buffer = nullptr;
    const int length = vasprintf(&buffer, format, values);
    if (length < 0)
        return {}; // the buffer is not one that could be freed
    const std::unique_ptr<char, decltype(&std::free)> owner(buffer, &std::free);
    return {buffer, length};
}

} // namespace host
