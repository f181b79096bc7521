// alert_levels.cpp - what an alert shows of a parse stream: its levels, from the token outward.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/alert_location.h"

// There is no kind of parse stream yet, so none has a level.
bool memdata::alertLevel(const parse_stream*, const token_element*, u32, AlertLevel*) {
    return false;
}
