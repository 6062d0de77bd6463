#include "elf_symbols.h"

#include <elf.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <map>

namespace {

struct function_symbol {
  uint64_t start, size;
  std::string name;
};

bool read_at(int fd, uint64_t offset, void* out, size_t bytes) {
  auto* p = static_cast<char*>(out);
  while (bytes > 0) {
    const ssize_t n = pread(fd, p, bytes, static_cast<off_t>(offset));
    if (n <= 0) return false;
    p += n, offset += static_cast<uint64_t>(n), bytes -= static_cast<size_t>(n);
  }
  return true;
}

// The function symbols of the file's full symbol table, or of its dynamic one
// when it has been stripped, sorted by address.
std::vector<function_symbol> function_symbols(const std::string& path) {
  std::vector<function_symbol> out;
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return out;
  Elf64_Ehdr eh;
  std::vector<Elf64_Shdr> sections;
  if (read_at(fd, 0, &eh, sizeof eh) && std::equal(eh.e_ident, eh.e_ident + SELFMAG, ELFMAG) &&
      eh.e_ident[EI_CLASS] == ELFCLASS64 && eh.e_shentsize == sizeof(Elf64_Shdr)) {
    sections.resize(eh.e_shnum);
    if (!read_at(fd, eh.e_shoff, sections.data(), sections.size() * sizeof(Elf64_Shdr)))
      sections.clear();
  }
  for (uint32_t wanted : {SHT_SYMTAB, SHT_DYNSYM}) {
    for (const Elf64_Shdr& table : sections) {
      if (table.sh_type != wanted || table.sh_link >= sections.size() || table.sh_entsize == 0)
        continue;
      const Elf64_Shdr& strings = sections[table.sh_link];
      std::vector<Elf64_Sym> symbols(table.sh_size / sizeof(Elf64_Sym));
      std::string names(strings.sh_size, '\0');
      if (!read_at(fd, table.sh_offset, symbols.data(), symbols.size() * sizeof(Elf64_Sym)) ||
          !read_at(fd, strings.sh_offset, &names[0], names.size()))
        continue;
      for (const Elf64_Sym& s : symbols)
        if (ELF64_ST_TYPE(s.st_info) == STT_FUNC && s.st_value != 0 && s.st_name < names.size())
          out.push_back({s.st_value, s.st_size, names.c_str() + s.st_name});
    }
    if (!out.empty()) break;
  }
  close(fd);
  std::sort(out.begin(), out.end(),
            [](const function_symbol& a, const function_symbol& b) { return a.start < b.start; });
  return out;
}

std::string covering(const std::vector<function_symbol>& symbols, uint64_t vaddr) {
  auto it = std::upper_bound(symbols.begin(), symbols.end(), vaddr,
                             [](uint64_t v, const function_symbol& s) { return v < s.start; });
  // The nearest symbols at or below vaddr; a few, since aliases share a start
  // and a local label may sit inside a function.
  for (int tried = 0; it != symbols.begin() && tried < 16; ++tried) {
    --it;
    if (vaddr < it->start + std::max<uint64_t>(it->size, 1)) {
      char offset[32];
      std::snprintf(offset, sizeof offset, "+0x%" PRIx64, vaddr - it->start);
      return it->name + offset;
    }
  }
  return "";
}

// A file mapping of the process, as /proc/self/maps shows it. The maps are
// read rather than the dynamic loader's list of objects, because the client
// lives in a namespace of its own, which that list would be.
struct file_mapping {
  uint64_t start, end, offset;
  std::string path;
};

std::vector<file_mapping> file_mappings() {
  std::vector<file_mapping> out;
  FILE* maps = std::fopen("/proc/self/maps", "re");
  if (maps == nullptr) return out;
  char line[4096];
  while (std::fgets(line, sizeof line, maps)) {
    file_mapping m;
    int path_at = 0;
    if (std::sscanf(line, "%" SCNx64 "-%" SCNx64 " %*s %" SCNx64 " %*s %*s %n", &m.start, &m.end,
                    &m.offset, &path_at) < 3 ||
        line[path_at] != '/')
      continue;
    m.path.assign(line + path_at);
    while (!m.path.empty() && m.path.back() == '\n') m.path.pop_back();
    out.push_back(std::move(m));
  }
  std::fclose(maps);
  return out;
}

// The address the file's own program headers give the byte at `offset`, or 0
// when no loaded segment holds it.
uint64_t vaddr_of_offset(const std::string& path, uint64_t offset) {
  uint64_t vaddr = 0;
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return 0;
  Elf64_Ehdr eh;
  if (read_at(fd, 0, &eh, sizeof eh) && std::equal(eh.e_ident, eh.e_ident + SELFMAG, ELFMAG) &&
      eh.e_ident[EI_CLASS] == ELFCLASS64 && eh.e_phentsize == sizeof(Elf64_Phdr)) {
    for (unsigned i = 0; i < eh.e_phnum && vaddr == 0; ++i) {
      Elf64_Phdr ph;
      if (!read_at(fd, eh.e_phoff + i * sizeof ph, &ph, sizeof ph)) break;
      if (ph.p_type == PT_LOAD && offset >= ph.p_offset && offset < ph.p_offset + ph.p_filesz)
        vaddr = offset - ph.p_offset + ph.p_vaddr;
    }
  }
  close(fd);
  return vaddr;
}

} // namespace

std::string elf_symbol_at(const std::string& path, uint64_t vaddr) {
  return covering(function_symbols(path), vaddr);
}

std::vector<std::string> symbolize(const std::vector<uint64_t>& addresses) {
  const std::vector<file_mapping> mappings = file_mappings();
  std::map<std::string, std::vector<function_symbol>> tables;
  std::vector<std::string> names;
  for (uint64_t a : addresses) {
    std::string name;
    const auto m = std::find_if(mappings.begin(), mappings.end(),
                                [a](const file_mapping& m) { return a >= m.start && a < m.end; });
    if (m != mappings.end()) {
      auto table = tables.find(m->path);
      if (table == tables.end()) table = tables.emplace(m->path, function_symbols(m->path)).first;
      const uint64_t vaddr = vaddr_of_offset(m->path, a - m->start + m->offset);
      if (vaddr != 0) name = covering(table->second, vaddr);
    }
    names.push_back(name);
  }
  return names;
}
