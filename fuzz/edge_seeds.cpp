#include "support/seeds.h"

// Inputs at the bounds: answers that fill their fields or end inside them, tables
// that announce as many rows as fit and one more, texts as long as the store takes and
// longer. They reach no code that shorter ones do not reach, so merging a corpus would
// drop them.

// The operations' numbers in their targets.
static constexpr unsigned kSettings = 0;
static constexpr unsigned kRows = 2;
static constexpr unsigned kShares = 3;
static constexpr unsigned kCounts = 5;
static constexpr unsigned kRssi = 6;
static constexpr unsigned kEvents = 8;
static constexpr unsigned kCountStations = 0;
static constexpr unsigned kListStations = 3;
static constexpr unsigned kBytes = 4;
static constexpr unsigned kSurvey = 8;
static constexpr unsigned kPower = 10;
static constexpr unsigned kProbes = 13;

static std::string peers(int count, const std::string& bytes) {
  std::string out;
  for (int i = 0; i < count; ++i)
    out += answer(record_type::kPeer, 0, bytes);
  return out;
}

// Values with and without a NUL at their end, in answers that end there or continue.
static void write_controller_edges(const std::filesystem::path& directory) {
  for (const size_t size : {130u, 131u, 132u, 133u, 1624u, 2859u, 2860u, 2861u}) {
    for (const unsigned number : {kSettings, kRows})
      write_seed(directory, "filled" + std::to_string(size) + "_" + std::to_string(number),
                 world(0xFFFF, 0, 3) + peers(7, std::string(size, '1')) + operation(number, 1));
  }
}

// A whole answer, one that ends early and one that says nothing new.
static void write_statistics_edges(const std::filesystem::path& directory) {
  for (const size_t size : {1u, 4u, 36u, 188u, 191u, 192u, 193u}) {
    for (const unsigned number : {kShares, kCounts, kRssi}) {
      std::string scene = world(0xFFFF, 0, 3);
      for (const std::string& bytes :
           {std::string(192, '\5'), std::string(size, '\7'), std::string(192, '\0')}) {
        scene += peers(number == kCounts ? 3 : 1, bytes) + operation(number, 1);
      }
      write_seed(directory, "short" + std::to_string(size) + "_" + std::to_string(number), scene);
    }
  }
}

static void write_event_edges(const std::filesystem::path& directory) {
  for (const unsigned count : {0u, 31u, 32u, 33u, 255u}) {
    std::string reply = pattern(404);
    reply.replace(0, 4, std::string(4, '\0'));
    reply.replace(396, 1, byte(count));
    for (const size_t size : {397u, 403u, 404u, 405u})
      write_seed(
          directory, "events" + std::to_string(count) + "_" + std::to_string(size),
          world(0xFFFF, 0, 3) + peers(1, (reply + "x").substr(0, size)) + operation(kEvents, 1));
  }
}

// Rows whose values rise, so that the last one decides; only zeros if `rising` is
// false.
static std::string table(unsigned count, size_t size, bool rising) {
  std::string bytes;
  for (size_t i = 0; i < size; ++i)
    bytes += static_cast<char>(rising ? 255 * i / size : 0);
  const std::string high(2, count == ~0u ? '\xff' : '\0');
  return bytes.replace(0, 4, u16(count) + high);
}

static void write_table_edges(const std::filesystem::path& directory, unsigned number,
                              const std::string& counts, size_t size, unsigned board) {
  for (const char c : counts + "\xff") {
    const unsigned count = c == '\xff' ? ~0u : static_cast<unsigned char>(c);
    for (const bool rising : {false, true}) {
      const std::string whole = answer(record_type::kDriver, 0, table(count, size, rising));
      std::string name = "table" + std::to_string(number);
      for (const size_t part : {size_t{count}, size})
        name.append("_").append(std::to_string(part));
      if (rising) name += "_rising";
      std::string scene = world(0xFFFF, board, 3);
      scene.append(whole).append(whole).append(operation(number, 1));
      write_seed(directory, name, scene);
    }
  }
}

// Reports of the station that is asked for, with the newest probe at the first and the
// last place and just outside.
static void write_probe_edges(const std::filesystem::path& directory) {
  for (const unsigned newest : {0u, 1u, 4u, 5u, 255u}) {
    for (const unsigned count : {1u, 16u, 17u}) {
      std::string report = pattern(1924);
      for (size_t i = 0; i < 16; ++i)
        report.replace(120 * i, 8, std::string("\2\0\x5e\0\0\3\4", 7) + byte(newest));
      report.replace(1920, 1, byte(count));
      write_seed(
          directory, "newest" + std::to_string(newest) + "_" + std::to_string(count),
          world(0xFFFF, 0, 3) + answer(record_type::kDriver, 0, report) + operation(kProbes, 1));
    }
  }
}

