// compact_statements.cpp - the short statements of the compact language: memory types, instances, hierarchies.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/compact_parser.h"
#include "BmmUtils/names.h"
#include "BmmUtils/syntax.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/scanner.h"

using namespace memdata;

namespace {

constexpr u64 kMOST_BYTES = UINT64_MAX / 8; // sizes are kept in bits

constexpr const char* kMEMORY_NAME = "DEFINE_MEMORY_TYPE 'm' memory name";
constexpr const char* kMEMORY_SIZE = "DEFINE_MEMORY_TYPE 'm' memory size value";
constexpr const char* kMEMORY_WIDTH = "DEFINE_MEMORY_TYPE 'm' memory bus width value";
constexpr const char* kTEMPLATE_NAME = "ADDRESS_INSTANCE 'i' address template name";
constexpr const char* kINSTANCE_NAME = "ADDRESS_INSTANCE 'i' address instance name";
constexpr const char* kINSTANCE_BASE = "ADDRESS_INSTANCE 'i' instance base address value";

std::string hexadecimal(u64 value) {
    return formatted("0x%llx", value);
}

int read_size(const InfoReader& in, u64* size) {
    if (in.token->type == &kINTEGER_NUMBER && (in.token->value < 1 || in.token->value > kMOST_BYTES))
        return refuseSymbol(in.stream, in.token, kMEMORY_SIZE);
    return takeInteger(in, kMEMORY_SIZE, size);
}

int read_widths(const InfoReader& in, std::vector<u32>* widths, std::string* text) {
    while (in.token->type == &kINTEGER_NUMBER) {
        if (in.token->value < 1 || in.token->value > UINT32_MAX)
            return refuseSymbol(in.stream, in.token, kMEMORY_WIDTH);
        widths->push_back(static_cast<u32>(in.token->value));
        *text += std::string(" ") + std::to_string(widths->back());
        if (int status = nextWord(in); status != 0) return status;
    }
    return 0;
}

// Components name the type before the map that defines it is read. What exists already stays as it is: the map's
// reader says what it thinks of a second definition.
int make_known(const std::string& name, u64 size, const std::vector<u32>& widths) {
    if (get_MEMORY_type_from_name(nullptr, name.c_str()) != nullptr) return 0;
    const bool isMade = create_MEMORY_extended_type(name.c_str(), kUSER_MEMORY_CLASS, nullptr, size, widths.data(),
                            static_cast<u32>(widths.size())) != nullptr;
    return isMade ? 0 : 7;
}

// A "/" that no name touches stands for no path.
bool is_lone_slash(const InfoReader& in) {
    if (in.token->type != &kDIVIDE) return false;
    const token_element* next = look_ahead_stream_tokens(in.stream, 0);
    return next == nullptr || next->type == &kWHITESPACE_TOKEN || next->type == &kEND_OF_LINE ||
           next->type == &kEND_OF_FILE;
}

int read_hierarchy_path(const InfoReader& in, std::string* path) {
    if (is_lone_slash(in)) {
        *path = "/";
        return nextWord(in);
    }
    bool isRelative = false;
    if (int status = readInstanceName(in.stream, in.token, true, true, &isRelative, path); status != 0) return status;
    collect_MF_info(&in.scratch->commandText, path->c_str(), " ");
    if (!path->ends_with('/')) *path += '/';
    return 0;
}

} // namespace

int parse_memory_type_info(const InfoReader& in) {
    std::string name;
    u64 size = 0;
    std::vector<u32> widths;
    std::string widthsText;
    int status = nextWord(in);
    if (status == 0) status = takeIdentifier(in, kMEMORY_NAME, &name);
    if (status == 0) status = read_size(in, &size);
    if (status == 0) status = read_widths(in, &widths, &widthsText);
    if (status != 0) return status;
    const std::string text = "DEFINE_MEMORY_TYPE " + name + " [" + hexadecimal(size) + "]" + widthsText + ";\n\n";
    status = keepBytes(in, text.size());
    if (status == 0) status = make_known(name, size, widths);
    if (status == 0) in.scratch->text += text;
    return status;
}

int parse_addressSpace_Instance_info(const InfoReader& in) {
    std::string original;
    std::string name;
    std::string path;
    u64 base = 0;
    bool isRelative = false;
    int status = nextWord(in);
    if (status == 0) status = takeIdentifier(in, kTEMPLATE_NAME, &original);
    if (status == 0) status = takeIdentifier(in, kINSTANCE_NAME, &name);
    if (status == 0) status = checkInteger(in, kINSTANCE_BASE, &base);
    if (status == 0) status = takeInstanceName(in, true, &isRelative, &path);
    if (status != 0) return status;
    const std::string text = "ADDRESS_INSTANCE " + original + " " + name + " [" + hexadecimal(base) + "] " +
                             (isRelative ? "*/" : "") + path + ";\n\n";
    status = keepBytes(in, text.size());
    if (status == 0) in.scratch->text += text;
    return status;
}

int parse_hierarchy_info(const InfoReader& in) {
    // Both names are read while words are names, so that their first pieces can be any word.
    KeywordOverlay words(in.stream, &instance_path_token_set);
    if (words.status() != 0) return words.status();
    words.ignoreWords();
    bool isRelative = false;
    std::string name;
    std::string path;
    int status = takeInstanceName(in, false, &isRelative, &name);
    if (status == 0) status = read_hierarchy_path(in, &path);
    if (status == 0) status = words.close();
    if (status != 0) return status;
    in.scratch->currentSpaceName = name;
    in.scratch->hierarchyPath = path;
    lookUpAgain(in.stream, in.token);
    return 0;
}
