// new_faults.h - the n-th operator new of this program fails. Linked into this program alone: it replaces the operator.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_NEW_FAULTS_H
#define MEMDATA_TESTS_NEW_FAULTS_H

#include "platform/BasicTypes.h"

namespace memdata::testing {

// The n-th operator new from now throws std::bad_alloc (1 is the next one, 0 switches the fault off). Counts down by
// itself.
void failNew(u64 n);
u64 newCount(); // that this process has asked for

} // namespace memdata::testing

#endif
