// run_resources.h - one lifetime of the engine in the tool.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_RUN_RESOURCES_H
#define LANEFILL_RUN_RESOURCES_H

#include "SystemUtils/lifetime.h"

namespace memdata {

// The process ends behind it: records are left to the system, which saves a tenth of a large run. A parameter has them
// released one by one, for leak checkers.
class RunResources : public SystemResources {
public:
    RunResources();
};

// Tells the standalone host of that parameter.
void registerRunParameters();

} // namespace memdata

#endif
