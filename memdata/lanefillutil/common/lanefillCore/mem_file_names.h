// mem_file_names.h - under which name each lane's MEM file goes.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_MEM_FILE_NAMES_H
#define MEMDATA_LANEFILL_CORE_MEM_FILE_NAMES_H

#include "BmmUtils/model/records.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace memdata {

// The MEM files that a run has written, whatever the names that they are reached by.
class WrittenMemFiles {
public:
    // Whether an output for this lane may have the name. Status: 0; 1 with an alert: the run has written a file of
    // another lane there.
    int allows(const char* name, const BitLaneType* lane) const;
    // The lane's file stands under the name now.
    void add(const char* name, const BitLaneType* lane);

private:
    using Identity = std::pair<u64, u64>; // device and number of a file
    std::map<Identity, const BitLaneType*> files_;

    static std::optional<Identity> identityOf_(const char* name);
};

// Gives out the default names of lanes' files: "space_0.mem", "space_ecc_0.mem", no name twice.
class DefaultMemNames {
public:
    std::string next(const char* space, bool isEcc, u64 index);

private:
    std::set<std::string> given_;
};

// The name that the map gives the lane's file, INIT ahead of OUTPUT ahead of INPUT; null when it gives none.
const char* namedMemFile(const BitLaneType* lane);

// The name in the folder; an absolute one stands for itself.
std::string nameInFolder(const std::string& folder, const std::string& name);

} // namespace memdata

#endif
