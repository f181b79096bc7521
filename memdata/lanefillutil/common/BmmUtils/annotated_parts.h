// annotated_parts.h - what the files of the annotated-map writer share among themselves.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_ANNOTATED_PARTS_H
#define MEMDATA_BMM_UTILS_ANNOTATED_PARTS_H

#include "BmmUtils/annotated_text.h"
#include "BmmUtils/model/records.h"

#include <string>

namespace memdata {

std::string sizeText(u64 start, u64 end, bool words); // see create_space_size_string
void putTitle(AnnotatedText& text, unsigned indent, std::string_view title, bool twice = false);
void putRanges(AnnotatedText& text, const AddressSpaceDefType* space, unsigned indent);

} // namespace memdata

#endif