static void write_driver_edges(const std::filesystem::path& directory) {
  for (const unsigned number : {kCountStations, kListStations})
    write_table_edges(directory, number, "\x7f\x80\x81", 5124, 0);
  write_table_edges(directory, kBytes, "\7\x8\x9", 772, 0);
  write_table_edges(directory, kSurvey, "\x3f\x40\x41", 13164, 0);
  // Entries of ten bytes in 592, of sixteen in 948.
  write_table_edges(directory, kPower, "\x39\x3a\x3b\x3c", 592, 0);
  write_table_edges(directory, kPower, "\x39\x3a\x3b\x3c", 948, 2);
  write_probe_edges(directory);
}

// One request, as profile_fuzz.cpp takes it.
static std::string request(unsigned operation, unsigned index, const std::string& key,
                           const std::string& value, size_t max_len = 255) {
  return byte(operation) + u16(static_cast<unsigned>(max_len)) + u16(index) + u16(0) +
         byte(static_cast<unsigned>(key.size())) + key + text_item(value) + byte(0) + u16(0);
}

// Reads a value and a field (0, 1), replaces a field of a list (2), and writes a value,
// a field and a forced value (3, 5, 7).
static void write_profile_edges(const std::filesystem::path& directory) {
  for (const size_t length : {255u, 256u, 1566u, 1567u, 1568u, 1569u, 1695u, 1696u}) {
    const std::string name = std::to_string(length);
    const std::string value(length, 'v');
    const std::string list(length - 4, 'l');
    for (const unsigned operation : {3u, 7u})
      write_seed(directory, "value" + name + "_" + std::to_string(operation),
                 request(operation, 0, "SSID1", value) + "SSID1=Home");
    write_seed(directory, "field" + name, request(5, 1, "AuthMode", "OPN") + "AuthMode=" + list);
    write_seed(directory, "list" + name, request(2, 1, "AuthMode", "OPN") + list);
    for (const unsigned operation : {0u, 1u}) {
      for (const size_t max_len : {length - 1, length})
        write_seed(
            directory,
            "read" + name + "_" + std::to_string(operation) + std::to_string(length - max_len),
            request(operation, 0, "SSID1", "", max_len) + "SSID1=" + value + "\n");
    }
  }
  for (const size_t length : {30u, 31u, 32u})
    write_seed(directory, "key" + std::to_string(length),
               request(7, 0, std::string(length, 'K'), "value") + "SSID1=Home");
}

// Texts that contain a NUL, for types that start with a text and for those that start
// with an index.
static void write_filter_edges(const std::filesystem::path& directory) {
  const std::string text("\0\0\0\3a\0b\0", 8);
  for (unsigned number = 0; number < 200; ++number) {
    write_seed(directory, "nul" + std::to_string(number), u16(number) + text);
    write_seed(directory, "index_nul" + std::to_string(number),
               u16(number) + std::string("\0\0\0\1", 4) + text);
  }
}

// The first and last of the characters that are escaped and their neighbours, then
// invalid UTF-8 next to a backslash.
static void write_client_edges(const std::filesystem::path& directory) {
  static constexpr const char* kTexts[] = {
      "\x1f ~\x7f",         "\xc2\x80\xc2\x9f", "\xc2\xa0",
      "\xd8\x9b\xd8\x9c",   "\xd8\x9d",         "\xe2\x80\x8d\xe2\x80\x8e",
      "\xe2\x80\x8f",       "\xe2\x80\x90",     "\xe2\x80\xa7\xe2\x80\xa8",
      "\xe2\x80\xae",       "\xe2\x80\xaf",     "\xe2\x81\xa5\xe2\x81\xa6",
      "\xe2\x81\xa9",       "\xe2\x81\xaa",     "\xc1\xa1\\\x80",
      "\xe0\x9f\xbf\\",     "\xed\x9f\xbf\\",   "\xed\xa0\x80\\",
      "\xef\xbf\xbf\\",     "\xf0\x8f\xbf\xbf", "\xf4\x8f\xbf\xbf",
      "\xf4\x90\x80\x80\\", "\xf5\\",           "\xe2\x80\\"};
  unsigned number = 0;
  for (const char* text : kTexts)
    write_seed(directory, "text" + std::to_string(number++), byte(4) + u16(0) + text);
  // A reply that ends in the padding of its verifier.
  static constexpr char kReply[] = "\1\2\3\4\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0\5abcde";
  write_seed(directory, "cut_padding", byte(5) + u16(0) + std::string(kReply, sizeof kReply - 1));
}

void write_edges(const std::filesystem::path& root) {
  write_controller_edges(root / "answers");
  write_statistics_edges(root / "answers");
  write_event_edges(root / "answers");
  write_driver_edges(root / "driver");
  write_profile_edges(root / "profile");
  write_filter_edges(root / "xdr");
  write_client_edges(root / "client");
}
