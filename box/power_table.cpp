#include "power_table.h"

#include <stdio.h>

#include "files.h"

struct country_row {
  const char* code;
  const char* domain;
  int low_limit;   // dBm at 2.4 GHz
  int high_limit;  // dBm at 5 GHz
};

static constexpr country_row COUNTRIES[] = {
    {"US", "FCC", 27, 26},  {"CA", "FCC", 27, 24},  {"BR", "FCC", 26, 24},
    {"EU", "ETSI", 17, 20}, {"IL", "ETSI", 17, 18}, {"AR", "ETSI", 20, 20},
};

static constexpr int LOW_CHANNELS[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
static constexpr int HIGH_CHANNELS[] = {36, 40, 44, 48, 149, 153, 157, 161, 165};
static constexpr int WIDTHS[] = {20, 40, 80};

// Beam forming and more streams send more in one direction, which the limits allow for.
static constexpr int BEAM_FORMING_LOSS = 6;
static constexpr int THREE_STREAMS_LOSS = 2;

template <size_t COUNT>
static void append_band(std::string& table, const char* band, const int (&channels)[COUNT],
                        int limit) {
  char part[32];
  table += std::string("Band: ") + band + "\n";
  for (int channel : channels) {
    snprintf(part, sizeof part, "Ch%-4d", channel);
    table += part;
    for (int width : WIDTHS) {
      snprintf(part, sizeof part, " %d.%d", limit - width / 40, width == 40 ? 5 : 0);
      table += part;
    }
    table += "\n";
  }
}

static std::string make_table(const country_row& country, int loss) {
  std::string table = std::string("# ") + country.code + ": channel, dBm at 20, 40, 80 MHz\n";
  append_band(table, "2.4G", LOW_CHANNELS, country.low_limit - loss);
  append_band(table, "5G", HIGH_CHANNELS, country.high_limit - loss);
  return table;
}

static bool write_table(const std::string& directory, std::string kind, const country_row& country,
                        int loss) {
  kind.append("_").append(country.code).append(".dat");
  return file_write(directory + "/SingleSKU_" + kind, make_table(country, loss));
}

bool power_table_install(const std::string& directory) {
  for (const country_row& country : COUNTRIES) {
    std::string domain = country.domain;
    if (!write_table(directory, domain, country, 0) ||
        !write_table(directory, "BF_" + domain, country, BEAM_FORMING_LOSS) ||
        !write_table(directory, "FCC_3_TxStream", country, THREE_STREAMS_LOSS)) {
      return false;
    }
  }
  return true;
}
