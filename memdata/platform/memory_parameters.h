// memory_parameters.h - the parameters that tune the library, on their way into a parameter manager.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_MEMORY_PARAMETERS_H
#define MEMDATA_PLATFORM_MEMORY_PARAMETERS_H

class HPAParamMgr;

namespace memdata {

// Registers the `memdata` group, then the `bramsync` group, each in the order of its table. A parameter that
// the manager knows already keeps its value: hosts may come and go. Runs among the static initialisers on
// the default host, and on every host that is set later.
void registerMemoryParameters(HPAParamMgr& manager);

} // namespace memdata

#endif
