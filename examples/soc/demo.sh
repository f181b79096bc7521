#!/usr/bin/env bash
# demo.sh LANEFILL [FOLDER] - puts the firmware into the memories of the example, for a simulator and for a device.
# SPDX-License-Identifier: Apache-2.0
#
# LANEFILL is the built tool; lanefill-mkbit, which makes a bit file to start from, stands beside it. Results stay in
# FOLDER, by default demo beside the tool. The first step that fails ends the demo with its status.
set -Eeuo pipefail

tool=$(realpath "$1")
here=$(realpath "$(dirname "$0")")
out=$(realpath -m "${2:-$(dirname "$tool")/demo}")
device=tq7b100
mkdir -p "$out/mem"
cd "$here"

trap 'echo "the demo FAILED" >&2' ERR

step() { printf '\n== %s\n' "$*"; }
run() { # shows a command line as one would type it, then runs it
    local shown="$*"
    shown=${shown//"$tool"/lanefill}
    printf '$ %s\n' "${shown//"$out"\//}"
    "$@"
}

step "The map: sixteen memories, four side by side, four rows"
run "$tool" map soc.bmm -p $device

step "For a simulator: a MEM file for each memory, and the map with what was found out about it"
run "$tool" -w on -p $device -bm soc.bmm -bd app.elf -bx "$out/mem" -o p "$out/annotated.bmm"
printf '    %s files in %s\n' "$(find "$out/mem" -name '*.mem' | wc -l)" "$out/mem"
grep -v '^//' "$out/mem/soc.ram_0.mem" | sed '/^$/d; s/^/    soc.ram_0.mem: /'

step "Where the program went: the first words of each segment, lane by lane"
python3 compare.py app.elf "$out/mem"

step "For the device: the same program into a finished bit file (a made-up one, since there is no design here)"
"$(dirname "$tool")/lanefill-mkbit" --device $device --seed 7 -o "$out/top.bit"
run "$tool" -w on -bm soc.bmm -bd app.elf -bt "$out/top.bit" -o b "$out/new.bit"

step "What changed: memories by name"
# Not equal, status 4, is what the old file has to be.
status=0
run "$tool" check "$out/top.bit" -bm soc.bmm -bd app.elf || status=$?
[ "$status" -eq 4 ] || { echo "the made-up bit file should differ (status 4), but: $status" >&2; false; }

step "What changed: frames and CRC words"
facts=$("$tool" devices $device)
python3 changes.py "$out/top.bit" "$out/new.bit" \
    "$(sed -n 's/^  frame  *\([0-9]*\) bits.*/\1/p' <<<"$facts")" \
    "$(sed -n 's/^  block RAM offset  *\([0-9]*\) frames/\1/p' <<<"$facts")"

step "The proof: the new bit file, decoded, holds the program"
run "$tool" check "$out/new.bit" -bm soc.bmm -bd app.elf

printf '\nAll of it is in %s\n' "$out"
