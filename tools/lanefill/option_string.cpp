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
    kPATHS,       // folders up to the next switch; the first may touch the switch
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

// A name that the caller has quoted for the option language, or that stands for all files of the design.
bool isOptionText(std::string_view word) {
    return word == "*" || (word.size() >= 2 && word.front() == '"' && word.back() == '"');
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
        add_(isOptionText(word) || isPlainName(word) ? std::string(word) : quotedName(word));
        return true;
    }

    std::string text_;
};

bool Joiner::join(std::span<char* const> words, std::string* refused) {
    Operands expected = Operands::kRAW;
    for (const char* argument : words) {
        const std::string_view word = argument;
        bool isSound = true;
        if (looksLikeSwitch(word)) {
            const SwitchOperands* known = operandsOf(word);
            expected = known != nullptr ? known->operands : Operands::kRAW;
            if (word.size() > 2 && word.starts_with("-I")) { // a folder touches its switch
                add_("-I");
                expected = Operands::kPATHS;
                isSound = addName_(word.substr(2));
            } else {
                add_(word);
            }
        } else if (expected == Operands::kFILE) {
            isSound = addName_(word);
            expected = Operands::kRAW;
        } else if (expected == Operands::kPATHS) {
            isSound = addName_(word);
        } else if (expected == Operands::kXML) {
            add_(quotedText(word));
            expected = Operands::kRAW;
        } else {
            add_(word);
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
