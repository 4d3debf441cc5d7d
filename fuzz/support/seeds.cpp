#include "support/seeds.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

std::string byte(unsigned value) {
  return std::string(1, static_cast<char>(value));
}

std::string u16(unsigned value) {
  return byte(value & 0xFF) + byte(value >> 8 & 0xFF);
}

std::string text_item(const std::string& text) {
  return u16(static_cast<unsigned>(text.size())) + text;
}

std::string world(unsigned there, unsigned board, unsigned progress) {
  return make_record(record_type::kWorld, u16(there) + byte(board) + byte(progress));
}

std::string answer(record_type type, unsigned outcome, const std::string& bytes) {
  return make_record(type, byte(outcome) + bytes);
}

std::string operation(unsigned number, unsigned index) {
  return make_record(record_type::kCall, byte(number) + byte(index));
}

std::string pattern(size_t size) {
  std::string bytes;
  for (size_t i = 0; i < size; ++i)
    bytes += static_cast<char>(i % 40 < 4 ? 0 : i * 7);
  return bytes;
}

void write_seed(const std::filesystem::path& directory, const std::string& name,
                const std::string& bytes) {
  std::ofstream file(directory / name, std::ios::binary);
  file << bytes;
  if (file.flush()) return;
  fprintf(stderr, "%s cannot be written\n", name.c_str());
  exit(1);
}
