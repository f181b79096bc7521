#!/usr/bin/env python3
# report.py - the benchmarks as one table: figures, ratios to yardsticks, marks and whether they are met.
# SPDX-License-Identifier: Apache-2.0
#
#   report.py [--build FOLDER] [--rounds N] [PATTERN]   measure, print the table, write FOLDER/../bench/report.json
#   report.py --from JSON                               print the table of an earlier run
#
# With --markdown the table of all rows goes into docs/performance.md, too.
#
# The rows stand in marks.json: where a figure comes from, its unit, its yardstick, its mark. A round runs every program
# once, so that all that is compared stands close together in time; a ratio is the median of those of the rounds, a
# figure the best round's. PATTERN chooses rows whose group, name or source matches.
import argparse
import datetime
import json
import os
import re
import shutil
import statistics
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
MARKS = os.path.join(HERE, "marks.json")
DOCUMENT = os.path.join(HERE, "../docs/performance.md")
TABLE_BEGIN = "<!-- table of bench/report.py -->"
TABLE_END = "<!-- end of table -->"
PROCESSES = "process"  # the source of rows that whole_process.py measures
SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}  # time units of Google Benchmark

# What a figure in base units (bytes, seconds, bytes a second) is multiplied by, and which of the rounds is the best.
UNITS = {
    "MB/s": (1e-6, max), "GB/s": (1e-9, max),
    "ns": (1e9, min), "us": (1e6, min), "ms": (1e3, min), "s": (1.0, min),
    "MB": (1e-6, max), "times": (1.0, statistics.median),
}
LIMITS = {"least": ">=", "most": "<="}


class Problem(Exception):
    """What stops a row or the run, as a text."""


# Measuring. Samples are figures of each round by source: {"FileUtils_bench:blocks/16": [{"real_time": ...}, ...]}.

def sources(row):
    """What has to be measured for a row."""
    return [row[key] for key in ("from", "over") if key in row]


def needed(rows):
    """The names of each program that rows need, in the order of the rows."""
    names = {}
    for row in rows:
        for source in sources(row):
            program, name = source.split(":", 1)
            listed = names.setdefault(program, [])
            if name not in listed:
                listed.append(name)
    return names


def samples_of_output(program, document):
    """The figures of one run of a Google Benchmark program: times in seconds, the counters as they are."""
    samples = {}
    for entry in document["benchmarks"]:
        if entry.get("run_type", "iteration") != "iteration":
            continue
        source = f"{program}:{entry['name']}"
        if entry.get("error_occurred"):
            raise Problem(f"{source}: {entry.get('error_message', 'failed')}")
        figures = {key: value for key, value in entry.items() if isinstance(value, float)}
        for key in ("real_time", "cpu_time"):
            figures[key] = entry[key] * SECONDS[entry["time_unit"]]
        samples[source] = figures
    return samples


def filter_of(names):
    """The extended regular expression that matches these names alone."""
    return "^(" + "|".join(re.sub(r"[][.^$*+?(){}|\\]", r"\\\g<0>", name) for name in names) + ")$"


def run_program(folder, program, names):
    words = [os.path.join(folder, program), f"--benchmark_filter={filter_of(names)}", "--benchmark_format=json",
             "--benchmark_min_time=0.1"]
    try:
        told = subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True).stdout
        return samples_of_output(program, json.loads(told))
    except (OSError, subprocess.CalledProcessError, json.JSONDecodeError) as error:
        raise Problem(f"{program}: {error}") from error


def measure(build, rows, rounds):
    """Samples, and the problems by program."""
    names = needed(rows)
    samples, problems = {}, {}
    process_names = names.pop(PROCESSES, [])
    for done in range(rounds):
        for program, listed in names.items():
            if program in problems:
                continue
            say(f"round {done + 1} of {rounds}: {program}")
            try:
                for source, figures in run_program(os.path.join(build, "bench"), program, listed).items():
                    samples.setdefault(source, []).append(figures)
            except Problem as problem:
                problems[program] = str(problem)
    if process_names:
        import whole_process
        jobs = list(dict.fromkeys(name.split("/")[0] for name in process_names))
        for job in jobs:
            say(f"{rounds} rounds of whole processes: {job}")
            measured, failures = whole_process.measure(build, rounds, [job])
            samples.update({f"{PROCESSES}:{name}": figures for name, figures in measured.items()})
            problems.update({f"{PROCESSES}:{name}": text for name, text in failures.items()})
    return samples, problems


