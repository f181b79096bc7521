#!/usr/bin/env python3
# whole_process.py - the built tool against other programs, from start to exit, in pairs.
# SPDX-License-Identifier: Apache-2.0
#
#   whole_process.py LANEFILL [ROUNDS]
#
# Each round runs all sides of a comparison one after the other into new files; the ratio of a row is the median of the
# rounds' ratios, so that a slow minute of the machine counts for both. Absolute times are the best of all rounds. Memory
# is the peak of the process; below some 20 MB it is what this program itself takes, since a process counts that of the one
# that starts it. Files stand in the folder for temporary files. objcopy comes with the compiler.
import os
import random
import shutil
import statistics
import struct
import subprocess
import sys
import tempfile
import time

MB = 1 << 20
HERE = os.path.dirname(os.path.abspath(__file__))


def run(words):
    """Seconds from start to exit, and the peak of memory in bytes."""
    start = time.perf_counter()
    process = subprocess.Popen(words, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"status {process.returncode}: {' '.join(words)}")
    return seconds, usage.ru_maxrss * 1024


def write_elf(name, size):
    """A 32-bit RISC-V file with one section in one segment at address 0."""
    names = b"\0.data\0.shstrtab\0"
    data_at = 0x80
    names_at = data_at + size
    sections_at = (names_at + len(names) + 3) // 4 * 4
    with open(name, "wb") as out:
        out.write(b"\x7fELF\x01\x01\x01".ljust(16, b"\0"))
        out.write(struct.pack("<HHIIIIIHHHHHH", 2, 243, 1, 0, 52, sections_at, 0, 52, 32, 1, 40, 3, 2))
        out.write(struct.pack("<8I", 1, data_at, 0, 0, size, size, 6, 16))
        out.write(b"\0" * (data_at - out.tell()))
        random.seed(size)
        for done in range(0, size, MB):
            out.write(random.randbytes(min(MB, size - done)))
        out.write(names)
        out.write(b"\0" * (sections_at - out.tell()))
        out.write(struct.pack("<10I", *[0] * 10))
        out.write(struct.pack("<10I", 1, 1, 3, 0, data_at, size, 0, 0, 16, 0))
        out.write(struct.pack("<10I", 7, 3, 0, 0, names_at, len(names), 0, 0, 1, 0))


def write_map(name, size):
    """Four lanes of bytes, of any depth."""
    lanes = "".join(f"   lane{lane} [{8 * lane + 7}:{8 * lane}] [0:{size // 4 - 1}];\n" for lane in (3, 2, 1, 0))
    with open(name, "w") as out:
        out.write(f"ADDRESS_MAP cpu RISCV 0\n ADDRESS_SPACE ram MEMORY [0:{size - 1}]\n  BUS_BLOCK\n{lanes}"
                  "  END_BUS_BLOCK;\n END_ADDRESS_SPACE;\nEND_ADDRESS_MAP;\n")


def write_device_map(name, columns, rows):
    """All 36-kbit memories of a device, four side by side; gives the bytes that they hold."""
    places = [f"X{column}Y{row}" for column in range(columns) for row in range(rows)]
    blocks = len(places) // 4
    with open(name, "w") as out:
        out.write(f"ADDRESS_MAP cpu RISCV 0\n ADDRESS_SPACE ram RAMB32 [0:{blocks * 16384 - 1}]\n")
        for block in range(blocks):
            out.write("  BUS_BLOCK\n")
            for lane in (3, 2, 1, 0):
                out.write(f"   r{block}_{lane} [{8 * lane + 7}:{8 * lane}] LOC = {places[4 * block + lane]};\n")
            out.write("  END_BUS_BLOCK;\n")
        out.write(" END_ADDRESS_SPACE;\nEND_ADDRESS_MAP;\n")
    return blocks * 16384


