// elf_names.h - words for the numbers of ELF headers. A number without a word is shown as it is.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LNF_ELF_DATA_FILE_ELF_NAMES_H
#define MEMDATA_LNF_ELF_DATA_FILE_ELF_NAMES_H

#include "platform/BasicTypes.h"

#include <elf.h>

namespace memdata {

inline constexpr u32 kARM_MACHINE = EM_ARM;         // 40
inline constexpr u32 kSOFT_PROCESSOR_MACHINE = 189; // of the KESTREL kind

struct ElfNameType {
    u32 number;
    const char* name;
};

inline constexpr ElfNameType kFILE_TYPE_NAMES[] = {
    {ET_NONE, "none"},
    {ET_REL, "relocatable"},
    {ET_EXEC, "executable"},
    {ET_DYN, "shared object"},
    {ET_CORE, "core"},
};

inline constexpr ElfNameType kMACHINE_NAMES[] = {
    {EM_NONE, "none"},
    {EM_386, "x86"},
    {EM_PPC, "PowerPC"},
    {EM_PPC64, "PowerPC 64"},
    {kARM_MACHINE, "ARM"},
    {EM_X86_64, "x86-64"},
    {EM_AARCH64, "AArch64"},
    {kSOFT_PROCESSOR_MACHINE, "KESTREL"},
    {EM_RISCV, "RISC-V"},
};

inline constexpr ElfNameType kSEGMENT_TYPE_NAMES[] = {
    {PT_NULL, "unused"},
    {PT_LOAD, "loadable"},
    {PT_DYNAMIC, "dynamic linking"},
    {PT_INTERP, "interpreter"},
    {PT_NOTE, "notes"},
    {PT_PHDR, "program headers"},
    {PT_TLS, "thread-local data"},
    {PT_GNU_EH_FRAME, "exception frames"},
    {PT_GNU_STACK, "stack"},
    {PT_GNU_RELRO, "read-only after relocation"},
};

inline constexpr ElfNameType kSECTION_TYPE_NAMES[] = {
    {SHT_NULL, "unused"},
    {SHT_PROGBITS, "contents"},
    {SHT_SYMTAB, "symbols"},
    {SHT_STRTAB, "strings"},
    {SHT_RELA, "relocations with addends"},
    {SHT_HASH, "symbol hash table"},
    {SHT_DYNAMIC, "dynamic linking"},
    {SHT_NOTE, "notes"},
    {SHT_NOBITS, "no contents"},
    {SHT_REL, "relocations"},
    {SHT_DYNSYM, "dynamic symbols"},
    {SHT_INIT_ARRAY, "constructors"},
    {SHT_FINI_ARRAY, "destructors"},
    {SHT_PREINIT_ARRAY, "early constructors"},
    {SHT_GROUP, "group"},
};

// Shown in this order.
inline constexpr ElfNameType kSEGMENT_FLAG_NAMES[] = {
    {PF_R, "read"},
    {PF_W, "write"},
    {PF_X, "execute"},
};
inline constexpr ElfNameType kSECTION_FLAG_NAMES[] = {
    {SHF_ALLOC, "allocated"},
    {SHF_WRITE, "write"},
    {SHF_EXECINSTR, "execute"},
    {SHF_MERGE, "merge"},
    {SHF_STRINGS, "strings"},
    {SHF_TLS, "thread-local"},
};

} // namespace memdata

#endif
