// instance_names.h - names of instances in a text.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_INSTANCE_NAMES_H
#define MEMDATA_BMM_UTILS_INSTANCE_NAMES_H

#include "ParseUtils/streams.h"

// Reads an instance name behind the token, or from the token on with haveFirst. out: a managed string, the caller's.
int parse_instance_name(parse_stream* stream, token_element* token, bool haveFirst, bool* relative, char** out);

// Without one "/" at its end. Takes the path, a managed string, and gives another.
char* stripInstancePath(char* path);

#endif
