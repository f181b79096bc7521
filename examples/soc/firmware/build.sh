#!/bin/sh
# build.sh [OUTPUT] - compiles the firmware; OUTPUT is ../app.elf by default. Debian: gcc-riscv64-unknown-elf.
# SPDX-License-Identifier: Apache-2.0
set -eu
output=$(realpath "${1:-$(dirname "$0")/../app.elf}")
cd "$(dirname "$0")"
riscv64-unknown-elf-gcc -march=rv32i -mabi=ilp32 -mno-relax -Os -ffreestanding -nostdlib -Wall -Wextra -Werror \
    -fno-asynchronous-unwind-tables -s -Wl,--build-id=none -Wl,-z,max-page-size=16 -T soc.ld start.S main.c -o "$output"