# Arithmetic.

def figures_of(samples, source, key):
    """A figure in each round; a Problem where it is missing."""
    rounds = samples.get(source)
    if not rounds:
        raise Problem(f"{source} was not measured")
    if any(key not in figures for figures in rounds):
        raise Problem(f"{source} has no figure {key}")
    return [figures[key] for figures in rounds]


def is_rate(unit):
    """More of it is better."""
    return unit.endswith("/s")


def value_of(row, samples):
    """The best round's figure in the row's unit."""
    factor, best = UNITS[row["unit"]]
    return best(figures_of(samples, row["from"], row["value"])) * row.get("factor", factor)


def ratios_of(row, samples):
    """The ratio in each round: a figure that was taken in pairs, or the cost over that of another source."""
    if "ratio" in row:
        return figures_of(samples, row["from"], row["ratio"])
    if "over" in row:
        mine = figures_of(samples, row["from"], row["value"])
        other = figures_of(samples, row["over"], row["value"])
        pairs = zip(other, mine) if is_rate(row["unit"]) else zip(mine, other)
        return [cost / by for cost, by in pairs]
    return []


def limit_of(row):
    """What is limited ("value" or "ratio"), "least" or "most", and the number; None without a mark."""
    for what in ("value", "ratio"):
        for kind in LIMITS:
            if f"{what}_{kind}" in row:
                return what, kind, row[f"{what}_{kind}"]
    return None


def is_met(kind, limit, figure):
    return figure >= limit if kind == "least" else figure <= limit


def record_of(row, samples):
    """A row of the report."""
    record = {"group": row["group"], "name": row["name"], "value": None, "unit": row["unit"], "ratio": None,
              "yardstick": row.get("yardstick"), "mark": None, "goal": row.get("goal"), "met": None, "note": None}
    limit = limit_of(row)
    if limit:
        what, kind, number = limit
        unit = f" {row['unit']}" if what == "value" and row["unit"] != "times" else ""
        record["mark"] = f"{LIMITS[kind]} {shown(number)}{unit}"
    if "needs" in row and shutil.which(row["needs"]) is None:
        record["note"] = f"left out: {row['needs']} is not installed"
        return record
    try:
        ratios = ratios_of(row, samples)
        record["value"] = value_of(row, samples)
    except Problem as problem:
        record["note"] = f"failed: {problem}"
        record["met"] = False if limit else None
        return record
    record["rounds"] = len(samples[row["from"]])
    if ratios:
        record["ratio"] = statistics.median(ratios)
        record["lowest_ratio"], record["highest_ratio"] = min(ratios), max(ratios)
    if limit:
        record["met"] = is_met(kind, number, record[what])
    return record


def report_of(rows, samples, problems, facts):
    records = [record_of(row, samples) for row in rows]
    return {**facts, "problems": sorted(problems.values()), "rows": records}


# The machine, the commit.

def git(*words):
    run = subprocess.run(["git", "-C", HERE, *words], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                         check=False)
    return run.stdout.strip()


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as lines:
        for line in lines:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return os.uname().machine


def facts_of_run(rounds):
    changed = " with changes" if git("status", "--porcelain", "--untracked-files=no") else ""
    return {"date": datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d %H:%M UTC"),
            "commit": git("rev-parse", "--short=10", "HEAD") + changed,
            "machine": {"processor": processor(), "cores": os.cpu_count(), "architecture": os.uname().machine,
                        "load_before": round(os.getloadavg()[0], 1)},
            "rounds": rounds}


# Showing.

def shown(number):
    """Three digits that count."""
    if number == 0:
        return "0"
    text = f"{number:.3g}" if abs(number) < 100 else f"{number:.0f}"
    return text if "e" not in text else f"{number:.4f}"


def cells(record):
    value = "" if record["value"] is None or record["unit"] == "times" else f"{shown(record['value'])} {record['unit']}"
    ratio = ""
    if record["ratio"] is not None:
        ratio = f"{shown(record['ratio'])} {record['yardstick']}"
    elif record["unit"] == "times" and record["value"] is not None:
        ratio = f"{shown(record['value'])} {record['yardstick']}"
    mark = record["mark"] or ""
    if record["goal"]:
        mark += f", goal {shown(record['goal'])}"
    met = {True: "yes", False: "NO", None: ""}[record["met"]]
    return [record["name"], value, ratio or record["note"] or "", mark, met]


HEAD = ["", "figure", "ratio", "mark", "met"]


