// host.cpp - which host is in force.
// SPDX-License-Identifier: Apache-2.0
#include "platform/host.h"

#include "platform/memory_parameters.h"

#include <new>
#include <utility>

namespace {

// Built on first use, because a static initialiser of any file may ask for the host; from then on the
// library's parameters are registered.
memdata::Host*& hostInForce() {
    static memdata::Host* host = [] {
        memdata::Host& first = memdata::defaultHost();
        memdata::registerMemoryParameters(first.parameters());
        return &first;
    }();
    return host;
}

// Loading the library registers its parameters, also when nobody asks for the host before main. Without memory for them
// the first use tries again, where a caller can be told.
[[maybe_unused]] const memdata::Host* const gHostAtLoad = []() -> const memdata::Host* {
    try {
        return hostInForce();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}();

} // namespace

namespace memdata {

Host& host() {
    return *hostInForce();
}

Host* setHost(Host* newcomer) {
    if (newcomer == nullptr) newcomer = &defaultHost();
    registerMemoryParameters(newcomer->parameters());
    return std::exchange(hostInForce(), newcomer);
}

} // namespace memdata
