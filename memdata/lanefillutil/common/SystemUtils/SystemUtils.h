// SystemUtils.h - the floor of the engine: tracked memory, stacks and queues, start-up and shut-down, bit
// helpers, alerts and their messages. Each subject has a header of its own.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_H
#define MEMDATA_SYSTEM_UTILS_H

#include "SystemUtils/alert_location.h"
#include "SystemUtils/alert_registry.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/bits.h"
#include "SystemUtils/containers.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "SystemUtils/messages.h"

#endif
