// driver.h - which of the engine's jobs an option record asks for, and their order.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_DRIVER_H
#define MEMDATA_LANEFILL_CORE_DRIVER_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/records/option_record.h"

// Carries out what the record asks for. A record that asks for nothing succeeds. After a mapping was opened,
// workflowOps is released on every way out. Status: 0; else the status of the step that failed, which has
// raised its alert.
int execute_command_line_options(CmdStringOptionsType* options);

// Reads all address maps of the record, in order. *mapping: the caller's, for close_bmm_addressMapping; null on
// a failure, and when a dump needs none. Learns the device from the bit file's header when none was named.
// Status: 0; 1 no map was given; 7 without memory; else the reader's.
int open_bmm_addressMapping(CmdStringOptionsType* options, AddressMappingType** mapping);

// Releases the mapping with its lane buffers; null is allowed.
void close_bmm_addressMapping(AddressMappingType** mapping);

#endif
