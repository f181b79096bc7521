// names.h - the names in an address map: of maps and spaces, of instances and their paths.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_NAMES_H
#define MEMDATA_BMM_UTILS_NAMES_H

#include "ParseUtils/streams.h"

#include <string>

// An instance name: pieces joined by "/" and ".", as written. Words that are keywords elsewhere are names here. A
// bracketed number that touches a piece belongs to it: "gen[0].ram" is a name, the "[7:0]" behind it is not.
//   token      in: the first piece if haveFirst is set, else it is read, behind blanks and line ends; out: the token
//              behind the name
//   relative   out: the name began with "/" or "*/", which is not part of it
//   out        a managed string, the caller's; empty when a keyword that can be a name stands at once
// Status 0; 3 with an alert; 7; that of reading.
int parse_instance_name(parse_stream* stream, token_element* token, bool haveFirst, bool* relative, char** out);

// A name inside a design that is rooted at an instance: the root with "_" for "/", "_", and the name; a name that
// begins with that root already, or any name without a root, as it is. A managed string; null without memory.
char* create_rootedObject_name(const char* name, const char* root);

// The instance path that maps of an older tool leave to the name of the map or space: "kestrel_" and a digit end the
// name (root/name), or "_combined" does (root/cut/cut). A managed string; null for no root, for other names, and
// without memory.
char* createLegecyInstancePath(const char* root, const char* name);

// A copy without its trailing "/"; releases the managed string that it is given. Null for null and without memory.
char* stripInstancePath(char* path);

namespace memdata {

// parse_instance_name into a text that is replaced.
//   isPath  the name may end in a separator, as the paths of maps, spaces and instances may
int readInstanceName(
    parse_stream* stream, token_element* token, bool haveFirst, bool isPath, bool* relative, std::string* name);

// The name of a map or space, which token must be the first word of, with what touches it in brackets: "a[3].b".
//   expected  worded for an alert when token can not be a name
// Status as parse_instance_name.
int readObjectName(parse_stream* stream, token_element* token, const char* expected, std::string* name);

// The path of a map or space, under the root if there is one, without a trailing "/". A managed string in *path.
int readInstancePath(parse_stream* stream, token_element* token, bool haveFirst, const char* root, char** path);

// A device's name under a root: "root/name", unless it begins with the root's text.
void rootInstanceName(const char* root, std::string* name);

// Turns a word that was read while words were ignored into the keyword that it is, unless it can be a name.
void restoreKeyword(parse_stream* stream, token_element* token);

} // namespace memdata

#endif
