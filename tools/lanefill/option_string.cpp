// option_string.cpp - see option_string.h.
// SPDX-License-Identifier: Apache-2.0
#include "option_string.h"

#include <algorithm>
#include <string_view>

namespace memdata {
namespace {

// What stands behind a switch.
enum class Operands {
    kRAW,         // option text
    kFILE,        // a file, then option text
    kLETTER_FILE, // letters, a file, then option text
    kPATHS,       // a list of folders, which may touch the switch, then option text
    kXML,         // a text in quotes, then option text
};

struct SwitchOperands {
    std::string_view name;
    Operands operands;
};

constexpr SwitchOperands kSWITCHES[] = {
    {"-bd", Operands::kFILE},
    {"-md", Operands::kFILE},
    {"-bx", Operands::kFILE},
    {"-bm", Operands::kFILE},
    {"-mm", Operands::kFILE},
    {"-bt", Operands::kFILE},
    {"-log", Operands::kFILE},
    {"-dataset", Operands::kFILE},
    {"-f", Operands::kFILE},
    {"-image", Operands::kFILE},
    {"-pp", Operands::kFILE},
    {"-msgc", Operands::kFILE},
    {"-msg", Operands::kFILE},
    {"-o", Operands::kLETTER_FILE},
    {"-I", Operands::kPATHS},
    {"-mx", Operands::kXML},
};

// All others, whose operands are words of the option language.
constexpr std::string_view kWORD_SWITCHES[] = {"-bf", "-mf", "-d", "-fill", "-h", "-bytewidth", "-i", "-a", "-pg", "-p",
    "-q", "-u", "-workflow", "-w", "-D", "-encrypt", "-split"};

const SwitchOperands* operandsOf(std::string_view word) {
    const auto* found = std::ranges::find(kSWITCHES, word, &SwitchOperands::name);
    return found == std::end(kSWITCHES) ? nullptr : found;
}

bool isSwitch(std::string_view word) {
    return operandsOf(word) != nullptr || std::ranges::count(kWORD_SWITCHES, word) != 0;
}

bool looksLikeSwitch(std::string_view word) {
    return isSwitch(word) || (word.size() > 2 && (word.starts_with("-I") || word.starts_with("-D")));
}

// A file name takes its characters as they stand: quotes are changed around a quote. Pieces that touch are one name.
std::string quotedName(std::string_view name) {
    std::string quoted;
    char quote = '\0';
    for (char c : name) {
        const char wanted = c == '"' ? '\'' : c == '\'' ? '"' : quote == '\0' ? '"' : quote;
        if (wanted != quote) {
            if (quote != '\0') quoted += quote;
            quoted += quote = wanted;
        }
        quoted += c;
    }
    if (quote == '\0') return "\"\"";
    return quoted + quote;
}

// A string of the option language, with escapes.
std::string quotedText(std::string_view text) {
    std::string quoted = "\"";
    for (char c : text) {
        switch (c) {
        case '"':
        case '\\':
            quoted += '\\';
            quoted += c;
            break;
        case '\n':
            quoted += "\\n";
            break;
        case '\r':
            quoted += "\\r";
            break;
        default:
            quoted += c;
        }
    }
    return quoted + '"';
}

bool canBeName(std::string_view word) {
    return std::ranges::none_of(word, [](char c) { return c == '\n' || c == '\r' || c == '\xFF'; });
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isLetterOrDigit(char c) {
    return isLetter(c) || (c >= '0' && c <= '9');
}

// Names that read the same without quotes, which keeps the command in the heads of outputs plain.
bool isPlainName(std::string_view word) {
    return !word.empty() && (isLetter(word.front()) || word.front() == '/' || word.front() == '.') &&
           isLetterOrDigit(word.back()) && word.find("//") == word.npos &&
           std::ranges::all_of(word, [](char c) { return isLetterOrDigit(c) || c == '_' || c == '.' || c == '/'; });
}

std::string nameText(std::string_view word) {
    return isPlainName(word) ? std::string(word) : quotedName(word);
}

// Folders of a list, parted by ";" or ":", each in quotes of its own: quotes around a list would make it one name.
std::string foldersText(std::string_view list) {
    std::string text;
    for (size_t mark = 0; mark != list.npos; list.remove_prefix(mark == list.npos ? 0 : mark + 1)) {
        mark = list.find_first_of(";:");
        if (const std::string_view folder = list.substr(0, mark); !folder.empty())
            text += (text.empty() ? "" : ";") + nameText(folder);
    }
    return text.empty() ? "\"\"" : text;
}

class Joiner {
public:
    bool join(std::span<char* const> words, std::string* refused);
    std::string take() { return std::move(text_); }

private:
    void add_(std::string_view word) {
        if (!text_.empty()) text_ += ' ';
        text_ += word;
    }
    bool addName_(std::string_view word) {
        if (!canBeName(word)) return false;
        add_(nameText(word));
        return true;
    }
    bool addFolders_(std::string_view word) {
        if (!canBeName(word)) return false;
        add_(foldersText(word));
        return true;
    }
    bool addSwitch_(std::string_view word, Operands* expected) {
        const SwitchOperands* known = operandsOf(word);
        *expected = known != nullptr ? known->operands : Operands::kRAW;
        const bool hasFolders = known == nullptr && word.starts_with("-I"); // they touch the switch
        add_(hasFolders ? "-I" : word);
        return !hasFolders || addFolders_(word.substr(2));
    }
    bool addOperand_(std::string_view word, Operands kind) {
        if (kind == Operands::kFILE) return addName_(word);
        if (kind == Operands::kPATHS) return addFolders_(word);
        add_(kind == Operands::kXML ? quotedText(word) : word);
        return true;
    }

    std::string text_;
};

bool Joiner::join(std::span<char* const> words, std::string* refused) {
    Operands expected = Operands::kRAW;
    for (const char* word : words) {
        bool isSound = true;
        if (looksLikeSwitch(word)) {
            isSound = addSwitch_(word, &expected);
        } else {
            isSound = addOperand_(word, expected);
            expected = expected == Operands::kLETTER_FILE ? Operands::kFILE : Operands::kRAW;
        }
        if (!isSound) {
            *refused = word;
            return false;
        }
    }
    return true;
}

} // namespace

bool joinOptionWords(std::span<char* const> words, std::string* text, std::string* refused) {
    Joiner joiner;
    if (!joiner.join(words, refused)) return false;
    *text = joiner.take();
    return true;
}

} // namespace memdata
