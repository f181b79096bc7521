// XMLUtils.h - a small XML reader and writer over the tokenizer: elements and attributes, nothing else.
// SPDX-License-Identifier: Apache-2.0
//
//   element       elements with their attributes and children
//   document      a document: read from a file, written to one
//   entities      values as they stand between quotes
//   xml_symbols   the marks of XML as keywords
//   limits        what a document may not exceed
#ifndef MEMDATA_XML_UTILS_H
#define MEMDATA_XML_UTILS_H

#include "XMLUtils/document.h"
#include "XMLUtils/element.h"
#include "XMLUtils/limits.h"

#endif
