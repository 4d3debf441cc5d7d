#include "lifecycle/power_tables.h"

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "profile/store.h"
#include "profile/values.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/planted.h"
#include "sys/quoting.h"
#include "sys/whole_file.h"

static constexpr int kCountryLimit = 6;
static constexpr int kStreamsLimit = 4;
static constexpr size_t kCommandSize = 128;

// Large enough for a country whose every character is quoted.
static constexpr size_t kWordSize = 4 * kCountryLimit + 3;

int isEtsiCountry(const char* code) {
  for (const char* etsi : {"EU", "IL", "AR"}) {
    if (strcmp(code, etsi) != 0) continue;
    printf("country code is %s\n", code);
    return 1;
  }
  return 0;
}

static void copy_table(const char* table, const char* country, const char* target) {
  char command[kCommandSize];
  snprintf(command, sizeof command, "cp /etc/Wireless/7615AP/%s_%s.dat %s", table, country, target);
  if (!planted_make_way(target, false)) return;
  run_command(command);
  planted_give_up(target);
}

static void setup_mt7615(const char* country) {
  static constexpr char kTable[] = "/tmp/.mt7615_SingleSKU.dat";
  static constexpr char kBeamforming[] = "/tmp/.mt7615_SingleSKU_BF.dat";
  const auto word = shell_word_of<kWordSize>(country);
  if (profile_number(bss_profile(kRadio5), "HT_TxStream", kStreamsLimit) == 3) {
    // FCC for every country, and no beam-forming table: kept on purpose.
    copy_table("SingleSKU_FCC_3_TxStream", word.text, kTable);
    return;
  }
  const bool etsi = isEtsiCountry(country) != 0;
  copy_table(etsi ? "SingleSKU_ETSI" : "SingleSKU_FCC", word.text, kTable);
  copy_table(etsi ? "SingleSKU_BF_ETSI" : "SingleSKU_BF_FCC", word.text, kBeamforming);
}

static void link_table(const char* country, int radio, const char* chip) {
  char link[40];
  char command[kCommandSize];
  snprintf(link, sizeof link, "/tmp/.mt%s_SingleSKU.dat", chip);
  snprintf(command, sizeof command, "ln -sf /tmp/%s_%d.dat %s", country, radio, link);
  // In place of a directory, "ln" would make its link inside it.
  if (!planted_make_way(link, true)) return;
  ex_cmd("setup_single_sku", command, nullptr);
  planted_give_up(link);
}

// Generates one radio's table if there is none yet, and links it. A table that another
// user made does not count.
static void setup_radio(int radio, const char* country, const char* chip) {
  const auto word = shell_word_of<kWordSize>(country);
  char table[kCommandSize];
  char command[kCommandSize];
  snprintf(table, sizeof table, "/tmp/%s_%d.dat", country, radio);
  planted_remove(table);
  if (!path_exists(table)) {
    snprintf(command, sizeof command, "/scripts/SKU_generator.sh %d %s %s", radio, word.text,
             isEtsiCountry(country) != 0 ? "ETSI" : "FCC");
    // The generator opens its table by name and must find one of ours.
    if (!planted_make_way(table, false)) return;
    ex_cmd("setup_single_sku", command, nullptr);
    planted_give_up(table);
  }
  link_table(word.text, radio, chip);
}

void setup_single_sku() {
  char country[kProfileFieldBuffer] = {};
  if (wifiprofile_getParam(bss_profile(kRadio24), "CountryCode", country, kCountryLimit) == 0) {
    country[0] = '\0';
  }
  if (hasMTK7615() != 0) {
    setup_mt7615(country);
    return;
  }
  setup_radio(kRadio24, country, "7603");
  if (isSingleBand() == 0) setup_radio(kRadio5, country, "7612");
}
