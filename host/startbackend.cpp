// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/startbackend.h"

#include "host/options.h"
#include "host/sourcesettings.h"

namespace host {

StartBackend startBackend(const HostOptions &options)
{
    if (options.savesAndQuits())
        return {options.choice, makeBackend(options.choice, options.settings)};
    const std::optional<BackendChoice> last = options.isSourceNamed ? std::nullopt : sourcesettings::lastBackend();
    if (!last)
        return {options.choice, firstBackend(options.choice, options.settings)};
    BackendResult made = firstBackend(*last, options.settings);
    if (made.backend)
        return {*last, made};
    const QString reason = made.error;
    made = firstBackend(options.choice, options.settings);
    made.warnings.prepend(reason);
    return {options.choice, made};
}

} // namespace host
