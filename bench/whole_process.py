#!/usr/bin/env python3
# whole_process.py - the built tool against other programs, from start to exit, in pairs.
# SPDX-License-Identifier: Apache-2.0
#
#   whole_process.py BUILD [ROUNDS [JOB...]]
#
# prints the figures of each round; report.py takes the same as records. Each round runs all sides of a comparison one
# after the other into new files, so that a slow minute of the machine counts for both. Files stand in the folder for
# temporary files. BUILD is a folder of a build with benchmarks, e.g. build/release.
import os
import random
import shutil
import struct
import subprocess
import sys
import tempfile

MIB = 1 << 20
MB = 1_000_000
HERE = os.path.dirname(os.path.abspath(__file__))
SOC_MAP = os.path.join(HERE, "../examples/soc/soc.bmm")


class Failed(Exception):
    """A program that ended with another status than 0, or did not start."""


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
        for done in range(0, size, MIB):
            out.write(random.randbytes(min(MIB, size - done)))
        out.write(names)
        out.write(b"\0" * (sections_at - out.tell()))
        out.write(struct.pack("<10I", *[0] * 10))
        out.write(struct.pack("<10I", 1, 1, 3, 0, data_at, size, 0, 0, 16, 0))
        out.write(struct.pack("<10I", 7, 3, 0, 0, names_at, len(names), 0, 0, 1, 0))


def write_map(name, size, lane_count):
    """A bus of 32 bits on lanes of one width, of any depth."""
    width = 32 // lane_count
    lanes = "".join(f"   lane{lane} [{width * lane + width - 1}:{width * lane}] [0:{size // 4 - 1}];\n"
                    for lane in reversed(range(lane_count)))
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


def write_large_map(name, lane_count):
    """Lanes of a hundred bytes of text, four to a block, in spaces of 1,024 lanes."""
    with open(name, "w") as out:
        for first in range(0, lane_count, 1024):
            count = min(1024, lane_count - first)
            begin = first // 4 * 16384
            out.write(f"ADDRESS_SPACE ram_{first} RAMB32 [0x{begin:X}:0x{begin + count // 4 * 16384 - 1:X}]\n")
            for lane in range(first, first + count):
                low = 24 - lane % 4 * 8
                if lane % 4 == 0:
                    out.write("    BUS_BLOCK\n")
                line = (f"        system_i/axi_bram_ctrl_{lane}/ramloop.ram_r/prim_noinit.ram [{low + 7}:{low}]"
                        f" LOC = X{lane % 90}Y{lane // 90}")
                out.write(f"{line:<97};\n")
                if lane % 4 == 3:
                    out.write("    END_BUS_BLOCK;\n")
            out.write("END_ADDRESS_SPACE;\n")


class Bench:
    """The programs of a build, and a folder for the files of a run."""

    def __init__(self, build, rounds, folder):
        self.build, self.rounds, self.folder = os.path.abspath(build), rounds, folder
        self.tool = os.path.join(self.build, "lanefill")

    def path(self, name):
        return os.path.join(self.folder, name)

    def run(self, *words):
        """Seconds from start to exit, and the peak of memory in bytes."""
        starter = os.path.join(self.build, "bench/measure_process")
        try:
            told = subprocess.run([starter, *words], stdout=subprocess.PIPE, check=True, text=True).stdout
        except (OSError, subprocess.CalledProcessError) as error:
            raise Failed(str(error)) from error
        seconds, peak, status = told.split()
        if status != "0":
            raise Failed(f"status {status}: {' '.join(words)}")
        return float(seconds), int(peak)

    def renewed(self, name):
        """A folder without files."""
        shutil.rmtree(self.path(name), ignore_errors=True)
        os.mkdir(self.path(name))
        return self.path(name)

    def absent(self, name):
        """A name of no file."""
        if os.path.exists(self.path(name)):
            os.remove(self.path(name))
        return self.path(name)

    def elf(self, size):
        name = self.path(f"{size}.elf")
        if not os.path.exists(name):
            write_elf(name, size)
        return name

    def map(self, size, lane_count):
        name = self.path(f"{size}_{lane_count}.bmm")
        write_map(name, size, lane_count)
        return name

    def objcopy(self, elf, out, *words):
        return self.run("objcopy", "-I", "elf32-little", "-O", "verilog", *words, elf, out)[0]


