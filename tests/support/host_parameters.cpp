// host_parameters.cpp - a parameter of the standalone host changed for the length of a block.
// SPDX-License-Identifier: Apache-2.0
#include "support/host_parameters.h"

#include "hosts/standalone/standalone_host.h"

namespace memdata::testing {

ScopedParameter::ScopedParameter(const std::string& name, bool value)
    : name_(name), oldValue_(standaloneHost().parameters().getValueAsBool(name)) {
    standaloneHost().parameters().setValue(name_, value);
}

ScopedParameter::~ScopedParameter() {
    standaloneHost().parameters().setValue(name_, oldValue_);
}

} // namespace memdata::testing
