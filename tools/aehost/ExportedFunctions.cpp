#include "tools/aehost/ExportedFunctions.h"

#include <elf.h>
#include <link.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>

namespace Tw::Tools::AeHost {
namespace {

// A copy of the `T` at `offset`, if the file holds one there.
template <class T>
std::optional<T> readAt(const std::vector<char>& file, std::size_t offset) {
    if (offset > file.size() || file.size() - offset < sizeof(T)) return std::nullopt;
    T value;
    std::memcpy(&value, file.data() + offset, sizeof(T));
    return value;
}

bool isExportedFunction(const ElfW(Sym) & symbol) {
    const unsigned binding = ELF64_ST_BIND(symbol.st_info);
    return ELF64_ST_TYPE(symbol.st_info) == STT_FUNC && symbol.st_shndx != SHN_UNDEF &&
           (binding == STB_GLOBAL || binding == STB_WEAK) &&
           ELF64_ST_VISIBILITY(symbol.st_other) == STV_DEFAULT;
}

}  // namespace

std::vector<std::string> exportedFunctions(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> file{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const auto header = readAt<ElfW(Ehdr)>(file, 0);
    if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 ||
        header->e_ident[EI_CLASS] != (sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32) ||
        header->e_shentsize != sizeof(ElfW(Shdr)))
        return {};

    std::vector<std::string> names;
    for (std::size_t i = 0; i < header->e_shnum; ++i) {
        const auto table = readAt<ElfW(Shdr)>(file, header->e_shoff + i * sizeof(ElfW(Shdr)));
        if (!table || table->sh_type != SHT_DYNSYM || table->sh_entsize != sizeof(ElfW(Sym))) continue;
        const auto strings = readAt<ElfW(Shdr)>(file, header->e_shoff + table->sh_link * sizeof(ElfW(Shdr)));
        if (!strings || strings->sh_offset > file.size() ||
            file.size() - strings->sh_offset < strings->sh_size)
            return {};
        const std::string_view text(file.data() + strings->sh_offset, strings->sh_size);
        for (std::size_t at = 0; at + sizeof(ElfW(Sym)) <= table->sh_size; at += sizeof(ElfW(Sym))) {
            const auto symbol = readAt<ElfW(Sym)>(file, table->sh_offset + at);
            if (!symbol || symbol->st_name >= text.size()) return {};
            if (!isExportedFunction(*symbol)) continue;
            const std::string_view rest = text.substr(symbol->st_name);
            names.emplace_back(rest.substr(0, rest.find('\0')));
        }
    }
    return names;
}

}  // namespace Tw::Tools::AeHost
