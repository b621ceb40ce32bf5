// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "interface/iomanager.h"

/// One CALL of the command channel with a text as its value. It compiles with "%s", and must not with "%d".
int call(IOManager &io, char *answer, qint32 *count, double *numbers, bool *flag, const char *value)
{
    Q_UNUSED(answer)
    Q_UNUSED(count)
    Q_UNUSED(numbers)
    Q_UNUSED(flag)
    return io.CALL;
}
