#include "host/module_image.h"

#include <elf.h>
#include <cstring>

// An object file with a section of "key=value" texts, and the one that names the sections.
static constexpr std::string_view kSectionNames{"\0.modinfo\0.shstrtab\0", 20};
static constexpr unsigned kModinfoName = 1, kShstrtabName = 10;  // offsets in the above
static constexpr unsigned kSections = 3;                         // with the empty one

static std::string module_information(const std::string& name) {
  std::string text;
  for (const std::string& line :
       {std::string("license=Proprietary"), "description=" + name + " access point driver (gwbox)",
        std::string("depends="), "name=" + name, std::string("vermagic=gwbox")}) {
    text.append(line).push_back(0);
  }
  return text;
}

static void append_record(std::string& image, const void* record, size_t size) {
  image.append(static_cast<const char*>(record), size);
}

static Elf64_Shdr section(unsigned name, unsigned type, size_t offset, size_t size) {
  Elf64_Shdr header = {};
  header.sh_name = name;
  header.sh_type = type;
  header.sh_flags = type == SHT_PROGBITS ? SHF_ALLOC : 0;
  header.sh_offset = offset;
  header.sh_size = size;
  header.sh_addralign = 1;
  return header;
}

std::string module_image_make(const std::string& name) {
  std::string information = module_information(name), image;
  Elf64_Ehdr file = {};
  memcpy(file.e_ident, ELFMAG, SELFMAG);
  file.e_ident[EI_CLASS] = ELFCLASS64;
  file.e_ident[EI_DATA] = ELFDATA2LSB;
  file.e_ident[EI_VERSION] = EV_CURRENT;
  file.e_type = ET_REL;
  file.e_machine = EM_X86_64;
  file.e_version = EV_CURRENT;
  file.e_ehsize = sizeof file;
  file.e_shentsize = sizeof(Elf64_Shdr);
  file.e_shnum = kSections;
  file.e_shstrndx = kSections - 1;
  file.e_shoff = sizeof file;
  append_record(image, &file, sizeof file);
  size_t texts = sizeof file + kSections * sizeof(Elf64_Shdr);
  for (const Elf64_Shdr& header :
       {Elf64_Shdr{}, section(kModinfoName, SHT_PROGBITS, texts, information.size()),
        section(kShstrtabName, SHT_STRTAB, texts + information.size(), kSectionNames.size())}) {
    append_record(image, &header, sizeof header);
  }
  return image.append(information).append(kSectionNames);
}

std::string module_image_name(std::string_view image) {
  constexpr std::string_view kMark{"\0name=", 6};
  if (image.size() < sizeof(Elf64_Ehdr) || memcmp(image.data(), ELFMAG, SELFMAG) != 0) return "";
  size_t start = image.find(kMark);
  if (start == std::string_view::npos) return "";
  start += kMark.size();
  size_t end = image.find('\0', start);
  return end == std::string_view::npos ? "" : std::string(image.substr(start, end - start));
}
