// host_messages.h - catches what the library tells its host, for tests.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_HOST_MESSAGES_H
#define MEMDATA_TESTS_SUPPORT_HOST_MESSAGES_H

#include "platform/BasicTypes.h"

#include <memory>
#include <string>
#include <vector>

namespace memdata::testing {

struct CapturedMessage {
    std::string group;
    u32 severity = 0; // as sent
    u32 area = 0;     // 28 of "@28-207@"
    u32 number = 0;   // 207 of "@28-207@"
    std::string format;
    std::vector<std::string> arguments;
};

// From construction to destruction messages end here; parameters and environment stay those of the host that
// was in force, which is in force again afterwards. Blocks may be nested.
class CapturedMessages {
public:
    CapturedMessages();
    ~CapturedMessages();
    CapturedMessages& operator=(CapturedMessages&&) = delete; // neither copied nor moved

    const std::vector<CapturedMessage>& messages() const;

    // One line a message: "SEVERITY 28-207 first, second\n". A severity that is no mask shows as its number.
    std::string text() const;
    // The same messages as the standalone host words them, one line each.
    std::string lines() const;
    void clear();

private:
    class Sink;
    std::unique_ptr<Sink> sink_;
};

} // namespace memdata::testing

#endif