def has(program):
    return shutil.which(program) is not None


# Each job gives pairs of a name and the figures of one round: seconds, bytes, and times.

def four_lanes(bench):
    """ELF files of several sizes to four 8-bit lanes."""
    inputs = {megabytes: (bench.elf(megabytes * MIB), bench.map(megabytes * MIB, 4)) for megabytes in (1, 4, 16, 64)}
    for _ in range(bench.rounds):
        for megabytes, (elf, bmm) in inputs.items():
            mine, peak = bench.run(bench.tool, "-bm", bmm, "-bd", elf, "-bx", bench.renewed("mem"))
            figures = {"seconds": mine, "bytes_per_second": megabytes * MIB / mine, "peak": peak,
                       "peak_over_file": peak / os.path.getsize(elf)}
            if megabytes == 64 and has("objcopy"):
                lanes = bench.renewed("peer")
                four = sum(bench.objcopy(elf, f"{lanes}/{byte}.hex", "--interleave=4", f"--byte={byte}")
                           for byte in range(4))
                figures["speed_over_four_runs"] = four / mine
                figures["speed_over_one_run"] = bench.objcopy(elf, f"{bench.renewed('peer')}/all.hex") / mine
            yield f"{megabytes} MB", figures
    bench.renewed("peer")


def one_lane(bench):
    """A 16 MB ELF file to one file of 32-bit words."""
    size = 16 * MIB
    elf, bmm, plain = bench.elf(size), bench.map(size, 1), bench.path("plain.bin")
    with open(plain, "wb") as out:
        random.seed(size)
        out.write(random.randbytes(size))
    for _ in range(bench.rounds):
        mine, _ = bench.run(bench.tool, "-bm", bmm, "-bd", elf, "-bx", bench.renewed("mem"))
        figures = {"seconds": mine, "bytes_per_second": size / mine}
        if has("objcopy"):
            figures["speed_over_objcopy"] = bench.objcopy(elf, bench.absent("all.hex")) / mine
        if has("srec_cat"):
            theirs, _ = bench.run("srec_cat", plain, "-binary", "-o", bench.absent("all.vmem"), "-VMem", "32")
            figures["speed_over_srec_cat"] = theirs / mine
        yield "16 MB", figures


def small_job(bench):
    """What a run costs when there is little to do."""
    elf, bmm = bench.elf(65536), bench.map(8192, 4)
    data = bench.path("app.mem")
    with open(data, "w") as out:
        out.write("@00000000\n13 05 10 00   93 05 20 00\n")
    for _ in range(4 * bench.rounds):
        seconds, peak = bench.run(bench.tool, "-bm", SOC_MAP, "-bd", elf, "-p", "tq7b100", "-bx", bench.renewed("mem"))
        yield "64 KB with a device", {"seconds": seconds, "peak": peak}
        seconds, peak = bench.run(bench.tool, "-bm", bmm, "-bd", data, "-bx", bench.renewed("mem"))
        yield "8 bytes without a device", {"seconds": seconds, "peak": peak}


def start(bench):
    """Start-up alone, beside a program that does nothing."""
    for _ in range(8 * bench.rounds):
        nothing, _ = bench.run("true")
        for name, words in (("version", ["--version"]), ("no arguments", [])):
            seconds, peak = bench.run(bench.tool, *words)
            yield name, {"seconds": seconds, "peak": peak, "time_over_true": seconds / nothing}


def device_list(bench):
    """Every device with all its facts, as JSON."""
    for _ in range(bench.rounds):
        seconds, peak = bench.run(bench.tool, "devices", "--json")
        yield "json", {"seconds": seconds, "peak": peak}