def machine_line(facts):
    machine = facts["machine"]
    busy = " (busy: times are too long)" if machine["load_before"] > machine["cores"] / 2 else ""
    return (f"{machine['processor']}, {machine['cores']} cores, {machine['architecture']}; load {machine['load_before']}"
            f" before the run{busy}; {facts['rounds']} rounds; {facts['date']}; commit {facts['commit']}")


def summary(report):
    marked = [record for record in report["rows"] if record["mark"] and record["met"] is not None]
    missed = [record for record in marked if not record["met"]]
    left_out = [record for record in report["rows"] if record["note"] and record["note"].startswith("left out")]
    text = f"{len(report['rows'])} rows, {len(marked)} with a mark: {len(marked) - len(missed)} met, {len(missed)} missed"
    return text + (f", {len(left_out)} left out" if left_out else "")


def groups_of(report):
    groups = {}
    for record in report["rows"]:
        groups.setdefault(record["group"], []).append(record)
    return groups


def table(report):
    lines = [HEAD] + [cells(record) for record in report["rows"]]
    widths = [max(len(line[i]) for line in lines) for i in range(len(HEAD))]

    def laid_out(line):
        name, figure, ratio, mark, met = (cell.ljust(width) for cell, width in zip(line, widths))
        return f"  {name}  {figure.strip().rjust(widths[1])}  {ratio}  {mark}  {met}".rstrip()

    text = [machine_line(report), laid_out(HEAD)]
    for group, records in groups_of(report).items():
        text.append(group)
        text += [laid_out(cells(record)) for record in records]
    return "\n".join(text + report["problems"] + [summary(report)])


def markdown(report):
    text = [machine_line(report) + ".", ""]
    for group, records in groups_of(report).items():
        text += [f"| {group} | figure | ratio | mark | met |", "| --- | ---: | --- | --- | --- |"]
        text += ["| " + " | ".join(cells(record)) + " |" for record in records]
        text.append("")
    return "\n".join(text + [summary(report) + "."])


def with_table(document, head, text):
    """The document with what stands between a head and the next end of a table renewed."""
    begin = document.find(head)
    end = document.find(TABLE_END, begin)
    if begin < 0 or end < 0:
        raise Problem(f"there is no '{head}' with '{TABLE_END}' behind it")
    return f"{document[:begin]}{head}\n{text}\n{document[end:]}"


def renew_document(head, text):
    with open(DOCUMENT, encoding="utf-8") as file:
        document = with_table(file.read(), head, text)
    with open(DOCUMENT, "w", encoding="utf-8") as file:
        file.write(document)


def say(text):
    print(f"   {text}", file=sys.stderr, flush=True)


def read_rows(name):
    with open(name, encoding="utf-8") as file:
        groups = json.load(file)
    return [{"group": group["group"], **row} for group in groups for row in group["rows"]]


def is_chosen(row, pattern):
    return any(re.search(pattern, text) for text in [row["group"], row["name"], *sources(row)])


def run(words):
    parser = argparse.ArgumentParser(prog="report.py")
    parser.add_argument("--build", default=os.path.join(HERE, "../build/release"))
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--from", dest="earlier", metavar="JSON")
    parser.add_argument("--markdown", action="store_true")
    parser.add_argument("pattern", nargs="?", default=".")
    options = parser.parse_args(words)
    if options.markdown and options.pattern != ".":
        raise Problem("the document's table has all rows: no pattern with --markdown")
    if options.earlier:
        with open(options.earlier, encoding="utf-8") as file:
            report = json.load(file)
    else:
        rows = [row for row in read_rows(MARKS) if is_chosen(row, options.pattern)]
        if not rows:
            raise Problem(f"no row matches '{options.pattern}'")
        facts = facts_of_run(options.rounds)
        samples, problems = measure(options.build, rows, options.rounds)
        report = report_of(rows, samples, problems, facts)
        name = os.path.normpath(os.path.join(options.build, "../bench/report.json"))
        os.makedirs(os.path.dirname(name), exist_ok=True)
        with open(name, "w", encoding="utf-8") as file:
            json.dump(report, file, indent=1)
            file.write("\n")
        say(f"written: {os.path.relpath(name)}")
    print(table(report))
    if options.markdown:
        renew_document(TABLE_BEGIN, markdown(report))
    return 1 if report["problems"] else 0


if __name__ == "__main__":
    try:
        sys.exit(run(sys.argv[1:]))
    except Problem as problem:
        sys.exit(f"report.py: {problem}")
