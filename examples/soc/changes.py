#!/usr/bin/env python3
# changes.py - tells in what two bit files of a device differ, and fails when it is more than block RAM and CRC words.
# SPDX-License-Identifier: Apache-2.0
#
#   changes.py OLD.bit NEW.bit FRAME_BITS FIRST_BLOCK_RAM_FRAME
#
# It walks the packets by itself: type in bits 31 to 29, operation in 28 and 27, register from bit 13 on, and a count of
# words that has 11 bits, or 27 in a packet of type 2, which continues the one before it.
import struct
import sys

SYNC_WORD = struct.pack(">I", 0xAA995566)
WRITE = 2
BLOCK = 4096  # bytes that are looked at one by one only when they differ
CRC_REGISTER, FRAME_REGISTER = 0, 2


def writes(data):
    """Register, first byte and end of each write behind the sync word."""
    at = data.index(SYNC_WORD) + 4
    register = None
    while at + 4 <= len(data):
        word, = struct.unpack_from(">I", data, at)
        at += 4
        if word >> 29 == 1:
            register, count = word >> 13 & 0x1F, word & 0x7FF
        else:
            count = word & 0x7FFFFFF if word >> 29 == 2 else 0
        if word >> 27 & 3 == WRITE and count:
            yield register, at, at + count * 4
        at += count * 4


def main():
    old, new = (open(name, "rb").read() for name in sys.argv[1:3])
    frame_bytes, first_frame = int(sys.argv[3]) // 8, int(sys.argv[4])
    if len(old) != len(new):
        sys.exit("the files differ in length")
    if list(writes(old)) != list(writes(new)):
        sys.exit("the files differ in their packets")

    differing = [at for block in range(0, len(old), BLOCK) if old[block:block + BLOCK] != new[block:block + BLOCK]
                 for at in range(block, min(block + BLOCK, len(old))) if old[at] != new[at]]
    frames, crc_words, frame_bytes_changed, left = set(), set(), 0, set(differing)
    for register, first, end in writes(new):
        here = [at for at in differing if first <= at < end]
        if register == CRC_REGISTER:
            crc_words.update(at // 4 for at in here)
            left.difference_update(here)
        elif register == FRAME_REGISTER:
            in_block_ram = [at for at in here if (at - first) // frame_bytes >= first_frame]
            frames.update((at - first) // frame_bytes for at in in_block_ram)
            frame_bytes_changed += len(in_block_ram)
            left.difference_update(in_block_ram)
    if left:
        sys.exit(f"{len(left)} bytes outside of block RAM and CRC words changed, the first at offset {min(left)}")
    if not frames or not crc_words:
        sys.exit("nothing changed in block RAM, or the CRC words are still the old ones")
    print(f"    {len(frames)} frames of {frame_bytes} bytes, number {min(frames)} to {max(frames)} of the stream; "
          f"block RAM begins at {first_frame}")
    print(f"    {frame_bytes_changed} bytes in them, {len(crc_words)} CRC word(s), "
          f"and none of the other {len(new) - len(differing)} bytes")


main()