def large_map(bench):
    """Maps read, checked and written with their computed facts."""
    for lanes in (10_000, 100_000):
        write_large_map(bench.path(f"{lanes}.bmm"), lanes)
    for _ in range(bench.rounds):
        for lanes in (10_000, 100_000):
            bmm = bench.path(f"{lanes}.bmm")
            size = os.path.getsize(bmm)
            seconds, peak = bench.run(bench.tool, "-bm", bmm, "-o", "p", bench.absent("large_out.bmm"))
            yield f"{lanes} lanes", {"seconds": seconds, "bytes_per_second": size / seconds, "peak": peak,
                                     "peak_over_text": peak / size}


def replacement(bench, old, name, columns, rows):
    """All memories of a map replaced in a bit file, beside its copy: gives the figures of one round at each call."""
    bmm, elf, new = (bench.path(name + end) for end in (".bmm", ".elf", ".bit"))
    data_bytes = write_device_map(bmm, columns, rows)
    write_elf(elf, data_bytes)
    size = os.path.getsize(old)
    lane_bytes = data_bytes // 8 * 9

    def one_round():
        mine, peak = bench.run(bench.tool, "-bm", bmm, "-bd", elf, "-bt", old, "-o", "b", bench.absent(new))
        theirs, _ = bench.run("cp", old, bench.absent(new))
        bench.absent(new)
        return {"seconds": mine, "bytes_per_second": size / mine, "time_over_cp": mine / theirs, "peak": peak,
                "peak_over_file": peak / size, "peak_beside": peak - size - lane_bytes}
    return one_round


def bit_file(bench):
    """All memories of a bit file replaced into a new one, and the file dumped as text."""
    olds = {device: bench.path(device + ".old.bit") for device in ("tq7b100", "tq7b1000")}
    for device, old in olds.items():
        bench.run(bench.tool + "-mkbit", "--device", device, "-o", old)
    # The large device has half as many memories again for a byte of its file: two columns in three make a job that is
    # like the small one, but for its size.
    replacements = {"tq7b100": replacement(bench, olds["tq7b100"], "tq7b100", 12, 70),
                    "tq7b1000": replacement(bench, olds["tq7b1000"], "tq7b1000", 30, 280),
                    "two thirds of tq7b1000": replacement(bench, olds["tq7b1000"], "two_thirds", 20, 280)}
    for _ in range(3 * bench.rounds):  # `cp` takes twice as long from one time to the next
        for name, one_round in replacements.items():
            yield f"replace {name}", one_round()
    dump = bench.path("dump.dmp")
    for _ in range(bench.rounds):
        for device, old in olds.items():
            words = "-bm", bench.path(device + ".bmm"), "-bt", old, "-d", "-o", "d", bench.absent(dump)
            mine, peak = bench.run(bench.tool, *words)
            yield f"dump {device}", {"seconds": mine, "bytes_per_second": os.path.getsize(dump) / mine, "peak": peak}


def sizes(bench):
    """Bytes of what is built."""
    yield "library", {"bytes": os.path.getsize(os.path.join(bench.build, "libmemdata.so"))}
    yield "tool", {"bytes": os.path.getsize(bench.tool)}


JOBS = {job.__name__: job
        for job in (start, sizes, small_job, four_lanes, one_lane, large_map, bit_file, device_list)}


def measure(build, rounds, names=None):
    """The figures of each round by "job/name", for the named jobs or all; a job that fails gives its text alone."""
    samples, failures = {}, {}
    for name in names or JOBS:
        with tempfile.TemporaryDirectory(prefix="memdata-bench-") as folder:
            try:
                for kind, figures in JOBS[name](Bench(build, rounds, folder)):
                    samples.setdefault(f"{name}/{kind}", []).append(figures)
            except (Failed, OSError) as error:
                failures[name] = str(error)
    return samples, failures


def main():
    usage = "usage: whole_process.py BUILD [ROUNDS [JOB...]]"
    if {"-h", "--help"} & set(sys.argv[1:]):
        print(usage)
        return 0
    if len(sys.argv) < 2:
        sys.exit(usage)
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    samples, failures = measure(sys.argv[1], rounds, sys.argv[3:])
    for name, each_round in samples.items():
        print(name)
        for figures in each_round:
            print("   ", "  ".join(f"{key} {value:.6g}" for key, value in figures.items()))
    for name, text in failures.items():
        print(f"{name} failed: {text}", file=sys.stderr)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
