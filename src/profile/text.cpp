#include "profile/text.h"

#include <cstdlib>
#include <cstring>

bool parse_setting(std::string_view line, setting* out) {
  const size_t equals = line.find('=');
  if (equals == line.npos) return false;
  out->key = front_part(line, equals);
  out->value = back_part(line, equals + 1);
  // The last character is taken to be the newline even if it is not.
  if (!out->value.empty()) out->value.remove_suffix(1);
  return true;
}

bool find_field(std::string_view list, int index, std::string_view* field, bool* last) {
  for (int number = 0;; ++number) {
    const size_t end = list.find(';');
    if (number == index) {
      *last = end == list.npos;
      *field = front_part(list, end);
      return true;
    }
    if (end == list.npos) return false;
    list.remove_prefix(end + 1);
  }
}

static int count_separators(std::string_view list) {
  int count = 0;
  for (const char c : list)
    count += c == ';';
  return count;
}

int replace_field(std::string_view list, std::string_view field, int index, char* out,
                  size_t size) {
  if (index < 0) return -1;
  std::string_view old;
  bool last = false;
  std::string_view before = list;
  std::string_view after = "";
  size_t padding = 0;
  if (find_field(list, index, &old, &last)) {
    before = front_part(list, static_cast<size_t>(old.data() - list.data()));
    after = back_part(list, before.size() + old.size());
  } else {
    padding = static_cast<size_t>(index - count_separators(list));
  }
  const size_t length = before.size() + padding + field.size() + after.size();
  if (length >= size) return -1;
  char* end = out;
  memcpy(end, before.data(), before.size());
  end += before.size();
  memset(end, ';', padding);
  end += padding;
  memcpy(end, field.data(), field.size());
  end += field.size();
  memcpy(end, after.data(), after.size());
  out[length] = '\0';
  return static_cast<int>(length);
}

void text_reserve(text_buffer* text, size_t capacity) {
  if (text->failed || capacity <= text->capacity) return;
  char* grown = static_cast<char*>(realloc(text->data, capacity));
  text->failed = grown == nullptr;
  if (text->failed) return;
  text->data = grown;
  text->capacity = capacity;
}

void text_append(text_buffer* text, std::string_view part) {
  if (text->length + part.size() > text->capacity) {
    text_reserve(text, 2 * (text->length + part.size()));
  }
  if (text->failed) return;
  memcpy(text->data + text->length, part.data(), part.size());
  text->length += part.size();
}

void text_release(text_buffer* text) {
  free(text->data);
  *text = {};
}
