#!/usr/bin/env python3
# compare.py - puts the MEM files of the demo together again and compares them with the ELF file, byte by byte.
# SPDX-License-Identifier: Apache-2.0
#
#   compare.py APP.elf FOLDER
#
# It has its own reader of ELF files, so that it finds what lanefill misses. File number n belongs to row n / 4; which
# bits of the bus it holds stands in its head.
import glob
import re
import struct
import sys

ROW_BYTES = 0x4000
BUS_BYTES = 4
SHOWN_WORDS = 6


def segments(name):
    """Address and bytes of each loadable segment of a 32-bit little-endian ELF file."""
    data = open(name, "rb").read()
    if data[:6] != b"\x7fELF\x01\x01":
        sys.exit(f"{name}: no 32-bit little-endian ELF file")
    table, size, count = struct.unpack_from("<28xI10xHH", data)
    for at in range(table, table + size * count, size):
        kind, offset, _, address, file_bytes = struct.unpack_from("<IIIII", data, at)
        if kind == 1 and file_bytes:
            yield address, data[offset:offset + file_bytes]


def lane_bytes(name):
    """Word index -> byte, and the lane's lowest bit."""
    text = open(name).read()
    low = int(re.search(r"bit lane \[\d+:(\d+)\]", text).group(1))
    words, index = {}, 0
    for token in re.sub(r"//.*", "", text).split():
        if token.startswith("@"):
            index = int(token[1:], 16)
        else:
            words[index] = int(token, 16)
            index += 1
    return low, words


def memory(folder):
    """Address -> byte, as the processor sees it, and address -> lane files."""
    contents = {}
    files = glob.glob(f"{folder}/soc.ram_*.mem")
    if len(files) != 16:
        sys.exit(f"{folder}: {len(files)} MEM files in place of 16")
    for name in files:
        row = int(re.search(r"_(\d+)\.mem$", name).group(1)) // BUS_BYTES
        low, words = lane_bytes(name)
        for index, byte in words.items():
            contents[row * ROW_BYTES + index * BUS_BYTES + low // 8] = byte
    return contents


def main():
    elf, folder = sys.argv[1:]
    stored = memory(folder)
    expected = {}
    print("    address     word      [31:24] [23:16] [15:8]  [7:0]")
    for address, data in segments(elf):
        expected.update(enumerate(data, address))
        for word in range(address, address + SHOWN_WORDS * BUS_BYTES, BUS_BYTES):
            lanes = [stored.get(word + byte) for byte in reversed(range(BUS_BYTES))]
            if None in lanes:
                sys.exit(f"0x{word:08X}: a lane has no byte")
            value = int.from_bytes(bytes(reversed(lanes)), "little")
            print(f"    0x{word:08X}  {value:08x}  " + "      ".join(f"{lane:02X}" for lane in lanes))
        print("    ...")
    wrong = [address for address, byte in sorted(expected.items()) if stored.get(address) != byte]
    if wrong:
        sys.exit(f"{len(wrong)} bytes differ from {elf}, the first at 0x{wrong[0]:08X}")
    foreign = sorted(address for address in stored if address not in expected and stored[address] != 0)
    if foreign:
        sys.exit(f"{len(foreign)} bytes come from nowhere, the first at 0x{foreign[0]:08X}")
    print(f"    all {len(expected)} bytes of the program are in their memories, and nothing else is")


main()
