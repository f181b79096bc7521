// MemUtils.h - MEM, COE and MIF texts as data files.
// SPDX-License-Identifier: Apache-2.0
//
// Lowest first:
//   keywords       the words of these texts
//   data_block     what was read: a pool of bytes, sections that lie in it
//   text_values    the digits of a value become bits
//   plain_values   runs of plain values and addresses, read without the scanner
//   parser         the grammar
//   mem_data_file  the texts behind the interface of data files
#ifndef MEMDATA_MEM_UTILS_H
#define MEMDATA_MEM_UTILS_H

#include "MemUtils/data_block.h"
#include "MemUtils/keywords.h"
#include "MemUtils/mem_data_file.h"
#include "MemUtils/parser.h"
#include "MemUtils/text_values.h"

#endif
