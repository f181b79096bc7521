// run_resources.h - one lifetime of the engine in the tool.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_RUN_RESOURCES_H
#define LANEFILL_RUN_RESOURCES_H

#include "SystemUtils/lifetime.h"

namespace memdata {

// The process ends behind it, which saves a fifth of a large run: see expectProcessEnd. A parameter has each block taken
// from the system and released, for memory checkers.
class RunResources : public SystemResources {
public:
    RunResources();
};

// Tells the standalone host of that parameter.
void registerRunParameters();

} // namespace memdata

#endif
