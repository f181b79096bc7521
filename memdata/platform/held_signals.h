// held_signals.h - threads that no signal of the host reaches.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_HELD_SIGNALS_H
#define MEMDATA_PLATFORM_HELD_SIGNALS_H

#include <csignal>

namespace memdata {

// A thread inherits which signals are held back: one that is made while this lives leaves all of them to the threads of
// the host.
class AllSignalsHeld {
public:
    AllSignalsHeld() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~AllSignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    AllSignalsHeld& operator=(AllSignalsHeld&&) = delete; // neither copied nor moved

private:
    sigset_t before_;
};

} // namespace memdata

#endif
