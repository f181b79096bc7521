// standalone_host.h - the host that lets the library run alone.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_HOSTS_STANDALONE_STANDALONE_HOST_H
#define MEMDATA_HOSTS_STANDALONE_STANDALONE_HOST_H

#include "hosts/standalone/parameters.h"
#include "hosts/standalone/progress_display.h"
#include "platform/host.h"

namespace memdata {

// Messages go to standard error as "SEVERITY: [memdata 28-NNN] text", parameters live in a table of the
// process, and the environment texts are ours. Environment variables: TMPDIR only.
class StandaloneHost : public Host {
public:
    void message(const HostMessage& message) override;
    StandaloneParameters& parameters() override { return parameters_; }
    void progress(std::string_view stage, int percent) override;
    void beforeOutput() override;
    std::string fullProduct() const override;
    std::string fullBuild() const override;
    std::string firstNotice() const override;
    std::string secondNotice() const override;
    std::string date() const override;
    std::string temporaryDirectory() const override;

    // Shows progress from now on; null for none. The caller keeps it alive as long. Gives the one before it.
    ProgressDisplay* setProgressDisplay(ProgressDisplay* display);

private:
    StandaloneParameters parameters_;
    ProgressDisplay* display_ = nullptr;
};

// The one that serves as the default host.
StandaloneHost& standaloneHost();

} // namespace memdata

#endif
