// absent_modules.h - operations of modules that this build does not have yet, under their own names.
// SPDX-License-Identifier: Apache-2.0
//
// Each reports by an alert that the build lacks it and gives status 3: a run that needs one fails and says so.
// A module that arrives takes its lines out of here.
#ifndef MEMDATA_LANEFILL_CORE_ABSENT_MODULES_H
#define MEMDATA_LANEFILL_CORE_ABSENT_MODULES_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/records/option_record.h"

int DoELFDumps(CmdStringOptionsType* options);

#endif