class Bench:
    def __init__(self, tool, rounds, folder):
        self.tool, self.rounds, self.folder = tool, rounds, folder

    def path(self, name):
        return os.path.join(self.folder, name)

    def renew(self, name):
        """A folder without files."""
        shutil.rmtree(self.path(name), ignore_errors=True)
        os.mkdir(self.path(name))
        return self.path(name)

    def inputs(self, size):
        elf, bmm = self.path(f"{size}.elf"), self.path(f"{size}.bmm")
        write_elf(elf, size)
        write_map(bmm, size)
        return elf, bmm

    def translate(self, elf, bmm, *more):
        return run([self.tool, "-bm", bmm, "-bd", elf, *more, "-bx", self.renew("mem")])

    def row(self, what, figure, mark, met):
        print(f"  {what:<66} {figure:>20}   {mark}{'' if met else '   MISSED'}")

    def against_objcopy(self):
        size = 64 * MB
        elf, bmm = self.inputs(size)
        four, one, seconds, peaks = [], [], [], []
        for _ in range(self.rounds):
            mine, peak = self.translate(elf, bmm)
            lanes = self.renew("objcopy")
            theirs = sum(run(["objcopy", "-I", "elf32-little", "-O", "verilog", "--interleave=4", f"--byte={byte}", elf,
                              f"{lanes}/{byte}.hex"])[0] for byte in range(4))
            plain = run(["objcopy", "-I", "elf32-little", "-O", "verilog", elf, f"{self.renew('objcopy')}/all.hex"])[0]
            four.append(theirs / mine)
            one.append(plain / mine)
            seconds.append(mine)
            peaks.append(peak)
        self.renew("objcopy")
        faster, plainly, memory = statistics.median(four), statistics.median(one), max(peaks) / os.path.getsize(elf)
        self.row("64 MB ELF to four 8-bit lanes", f"{min(seconds):.2f} s", "", True)
        self.row("  four runs of objcopy -O verilog --interleave take", f"{faster:.2f} times that", "2, goal 3",
                 faster >= 2)
        self.row("  one run of objcopy -O verilog takes", f"{plainly:.2f} times that", "1", plainly > 1)
        self.row("  peak of memory", f"{memory:.2f} times the file", "2.2", memory <= 2.2)

    def small(self):
        elf = self.path("small.elf")
        write_elf(elf, 65536)
        bmm = os.path.join(HERE, "../examples/soc/soc.bmm")
        figures = [self.translate(elf, bmm, "-p", "tq7b100") for _ in range(4 * self.rounds)]
        milliseconds = min(seconds for seconds, _ in figures) * 1000
        megabytes = max(peak for _, peak in figures) / MB
        self.row("64 KB ELF to sixteen memories of a named device", f"{milliseconds:.1f} ms", "10", milliseconds < 10)
        self.row("  peak of memory", f"at most {megabytes:.1f} MB", "24", megabytes < 24)

    def sizes(self):
        figures = {}
        for megabytes in (1, 4, 16, 64):
            elf, bmm = self.inputs(megabytes * MB)
            figures[megabytes] = min(self.translate(elf, bmm)[0] for _ in range(self.rounds))
        for megabytes, seconds in figures.items():
            each = seconds / megabytes * 1000
            # Small ones pay for the start of the process too.
            self.row(f"{megabytes} MB ELF to four 8-bit lanes", f"{each:.2f} ms a MB", "",
                     each <= 2 * figures[1] * 1000)

    def bit_file(self):
        bmm, elf, old, new = (self.path(name) for name in ("device.bmm", "device.elf", "top.bit", "new.bit"))
        size = write_device_map(bmm, columns=12, rows=70)
        write_elf(elf, size)
        run([os.path.join(os.path.dirname(self.tool), "lanefill-mkbit"), "--device", "tq7b100", "-o", old])
        ratios, seconds, peaks = [], [], []
        for _ in range(self.rounds):
            for name in (new, new + ".cp"):
                if os.path.exists(name):
                    os.remove(name)
            mine, peak = run([self.tool, "-bm", bmm, "-bd", elf, "-bt", old, "-o", "b", new])
            ratios.append(mine / run(["cp", old, new + ".cp"])[0])
            seconds.append(mine)
            peaks.append(peak)
        ratio = statistics.median(ratios)
        self.row("all 840 memories of a 16 MB bit file, into a new one", f"{min(seconds) * 1000:.0f} ms", "",
                 True)
        self.row("  against cp", f"{ratio:.2f} times", "3, goal 1.5", ratio <= 3)
        self.row("  peak of memory", f"{max(peaks) / os.path.getsize(old):.2f} times the file", "", True)


def main():
    tool = os.path.abspath(sys.argv[1])
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    print(f"  {'':<66} {'measured':>20}   mark")
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(tool, rounds, folder)
        bench.against_objcopy()
        bench.small()
        bench.sizes()
        bench.bit_file()


main()
