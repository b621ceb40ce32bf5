// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <cstdarg>

namespace host {

/// The text that printf would write for \a format and \a values in the C locale, of any length; whatever the locale
/// of the process, "%f" writes a decimal point. Empty when the format is not valid.
QByteArray formatCommand(const char *format, va_list values) Q_ATTRIBUTE_FORMAT_PRINTF(1, 0);

} // namespace host
