#include "trust/operations.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "support/files.h"
#include "support/lifecycle.h"
#include "support/wire.h"
#include "trust/profile_form.h"
#include "values/argument_check.h"
#include "values/argument_meanings.h"
#include "wire/lookup.h"
#include "wire/table.h"

static bool is_sequence(uint32_t number) {
  static constexpr uint32_t kNumbers[] = {kLoad, kInit, kReset, kRestartAll, kRestart};
  return std::find(std::begin(kNumbers), std::end(kNumbers), number) != std::end(kNumbers);
}

namespace {

// Arguments that make a procedure do more than its example does, and what is needed
// beforehand: a call with other arguments, of the same procedure unless another is named,
// or a shell command.
struct other_words {
  const char* procedure;
  std::vector<std::string> words;
  std::vector<std::string> before;
  const char* command;
  const char* procedure_before = nullptr;
};

}  // namespace

static const other_words kOtherWords[] = {
    {"wlan_set_wps_pushbutton", {"1"}, {}, nullptr},
    {"wlan_set_wps_pinstart", {"1", "12345670"}, {}, nullptr},
    {"wlan_set_wps_oob", {"1"}, {}, nullptr},
    {"wlan_set_wps_cancel", {"1"}, {}, nullptr},
    {"wlan_set_basic_authentication_modes", {"1", "None"}, {}, nullptr},
    {"wlan_set_wpa_encryption_modes", {"3", "TKIPEncryption"}, {}, nullptr},
    {"wlan_set_ssid_advertisement_enabled", {"3", "0"}, {}, nullptr},
    {"wlan_set_bh_enable", {"3", "0"}, {}, nullptr},
    {"wlan_set_hnc_wds_mode", {"3", "1"}, {}, nullptr},
    {"wlan_set_mso_dcs_on", {"1", "0"}, {"1", "1"}, nullptr},
    {"wlan_set_user_dcs_on", {"1", "0"}, {"1", "1"}, nullptr},
    {"wlan_set_dcs_serving_channel_sample_num", {"9", "11"}, {}, nullptr},
    {"wlan_set_dcs_medium_utilization_weight", {"9", "51"}, {}, nullptr},
    {"wlan_set_dcs_medium_utilization_latest_sample_weight", {"9", "51"}, {}, nullptr},
    {"wlan_set_dcs_radio_channel_power_ajuster", {"9", "1"}, {}, nullptr},
    {"wlan_set_hnc_steer_sta_type", {"3", "2"}, {}, nullptr},
    {"wlan_set_hnc_steer_sta_type", {"3", "3"}, {}, nullptr},
    {"wlan_set_bs_enable", {"0"}, {"1"}, nullptr},
    {"wlan_get_ap_scan_status", {"1"}, {"1"}, nullptr, "wlan_ap_scan"},
    {"hnc_set_enable", {"1", "0"}, {}, nullptr},
    {"hnc_set_enable", {"1", "1"}, {}, "rm -f /nvram/hnc_enable"},
    {"wlan_set_prek_operation",
     {"1", "1"},
     {},
     "rm -rf /nvram/backup_EEPROM_CALDATA /nvram/MT7615_CALDATA*"},
    {"wlan_undo_prek_operation",
     {"1"},
     {},
     "cd /nvram && mkdir -p backup_EEPROM_CALDATA && "
     "touch backup_EEPROM_CALDATA/MT7615_EEPROM_2G.bin MT7615_CALDATA1.bin MT7615_CALDATA2.bin"},
};

static request encode(const procedure_row& procedure, const std::vector<std::string>& words) {
  byte_string bytes;
  std::string error;
  if (!arguments_encode(procedure, words, bytes, error)) {
    fprintf(stderr, "%s: %s\n", procedure.name, error.c_str());
    exit(2);
  }
  return {procedure.number, std::string(bytes.begin(), bytes.end())};
}

static std::vector<std::string> example_of(const procedure_row& procedure) {
  std::vector<std::string> words;
  for (const argument_spec& argument : table_arguments(procedure)) {
    const meaning_entry* meaning = meanings_find(procedure, argument.name);
    words.push_back(meaning == nullptr ? "" : meaning->example);
  }
  return words;
}

static void prepare_procedure() {
  bring_up();
  restore_gateway();
}

static operation operation_of(const procedure_row& procedure, const std::string& name,
                              const std::vector<std::string>& words) {
  return {name,  encode(procedure, words), prepare_procedure, procedure.inert, false,
          false, name.starts_with("hnc_")};
}

static operation operation_of(const procedure_row& procedure, const std::string& name,
                              const other_words& other) {
  std::string text = name;
  for (const std::string& word : other.words)
    text += " " + word;
  operation one = operation_of(procedure, text, other.words);
  const other_words* row = &other;
  const procedure_row* before =
      other.procedure_before == nullptr ? &procedure : lookup_name(other.procedure_before);
  one.prepare = [row, before] {
    prepare_procedure();
    if (!row->before.empty()) serve_undisturbed(encode(*before, row->before));
    restore_gateway();
    if (row->command != nullptr) run(row->command);
  };
  return one;
}

// Its example depends on another procedure's call.
static bool needs_another(const std::string& name) {
  return std::any_of(std::begin(kOtherWords), std::end(kOtherWords), [&](const other_words& other) {
    return name == other.procedure && other.procedure_before;
  });
}

std::vector<operation> procedure_operations() {
  std::vector<operation> all;
  for (const procedure_row& procedure : table_procedures()) {
    if (is_sequence(procedure.number)) continue;
    const std::string name = lookup_display_name(procedure);
    if (!needs_another(name)) all.push_back(operation_of(procedure, name, example_of(procedure)));
    for (const other_words& other : kOtherWords) {
      if (name == other.procedure) all.push_back(operation_of(procedure, name, other));
    }
  }
  return all;
}

// Nothing is loaded, and no file exists that a load provides.
static void unload() {
  restore_gateway();
  serve_undisturbed({kReset, ""});
  run("rm -f /nvram/MT7*.bin /tmp/.mt7* /tmp/DE_*.dat /tmp/l1profile.dat");
}

static void load() {
  unload();
  serve_undisturbed({kLoad, xdr_word(1)});
}

static void init() {
  load();
  serve_undisturbed({kInit, ""});
}

// A restart ends where it began, so only a new child needs the preparation.
static void init_once() {
  bring_up();
  restore_gateway();
  unlink("/tmp/wifi_restart");
}

std::vector<operation> sequence_operations() {
  return {{"load", {kLoad, xdr_word(1)}, unload, false, true, true, false},
          {"init", {kInit, ""}, load, false, true, true, false},
          {"restart", {kRestartAll, ""}, init_once, false, true, false, false},
          {"reset", {kReset, ""}, init, false, true, true, false}};
}

static void form_kept_profile(form which) {
  unform_profile();
  restore_gateway();
  form_profile(which, read_file("/tmp/mt76xx_24.dat"));
}

// The store updates in place for two reasons: the path is a link, or the kernel refuses
// the rename.
std::vector<operation> in_place_operations() {
  const request call = {kSetSsid, xdr_word(1) + xdr_text("A name that is longer")};
  std::vector<operation> all;
  for (const form which : {form::kSymbolicLink, form::kTwoNames, form::kMountPoint}) {
    const std::string name = std::string("wlan_set_ssid, ") + form_name(which);
    all.push_back({name, call, [which] { form_kept_profile(which); }, false, false, false, false});
  }
  return all;
}
