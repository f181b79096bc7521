// compact_test.h - compact texts compiled to map texts, and what is said about them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_COMPACT_TEST_H
#define MEMDATA_TESTS_COMPACT_TEST_H

#include "BmmUtils/bmm_info.h"
#include "BmmUtils/compact_records.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "SystemUtils/SystemUtils.h"
#include "support/alerts.h"
#include "support/host_messages.h"
#include "support/parse.h"

#include <gtest/gtest.h>
#include <string>

namespace memdata::testing {

class Compact : public ::testing::Test {
protected:
    ~Compact() override {
        DeleteCmdStringOptions(&options);
        delete_scratchBMMInfo();
    }

    // Compiles one stretch of words into options; it shows as the file text.bmm.
    int compile(const std::string& text) {
        TextReader reader(text);
        const int status = parse_bmm_info(reader, reader.token(), &options);
        const int closed = reader.close();
        return status != 0 ? status : closed;
    }

    // The maps that stand in options, one behind the other; options is empty afterwards.
    std::string takeMaps() {
        std::string maps;
        for (unsigned long i = 0; FileSpecListGet(options.bmmFiles, i) != nullptr; ++i) {
            u64 size = 0;
            const char* data = FileSpecGetFileData(FileSpecListGet(options.bmmFiles, i), &size);
            if (data != nullptr) maps.append(data, size);
        }
        DeleteCmdStringOptions(&options);
        return maps;
    }

    // What a text that must compile without a word compiles to, joins included.
    std::string compiled(const std::string& text) {
        EXPECT_EQ(compile(text), 0) << text;
        EXPECT_EQ(finalize_bmm_info(&options), 0) << text;
        EXPECT_EQ(alerts.take() + messages.text(), "") << text;
        return takeMaps();
    }

    // "status: what was said", the blank lines around it left out, for one text by itself.
    std::string failure(const std::string& text) {
        const int status = compile(text);
        EXPECT_EQ(status == 0, scratchBMMInfo != nullptr) << text; // a failure forgets all
        delete_scratchBMMInfo();
        DeleteCmdStringOptions(&options);
        std::string said = alerts.take() + messages.text();
        messages.clear();
        const size_t first = said.find_first_not_of('\n');
        if (first == std::string::npos) return std::to_string(status) + ":";
        return std::to_string(status) + ": " + said.substr(first, said.find_last_not_of('\n') + 1 - first);
    }

private:
    struct LeakCheck {
        ~LeakCheck() { EXPECT_EQ(leakedBlockCount(), 0U); }
    };
    LeakCheck leaks_; // after the lifetime
    SystemResources resources_;

protected:
    CapturedAlerts alerts;
    CapturedMessages messages;
    CmdStringOptionsType options{};
};

} // namespace memdata::testing

#endif
