#include "host/power_table.h"

#include <cstdio>

#include "base/files.h"

struct country_row {
  const char* code;
  const char* domain;
  int low_limit;   // dBm at 2.4 GHz
  int high_limit;  // dBm at 5 GHz
};

// The domain is the one in the files' names: FCC for all but three countries.
static constexpr country_row kCountries[] = {
    {"US", "FCC", 27, 26},  {"CA", "FCC", 27, 24},  {"BR", "FCC", 26, 24}, {"EU", "ETSI", 17, 20},
    {"IL", "ETSI", 17, 18}, {"AR", "ETSI", 20, 20}, {"DE", "FCC", 17, 20}, {"FR", "FCC", 17, 20},
    {"GB", "FCC", 17, 20},  {"JP", "FCC", 20, 20},
};

static constexpr int kLowChannels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
static constexpr int kHighChannels[] = {36, 40, 44, 48, 149, 153, 157, 161, 165};
static constexpr int kWidths[] = {20, 40, 80};

// Beam forming and more streams send more in one direction, which the limits allow for.
static constexpr int kBeamFormingLoss = 6;
static constexpr int kThreeStreamsLoss = 2;

template <size_t Count>
static void append_band(std::string& table, const char* band, const int (&channels)[Count],
                        int limit) {
  char part[32];
  table += std::string("Band: ") + band + "\n";
  for (int channel : channels) {
    snprintf(part, sizeof part, "Ch%-4d", channel);
    table += part;
    for (int width : kWidths) {
      snprintf(part, sizeof part, " %d.%d", limit - width / 40, width == 40 ? 5 : 0);
      table += part;
    }
    table += "\n";
  }
}

static std::string make_table(const country_row& country, int loss) {
  std::string table = std::string("# ") + country.code + ": channel, dBm at 20, 40, 80 MHz\n";
  append_band(table, "2.4G", kLowChannels, country.low_limit - loss);
  append_band(table, "5G", kHighChannels, country.high_limit - loss);
  return table;
}

static bool write_table(const std::string& directory, std::string kind, const country_row& country,
                        int loss) {
  kind.append("_").append(country.code).append(".dat");
  return file_write(directory + "/SingleSKU_" + kind, make_table(country, loss));
}

bool power_table_install(const std::string& directory) {
  for (const country_row& country : kCountries) {
    std::string domain = country.domain;
    if (!write_table(directory, domain, country, 0) ||
        !write_table(directory, "BF_" + domain, country, kBeamFormingLoss) ||
        !write_table(directory, "FCC_3_TxStream", country, kThreeStreamsLoss)) {
      return false;
    }
  }
  return true;
}
