// main.cpp - lanefill-mkbit: writes synthetic bit files, to try things on without a design.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/lifetime.h"
#include "tests/support/bit_maker.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using namespace memdata::testing;

constexpr const char* kHELP =
    "lanefill-mkbit - writes a bit file for a device, random but sound: packets, frames and CRC words fit.\n"
    "\n"
    "  lanefill-mkbit --device NAME -o FILE [options]\n"
    "\n"
    "  --device NAME     a device, as in 'lanefill devices'; small ones: tq1a8 tq2a4 td3c4 tq4a32 td6a24\n"
    "  -o FILE           the file to write\n"
    "  --seed N          another N gives other frame contents; the same N the same file (1)\n"
    "  --dialect NAME    header of the file: t4k (as it is without) or fenwick\n"
    "  --rbt             a text of 0s and 1s in place of a binary file\n"
    "  --variant NAMES   separated by commas:\n"
    "      separate        block RAM in a burst of its own\n"
    "      short           bursts that are short enough have a short count\n"
    "      compressed      a multi-frame write, which a replacement refuses\n"
    "      encrypted       the control register says so, which a replacement refuses\n"
    "      bypassed        CRC words are not checked and have the bypass value\n"
    "      reads           register reads between the writes\n"
    "      bare            no bus-width words, no-operations and pads\n"
    "      nocrc           no CRC register write at the end\n"
    "      noauto          no CRC words behind bursts\n"
    "\n"
    "Try:  lanefill-mkbit --device td3c4 --seed 7 -o top.bit\n";

// One option of the command line that is followed by a word.
struct Words {
    std::span<char* const> left;

    std::string_view next(const char* option) {
        if (left.empty()) throw std::invalid_argument(std::string(option) + " needs a word behind it");
        const std::string_view word = left.front();
        left = left.subspan(1);
        return word;
    }
};

u32 numberOf(std::string_view text) {
    u32 number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        throw std::invalid_argument("'" + std::string(text) + "' is no number");
    return number;
}

void takeVariant(BitRecipe& recipe, std::string_view name) {
    if (name == "separate")
        recipe.separateBram = true;
    else if (name == "short")
        recipe.shortCounts = true;
    else if (name == "compressed")
        recipe.compressed = true;
    else if (name == "encrypted")
        recipe.encrypted = true;
    else if (name == "bypassed")
        recipe.crcBypassed = true;
    else if (name == "reads")
        recipe.readRegisters = true;
    else if (name == "bare")
        recipe.busWidthWords = recipe.noOperations = recipe.pads = false;
    else if (name == "nocrc")
        recipe.closingCrc = false;
    else if (name == "noauto")
        recipe.autoCrc = false;
    else
        throw std::invalid_argument("no variant '" + std::string(name) + "'");
}

void takeVariants(BitRecipe& recipe, std::string_view names) {
    while (!names.empty()) {
        const size_t comma = names.find(',');
        takeVariant(recipe, names.substr(0, comma));
        names = comma == names.npos ? std::string_view() : names.substr(comma + 1);
    }
}

struct Order {
    BitRecipe recipe{.device = ""};
    std::string file;
};

Order orderOf(Words words) {
    Order order;
    while (!words.left.empty()) {
        const std::string_view option = words.next("");
        if (option == "--device") {
            order.recipe.device = words.next("--device");
        } else if (option == "-o") {
            order.file = words.next("-o");
        } else if (option == "--seed") {
            order.recipe.seed = numberOf(words.next("--seed"));
        } else if (option == "--dialect") {
            const std::string_view name = words.next("--dialect");
            if (name != "t4k" && name != "fenwick")
                throw std::invalid_argument("no dialect '" + std::string(name) + "'");
            order.recipe.container = name == "t4k" ? BitContainer::T4K : BitContainer::FENWICK;
        } else if (option == "--rbt") {
            order.recipe.container = BitContainer::RBT;
        } else if (option == "--variant") {
            takeVariants(order.recipe, words.next("--variant"));
        } else {
            throw std::invalid_argument("no option '" + std::string(option) + "'");
        }
    }
    if (order.recipe.device.empty() || order.file.empty()) throw std::invalid_argument("--device and -o are needed");
    return order;
}

void writeFile(const std::string& name, const Bytes& bytes) {
    std::ofstream file(name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("'" + name + "' can not be written");
}

} // namespace

int main(int count, char** arguments) {
    const std::span<char* const> words = std::span<char* const>(arguments, static_cast<size_t>(count)).subspan(1);
    if (words.empty() || std::strcmp(words.front(), "--help") == 0) {
        std::fputs(kHELP, stdout);
        return words.empty() ? 1 : 0;
    }
    try {
        const memdata::SystemResources system;
        const Order order = orderOf({words});
        const MadeBit made = makeBit(order.recipe);
        writeFile(order.file, bitFileOf(order.recipe, made.stream));
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "lanefill-mkbit: %s; 'lanefill-mkbit --help' tells more\n", failure.what());
        return 1;
    }
}
