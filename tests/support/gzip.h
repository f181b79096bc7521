// gzip.h - packed contents for tests.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_GZIP_H
#define MEMDATA_TESTS_SUPPORT_GZIP_H

#include <string>
#include <string_view>

namespace memdata::testing {

// As a gzip file holds it.
std::string gzipped(std::string_view contents);

} // namespace memdata::testing

#endif
