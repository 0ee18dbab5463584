#include "tools/aehost/ExportedFunctions.h"

#include <elf.h>
#include <link.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <optional>
#include <string_view>

namespace Tw::Tools::AeHost {
namespace {

// Reads only the parts of the file the symbol table needs: a bundle built with the sanitizers runs to
// a hundred megabytes and more.
class ElfFile {
public:
    explicit ElfFile(const std::string& path) : in_(path, std::ios::binary) {
        in_.seekg(0, std::ios::end);
        size_ = in_ ? static_cast<uint64_t>(in_.tellg()) : 0;
    }

    // The `count` bytes at `offset`, or nothing where the file ends before them.
    std::optional<std::vector<char>> bytes(uint64_t offset, uint64_t count) {
        if (offset > size_ || size_ - offset < count) return std::nullopt;
        std::vector<char> bytes(count);
        in_.seekg(static_cast<std::streamoff>(offset));
        if (!in_.read(bytes.data(), static_cast<std::streamsize>(count))) return std::nullopt;
        return bytes;
    }

    // A copy of the `T` at `offset`, if the file holds one there.
    template <class T>
    std::optional<T> read(uint64_t offset) {
        const auto raw = bytes(offset, sizeof(T));
        if (!raw) return std::nullopt;
        T value;
        std::memcpy(&value, raw->data(), sizeof(T));
        return value;
    }

private:
    std::ifstream in_;
    uint64_t size_ = 0;
};

bool isExportedFunction(const ElfW(Sym) & symbol) {
    const unsigned binding = ELF64_ST_BIND(symbol.st_info);
    return ELF64_ST_TYPE(symbol.st_info) == STT_FUNC && symbol.st_shndx != SHN_UNDEF &&
           (binding == STB_GLOBAL || binding == STB_WEAK) &&
           ELF64_ST_VISIBILITY(symbol.st_other) == STV_DEFAULT;
}

}  // namespace

std::vector<std::string> exportedFunctions(const std::string& path) {
    ElfFile file(path);
    const auto header = file.read<ElfW(Ehdr)>(0);
    if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 ||
        header->e_ident[EI_CLASS] != (sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32) ||
        header->e_shentsize != sizeof(ElfW(Shdr)))
        return {};

    std::vector<std::string> names;
    for (std::size_t i = 0; i < header->e_shnum; ++i) {
        const auto table = file.read<ElfW(Shdr)>(header->e_shoff + i * sizeof(ElfW(Shdr)));
        if (!table || table->sh_type != SHT_DYNSYM || table->sh_entsize != sizeof(ElfW(Sym))) continue;
        const auto strings = file.read<ElfW(Shdr)>(header->e_shoff + table->sh_link * sizeof(ElfW(Shdr)));
        if (!strings) return {};
        const auto text = file.bytes(strings->sh_offset, strings->sh_size);
        const auto symbols = file.bytes(table->sh_offset, table->sh_size);
        if (!text || !symbols) return {};
        for (std::size_t at = 0; at + sizeof(ElfW(Sym)) <= symbols->size(); at += sizeof(ElfW(Sym))) {
            ElfW(Sym) symbol;
            std::memcpy(&symbol, symbols->data() + at, sizeof symbol);
            if (symbol.st_name >= text->size()) return {};
            if (!isExportedFunction(symbol)) continue;
            const std::string_view rest = std::string_view(text->data(), text->size()).substr(symbol.st_name);
            names.emplace_back(rest.substr(0, rest.find('\0')));
        }
    }
    return names;
}

}  // namespace Tw::Tools::AeHost
