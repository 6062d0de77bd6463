// Names for code addresses, from the ELF symbol tables of the program and
// the libraries loaded in the process, read from their files when asked.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// For each address, "symbol+0xoffset" where a function symbol of the object
// that holds it covers it, else "".
std::vector<std::string> symbolize(const std::vector<uint64_t>& addresses);

// The function symbol of an ELF file covering `vaddr` (an address as the
// file's own program headers place it), as "name+0xoffset", or "".
std::string elf_symbol_at(const std::string& path, uint64_t vaddr);
