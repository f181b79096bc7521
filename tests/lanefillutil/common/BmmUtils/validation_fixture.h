// validation_fixture.h - spaces as a reader hands them to the checks, and what the checks say about them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_VALIDATION_FIXTURE_H
#define MEMDATA_TESTS_VALIDATION_FIXTURE_H

#include "BmmUtils/validation.h"
#include "support/alerts.h"
#include "support/map_builder.h"
#include "support/map_dump.h"

#include <gtest/gtest.h>

namespace memdata::testing {

class ValidationTest : public ::testing::Test {
protected:
    // A space "ram" of one range, filled and not finished.
    AddressSpaceDefType* ram(u64 start, u64 end, const std::string& memory, const std::vector<std::string>& blocks) {
        return map.space("ram", start, memory, blocks, {.endAddress = end, .finished = false});
    }
    AddressSpaceDefType* words(u64 start, u64 end, const std::string& memory, const std::vector<std::string>& blocks) {
        return map.space("ram", start, memory, blocks, {.wordAddressing = true, .endAddress = end, .finished = false});
    }
    // "STATUS: alerts", the alerts without the blank lines around them, a newline after each.
    std::string finish(AddressSpaceDefType* space) { return said(finish_addressSpace_data(space)); }
    std::string said(int status) {
        std::string text = std::to_string(status) + ":";
        const std::string alerts = alerts_.take();
        for (size_t at = 0; at < alerts.size();) {
            const size_t begin = alerts.find_first_not_of('\n', at);
            if (begin == alerts.npos) break;
            const size_t end = std::min(alerts.find("\n\n", begin), alerts.size());
            text += " " + alerts.substr(begin, end - begin) + "\n";
            at = end;
        }
        return text;
    }
    // What messages print for the widths of the first range's memory.
    void printWidths(AddressSpaceDefType* space, const char* text) {
        type_ = *space->ranges->memory->type;
        type_.widthsText = text;
        memory_ = *space->ranges->memory;
        memory_.type = &type_;
        space->ranges->memory = &memory_;
    }

    TestMap map;

private:
    MEMORYType type_{};
    MEMORYLocType memory_{};
    CapturedAlerts alerts_;
};

} // namespace memdata::testing

#endif
