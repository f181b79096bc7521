// entities.h - attribute values as they stand between quotes.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_XML_UTILS_ENTITIES_H
#define MEMDATA_XML_UTILS_ENTITIES_H

#include <string>
#include <string_view>

namespace memdata {

// Appends a value so that any XML reader gets it back: &quot; &lt; &amp; and, for control characters (which a reader
// may turn into blanks), &#N;. Bytes from 0x80 on stand as they are: the document says UTF-8.
void appendXmlValue(std::string* to, std::string_view value);

// Replaces in place the entities lt, gt, amp, quot and apos and the references &#N; and &#xN;, which give the
// character's UTF-8 bytes. Anything else behind an ampersand stays as it is, the reference to character 0 too: files
// whose writer knew nothing of entities read as they were meant.
//   text    length bytes and a terminator
// The new length, never a longer one; the text is terminated there.
std::size_t replaceXmlEntities(char* text, std::size_t length);

} // namespace memdata

#endif
