// plain_values.h - runs of plain values and addresses, taken straight from the text.
// SPDX-License-Identifier: Apache-2.0
//
// Nearly all of a data file is values and addresses between blanks and line ends, for which the scanner would do no more than find
// their ends. They are packed where they stand; everything else, and every value that is an error, is left to the
// scanner, so that the outcome is the one that it would have alone.
#ifndef MEMDATA_MEM_UTILS_PLAIN_VALUES_H
#define MEMDATA_MEM_UTILS_PLAIN_VALUES_H

#include "MemUtils/data_block.h"
#include "ParseUtils/streams.h"

namespace memdata {

// What a list of values has had last. Commas separate values in vectors only, one between two.
enum class LastInList { kNO_LIST, kSTART, kVALUE, kCOMMA };

// Packs the plain values at the place of the stream into the last section, as many as follow; outside of lists it also
// opens the sections that addresses among them ask for, up to some megabytes at a time. Passes nothing where there is no
// section to pack into yet, or the text has to be read by the scanner. Status 0; 7; 15 the run is to end.
int passPlainValues(parse_stream* stream, DataStructureBlockType* block, LastInList* last);

} // namespace memdata

#endif
