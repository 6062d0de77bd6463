#include "elf_symbols.h"

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
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

struct loaded_object {
  std::string path;
  uint64_t bias;
  std::vector<std::pair<uint64_t, uint64_t>> segments; // run-time [start, end)
};

int collect(dl_phdr_info* info, size_t, void* data) {
  auto* objects = static_cast<std::vector<loaded_object>*>(data);
  loaded_object o;
  // The program itself has no name here; the kernel knows its file.
  o.path = info->dlpi_name && *info->dlpi_name ? info->dlpi_name : "/proc/self/exe";
  o.bias = info->dlpi_addr;
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    const ElfW(Phdr)& ph = info->dlpi_phdr[i];
    if (ph.p_type == PT_LOAD && (ph.p_flags & PF_X))
      o.segments.push_back({o.bias + ph.p_vaddr, o.bias + ph.p_vaddr + ph.p_memsz});
  }
  objects->push_back(std::move(o));
  return 0;
}

} // namespace

std::string elf_symbol_at(const std::string& path, uint64_t vaddr) {
  return covering(function_symbols(path), vaddr);
}

std::vector<std::string> symbolize(const std::vector<uint64_t>& addresses) {
  std::vector<loaded_object> objects;
  dl_iterate_phdr(collect, &objects);
  std::map<std::string, std::vector<function_symbol>> tables;
  std::vector<std::string> names;
  for (uint64_t a : addresses) {
    std::string name;
    for (const loaded_object& o : objects) {
      const bool inside = std::any_of(o.segments.begin(), o.segments.end(),
                                      [a](const auto& s) { return a >= s.first && a < s.second; });
      if (!inside) continue;
      auto table = tables.find(o.path);
      if (table == tables.end()) table = tables.emplace(o.path, function_symbols(o.path)).first;
      name = covering(table->second, a - o.bias);
      break;
    }
    names.push_back(name);
  }
  return names;
}
