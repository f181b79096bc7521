// host_parameters.h - a parameter of the standalone host changed for the length of a block, for tests.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_HOST_PARAMETERS_H
#define MEMDATA_TESTS_SUPPORT_HOST_PARAMETERS_H

#include <string>

namespace memdata::testing {

// The old value is back afterwards. An unknown name throws HEXAlgException.
class ScopedParameter {
public:
    ScopedParameter(const std::string& name, bool value);
    ~ScopedParameter();
    ScopedParameter& operator=(ScopedParameter&&) = delete; // neither copied nor moved

private:
    std::string name_;
    bool oldValue_;
};

} // namespace memdata::testing

#endif
