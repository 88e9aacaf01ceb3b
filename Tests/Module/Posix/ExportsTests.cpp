#include <elf.h>

#include <span>

#include "LoadedModule.h"

namespace {

template <class Item>
std::span<const Item> ItemsAt(const std::string& file, std::uint64_t offset, std::uint64_t count) {
    return {reinterpret_cast<const Item*>(file.data() + offset), count};
}

TEST(BinaryInterface, ExportsOnlyOneFunction) {
    const std::string file = ReadFile(ORV_MODULE_PATH);
    const Elf64_Ehdr& head = ItemsAt<Elf64_Ehdr>(file, 0, 1)[0];
    const auto sections = ItemsAt<Elf64_Shdr>(file, head.e_shoff, head.e_shnum);
    std::vector<std::string> exported;
    for (const Elf64_Shdr& section : sections) {
        if (section.sh_type != SHT_DYNSYM) continue;
        const char* const names = file.data() + sections[section.sh_link].sh_offset;
        for (const auto& symbol : ItemsAt<Elf64_Sym>(file, section.sh_offset, section.sh_size / section.sh_entsize)) {
            if (symbol.st_shndx == SHN_UNDEF || ELF64_ST_BIND(symbol.st_info) == STB_LOCAL) continue;
            exported.emplace_back(names + symbol.st_name);
        }
    }
    EXPECT_THAT(exported, testing::ElementsAre("GetComponentsModuleObject"));
}

}  // namespace
