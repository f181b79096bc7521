#!/usr/bin/env python3
# profile_jobs.py - where the time of the three main jobs goes, by module and kernel work.
# SPDX-License-Identifier: Apache-2.0
#
#   profile_jobs.py [--build FOLDER] [--markdown]
#
# Runs each job some times under perf's processor clock and shares the samples out: those of the tool by the module whose
# object file defines the function, those of the kernel by what it was asked for. perf may need root. With --markdown the
# tables go into docs/performance.md, too.
import argparse
import collections
import os
import re
import subprocess
import sys
import tempfile

import report
import whole_process

TABLE_BEGIN = "<!-- tables of bench/profile_jobs.py -->"
OBJECTS = "CMakeFiles/memdata_objects.dir/memdata"
RUNS = 5
LEAST_SHARE = 0.015  # smaller groups are counted together
NAMED = 3  # functions that a group names

# The first pattern that fits a frame of a kernel sample, outermost frames last, tells what the kernel did.
KERNEL = [
    (r"exit_mmap|do_exit|do_group_exit|execve|load_elf_binary", "kernel: start and end of the process"),
    (r"exc_page_fault|asm_exc_page_fault", "kernel: first touch of memory and of mapped pages"),
    (r"sys_write|sys_pwrite|sys_copy_file_range|ksys_write", "kernel: taking what is written"),
    (r"sys_read|sys_pread|ksys_read", "kernel: reading"),
    (r"sys_munmap|sys_mmap|sys_brk|sys_mremap|sys_madvise", "kernel: giving and taking memory"),
    (r"sys_open|sys_close|sys_rename|sys_unlink|sys_fsync|task_work_run", "kernel: opening, closing, renaming"),
]
LIBC = [(r"malloc|free|calloc|unlink_chunk|realloc", "C library: memory"), (r"mem|str", "C library: copying and texts")]


def kernel_group(frames):
    for pattern, group in KERNEL:
        if any(re.search(pattern, frame) for frame in frames):
            return group
    return "kernel: other"


def modules_of_functions(build):
    """The module by the name of each function of the library."""
    base = os.path.join(build, OBJECTS)
    objects = [os.path.join(folder, name) for folder, _, names in os.walk(base) for name in names if name.endswith(".o")]
    told = subprocess.run(["nm", "-A", "-C", "--defined-only", *objects], stdout=subprocess.PIPE, check=True, text=True)
    modules = {}
    for line in told.stdout.splitlines():
        name, _, rest = line.partition(":")
        fields = rest.split(" ", 2)
        if len(fields) == 3 and fields[1] in "tTwW":
            module = os.path.dirname(os.path.relpath(name, base)).replace("lanefillutil/common/", "")
            modules.setdefault(bare(fields[2]), module)
    return modules


def bare(function):
    """A function's name without its namespace, arguments and clones."""
    function = function.replace("(anonymous namespace)", "{anonymous}")
    function = re.sub(r"\s*\[clone.*|\+0x[0-9a-f]+$", "", function)
    function = re.sub(r"[(<].*$", "", function).split(" ")[-1]
    return function.replace("{anonymous}::", "").removeprefix("memdata::")


def group_of(frames, modules):
    """The group and the function of one sample; its frames are (function, object), the innermost first."""
    function, of = frames[0]
    if of == "kernel" or of.startswith("["):
        return kernel_group([name for name, _ in frames]), function
    if "libc.so" in of:
        for pattern, group in LIBC:
            if re.search(pattern, function):
                return group, function
        return "C library: other", function
    if os.path.basename(of) == "lanefill":
        name = bare(function)
        return modules.get(name, "tool and templates"), name
    return "other libraries, start-up", function


def samples_of_script(text):
    """The stacks of perf's listing: a blank line ends a sample, a frame is an address, a function, an object."""
    frames = []
    for line in [*text.splitlines(), ""]:
        found = re.match(r"\s+[0-9a-f]+ (.*) \((.*)\)$", line)
        if found:
            frames.append((found[1], found[2].replace("[kernel.kallsyms]", "kernel")))
        elif not line.strip() and frames:
            yield frames
            frames = []


def samples_of_run(data, words):
    record = ["perf", "record", "-q", "-g", "-e", "cpu-clock", "-F", "9973", "-o", data, "--", *words]
    subprocess.run(record, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
    listing = subprocess.run(["perf", "script", "-i", data, "-F", "ip,sym,dso"], stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL, check=True, text=True)
    return samples_of_script(listing.stdout)


def shares_of(samples, modules):
    """By group: the number of its samples, and of each of its functions."""
    groups = collections.defaultdict(collections.Counter)
    for frames in samples:
        group, function = group_of(frames, modules)
        groups[group][function] += 1
    return groups


def table_of(title, groups):
    total = sum(sum(functions.values()) for functions in groups.values())
    lines = [f"| {title} | share | mostly |", "| --- | ---: | --- |"]
    rest = 0
    for group, functions in sorted(groups.items(), key=lambda item: -sum(item[1].values())):
        share = sum(functions.values()) / total
        if share < LEAST_SHARE:
            rest += share
            continue
        named = [f"`{name}` {count / total:.0%}" for name, count in functions.most_common(NAMED) if count / total >= 0.01]
        lines.append(f"| {group} | {share:.0%} | {'' if group.startswith('kernel') else ', '.join(named)} |")
    lines.append(f"| all that is less than {LEAST_SHARE:.1%} | {rest:.0%} | |")
    return "\n".join(lines) + f"\n\n{total} samples in {RUNS} runs.\n"


def jobs_of(bench):
    """Title, words and outputs of the three main jobs."""
    size = 64 * whole_process.MIB
    device, elf, old = bench.path("device.bmm"), bench.path("device.elf"), bench.path("old.bit")
    whole_process.write_elf(elf, whole_process.write_device_map(device, 12, 70))
    bench.run(bench.tool + "-mkbit", "--device", "tq7b100", "-o", old)
    large = bench.path("large.bmm")
    whole_process.write_large_map(large, 100_000)
    yield "64 MB ELF to four lanes", ["-bm", bench.map(size, 4), "-bd", bench.elf(size), "-bx", bench.path("mem")]
    yield "16 MB bit file, 840 memories replaced", ["-bm", device, "-bd", elf, "-bt", old, "-o", "b",
                                                    bench.path("new.bit")]
    yield "map of 100,000 lanes read, checked, written", ["-bm", large, "-o", "p", bench.path("out.bmm")]


def tables(build):
    modules = modules_of_functions(build)
    with tempfile.TemporaryDirectory(prefix="memdata-bench-") as folder:
        bench = whole_process.Bench(build, RUNS, folder)
        for title, words in jobs_of(bench):
            samples = []
            for _ in range(RUNS):
                bench.renewed("mem")
                for name in ("new.bit", "out.bmm"):
                    bench.absent(name)
                samples += samples_of_run(bench.path("perf.data"), [bench.tool, *words])
            yield table_of(title, shares_of(samples, modules))


def main():
    parser = argparse.ArgumentParser(prog="profile_jobs.py")
    parser.add_argument("--build", default=os.path.join(report.HERE, "../build/release"))
    parser.add_argument("--markdown", action="store_true")
    options = parser.parse_args()
    text = "\n".join(tables(options.build))
    print(text)
    if options.markdown:
        report.renew_document(TABLE_BEGIN, f"{report.machine_line(report.facts_of_run(RUNS))}.\n\n{text}")
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (OSError, subprocess.CalledProcessError, whole_process.Failed, report.Problem) as error:
        sys.exit(f"profile_jobs.py: {error}")
