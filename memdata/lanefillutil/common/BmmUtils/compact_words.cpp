// compact_words.cpp - the single words of the compact language.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/compact_records.h"
#include "BmmUtils/names.h"
#include "BmmUtils/syntax.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

namespace memdata {

int nextWord(const InfoReader& in) {
    collect_MF_info(&in.scratch->commandText, in.token->text, " ");
    return get_next_token(in.stream, in.token);
}

int takeIdentifier(const InfoReader& in, const char* expected, std::string* word) {
    if (in.token->type != &kIDENTIFIER_TOKEN) return refuseSymbol(in.stream, in.token, expected);
    word->assign(in.token->text, in.token->length);
    return nextWord(in);
}

int checkInteger(const InfoReader& in, const char* expected, u64* value) {
    if (in.token->type != &kINTEGER_NUMBER || in.token->value < 0) return refuseSymbol(in.stream, in.token, expected);
    *value = unsignedFromValue(in.token->value);
    return 0;
}

int takeInteger(const InfoReader& in, const char* expected, u64* value) {
    const int status = checkInteger(in, expected, value);
    return status == 0 ? nextWord(in) : status;
}

int takeInstanceName(const InfoReader& in, bool isPath, bool* relative, std::string* name) {
    std::string* report = &in.scratch->commandText;
    collect_MF_info(report, in.token->text, " ");
    const int status = readInstanceName(in.stream, in.token, false, isPath, relative, name);
    if (status == 0) collect_MF_info(report, name->c_str(), *relative ? " */" : " ");
    return status;
}

int keepBytes(const InfoReader& in, u64 count) {
    u64& kept = in.scratch->keptBytes;
    if (count <= kMAX_COMPACT_BYTES - kept) {
        kept += count;
        return 0;
    }
    return PrintErrorLocation(in.stream, kERROR_COMPACT_MAP_TOO_LARGE, kSYNTAX_STATUS, in.token, kMAX_COMPACT_BYTES);
}

} // namespace memdata
