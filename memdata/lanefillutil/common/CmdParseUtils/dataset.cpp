// dataset.cpp - dataset files: XML documents that name a data file for each address space.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/option_reader.h"

namespace memdata {

int readDataset(OptionReader*, fileSpecType*) {
    return PrintError(kERROR_MESSAGE_STRING, 3, "This build cannot read dataset files yet.");
}

} // namespace memdata
