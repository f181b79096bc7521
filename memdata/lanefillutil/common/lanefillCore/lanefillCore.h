// lanefillCore.h - the engine's entry: a filled option record is carried out.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_H
#define MEMDATA_LANEFILL_CORE_H

#include "lanefillCore/auto_data.h"
#include "lanefillCore/data_files.h"
#include "lanefillCore/driver.h"
#include "lanefillCore/elf_dumps.h"
#include "lanefillCore/init_strings.h"
#include "lanefillCore/mem_writer.h"
#include "lanefillCore/option_run.h"
#include "lanefillCore/output_files.h"
#include "lanefillCore/segments.h"

#endif
