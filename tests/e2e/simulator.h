// simulator.h - Icarus Verilog for tests; they are skipped by name where it is not installed.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_E2E_SIMULATOR_H
#define MEMDATA_TESTS_E2E_SIMULATOR_H

#include "support/temporary_folder.h"

#include <string>
#include <string_view>
#include <vector>

namespace memdata::testing {

bool hasSimulator();

// The lines that a Verilog program prints, without remarks on files that fill a part of a memory. Any other remark, and
// a program that does not run, is a failure of the test. Needs hasSimulator().
std::vector<std::string> simulate(const TemporaryFolder& folder, std::string_view program);

} // namespace memdata::testing

#endif
