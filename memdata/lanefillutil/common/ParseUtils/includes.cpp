// includes.cpp - #include, and lists of the folders that files are looked for in.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"
#include "ParseUtils/file_path.h"
#include "ParseUtils/include_paths.h"
#include "platform/HEXAll.h"

#include <cstring>
#include <vector>

using namespace memdata;

namespace {

constexpr int kEMPTY_TEXT = 17; // a file without any text is no error

// A ":" behind a path was read as one that can end a volume.
constexpr const token_type* kPATH_LIST_MARKS[] = {&kSEMICOLON, &kCOLON, &kVOLUME_SEPARATOR_TOKEN, nullptr};

int close_context(parse_stream* context) {
    return close_parse_stream(&context);
}
using ContextOwner = Tracked<parse_stream, close_context>;

bool is_bracket(const token_type* type, const token_type& bracket) {
    return type == &kSTRING_QUOTE || type == &bracket;
}

// Reads the name between its brackets.
int read_name(parse_stream* stream, token_element* token, fileSpecType** spec) {
    const DirectiveModes line(
        stream, kLINE_MODES | kMODE_PLAIN_QUOTES, kMODE_WHITESPACE | kMODE_COMMENTS | kMODE_NO_MACROS);
    if (int status = internal_get_next_token(stream, token); status != 0) return status;
    const token_type* leading = token->type;
    if (!is_bracket(leading, kLESS_THAN))
        return expectedToken(stream, token, "leading file name bracket character, '\"' or '<'");
    if (int status = parse_file_pathname(stream, token, true, false, true, spec); status != 0) return status;
    if (!is_bracket(token->type, kGREATER_THAN))
        return expectedToken(stream, token, "trailing file name bracket character, '\"' or '>'");
    if ((leading == &kSTRING_QUOTE) != (token->type == &kSTRING_QUOTE))
        return refuseToken(stream, token, "trailing file name bracket character is different then leading");
    return 0;
}

int add_path(const fileSpecType* spec, std::vector<OwnedString>* paths) {
    const size_t length = std::strlen(spec->fullName);
    const bool isComplete = length > 0 && spec->fullName[length - 1] == '/';
    paths->emplace_back(isComplete ? StrDup(spec->fullName) : StrCat(spec->fullName, "/"));
    return paths->back() == nullptr ? 7 : 0;
}

int read_paths(parse_stream* stream, token_element* token, std::vector<OwnedString>* paths) {
    do {
        OwnedFileSpec spec;
        if (int status = parse_file_pathname(stream, token, true, false, true, spec.out()); status != 0) return status;
        if (int status = add_path(spec.get(), paths); status != 0) return status;
    } while (One_Of_Tokens(token->type, kPATH_LIST_MARKS));
    return 0;
}

// All at once: a list that grows one by one is copied each time.
int extend_list(StrList* list, std::vector<OwnedString>* paths) {
    if (paths->empty()) return 0;
    const unsigned long count = StrListCount(*list);
    StrList longer = nullptr;
    try {
        longer = StrListNew(count + paths->size());
    } catch (const HEXInternalException&) {
        return 7;
    }
    for (unsigned long i = 0; i < count; ++i) {
        StrListSet(longer, i, StrListGet(*list, i));
        StrListSet(*list, i, nullptr);
    }
    for (size_t i = 0; i < paths->size(); ++i) StrListSet(longer, count + i, (*paths)[i].release());
    StrListDelete(*list);
    *list = longer;
    return 0;
}

} // namespace

int do_include_op(parse_stream* stream, token_element* token) {
    parse_stream* context = activeContext(stream);
    if (!isTextLive(stream)) return skipLine(context, token);
    OwnedFileSpec spec;
    if (int status = read_name(stream, token, spec.out()); status != 0) return status;
    // Opened while the name is the last that was read: that is where an alert points.
    ContextOwner included;
    const int opened = open_parse_DiskFile(spec.get(), "+h", nullptr, nullptr, stream, included.out());
    if (opened != 0 && opened != kEMPTY_TEXT) return opened;
    if (int status = skipLine(context, token); status != 0) return status;
    included->contextState |= kCONTEXT_AUTO_POP;
    // Those of the including text, not of a macro that the name may have come from.
    included->parseModes = context->parseModes & ~kMODE_COMMENTS;
    if (int status = push_parse_context(included.get()); status != 0) return status;
    included.release(); // the stack has it
    return 0;
}

int compile_file_paths(parse_stream* stream, token_element* token, StrList* out) {
    std::vector<OwnedString> paths;
    const int status = read_paths(stream, token, &paths);
    // What was read before a failure is kept.
    if (!paths.empty() && paths.back() == nullptr) paths.pop_back();
    const int extended = extend_list(out, &paths);
    return status != 0 ? status : extended;
}
