#include "topic.h"

#include <algorithm>

#include "text.h"

namespace {

constexpr const char* kLifecycle = "Lifecycle";
constexpr const char* kBss = "BSS and SSID";
constexpr const char* kSecurity = "Security";
constexpr const char* kAccess = "Access control and isolation";
constexpr const char* kServers = "RADIUS and accounting";
constexpr const char* kWps = "WPS";
constexpr const char* kStations = "Associated stations";
constexpr const char* kStatistics = "Traffic and channel statistics";
constexpr const char* kSurvey = "Site survey";
constexpr const char* kRadio = "Radio and channel";
constexpr const char* kRates = "Rates and PHY";
constexpr const char* kQos = "Quality of service";
constexpr const char* kSteering = "Client steering";
constexpr const char* kDcs = "Dynamic channel selection";
constexpr const char* kController = "Home network controller";
constexpr const char* kExtenders = "Home network extenders";

constexpr const char* kTopics[] = {kLifecycle, kBss,        kSecurity,   kAccess,   kServers, kWps,
                                   kStations,  kStatistics, kSurvey,     kRadio,    kRates,   kQos,
                                   kSteering,  kDcs,        kController, kExtenders};

// The first word that a name contains decides.
constexpr struct {
  const char* word;
  const char* topic;
} kRules[] = {
    {"_PREK_", kLifecycle},
    {"WLAN_LOAD", kLifecycle},
    {"WLAN_INIT", kLifecycle},
    {"WLAN_RESET", kLifecycle},
    {"_RESTART", kLifecycle},
    {"_CHECK_", kLifecycle},
    {"_RESTORE_", kLifecycle},
    {"_RADIUS_", kServers},
    {"_ACCT_", kServers},
    {"_WPS_", kWps},
    {"_DCS_", kDcs},
    {"_AP_SCAN", kSurvey},
    {"_AUTO_CHANNEL_SELECT", kSurvey},
    {"_UPDATEFW_", kExtenders},
    {"HNE", kExtenders},
    {"_STEER", kSteering},
    {"_BS_ENABLE", kSteering},
    {"_BTM_", kSteering},
    {"_ACTION_FRAME_", kSteering},
    {"_NA_STA_", kSteering},
    {"_NONASSOC_", kSteering},
    {"HNC_", kController},
    {"_BH_", kController},
    {"_MAC_ADDRESS_CONTROL", kAccess},
    {"_ISOLATE", kAccess},
    {"_MAX_STATION", kAccess},
    {"_STA_ASSOC_", kAccess},
    {"_WEIGHT", kAccess},
    {"_AIRTIME_", kAccess},
    {"_IGMP_", kAccess},
    {"_ASSOC_DEVICE", kStations},
    {"STATISTICS", kStatistics},
    {"_STATS", kStatistics},
    {"_BYTES_", kStatistics},
    {"_PACKETS", kStatistics},
    {"_NOISE_", kStatistics},
    {"_METRIC", kStatistics},
    {"_RSSI_TABLE", kStatistics},
    {"_RAD_STAT_", kStatistics},
    {"_UTILIZATION", kStatistics},
    {"_UPSTREAM", kStatistics},
    {"_WMM_", kQos},
    {"_OG_", kQos},
    {"_IC_", kQos},
    {"_QOS_", kQos},
    {"_WEP_", kSecurity},
    {"_WPA_", kSecurity},
    {"_ENCRYPTION_", kSecurity},
    {"_AUTHENTICATION_", kSecurity},
    {"_KEY", kSecurity},
    {"_BEACON_TYPE", kSecurity},
    {"_RATES", kRates},
    {"_RATE", kRates},
    {"_BITRATE", kRates},
    {"_PROTECTION", kRates},
    {"_THRESHOLD", kRates},
    {"_RETRY_", kRates},
    {"_HT_", kRates},
    {"_VHT_", kRates},
    {"_TX_BURST", kRates},
    {"_TX_PREAMBLE", kRates},
    {"_SHORT_SLOT", kRates},
    {"_GUARD_", kRates},
    {"_AMS_DU", kRates},
    {"_BA_", kRates},
    {"_BLOCK_ACK", kRates},
    {"_BEACON_INTERVAL", kRates},
    {"_DTIM_", kRates},
    {"_BEAMFORMING_", kRates},
    {"_BIT_RATE", kRates},
    {"_DOT11U_", kBss},
    {"_SSID", kBss},
    {"_ENTR", kBss},
    {"_BSSID", kBss},
    {"_VLAN", kBss},
    {"_NAME", kBss},
    {"_STATUS", kBss},
    {"WLAN_GET_ENABLE", kBss},
    {"WLAN_SET_ENABLE", kBss},
    {"", kRadio},
};

}  // namespace

std::span<const char* const> topics() {
  return kTopics;
}

const char* topic_of(const procedure_row& procedure) {
  for (const auto& rule : kRules) {
    if (std::string_view(procedure.name).find(rule.word) != std::string_view::npos)
      return rule.topic;
  }
  return kRadio;
}

std::string topic_word(const char* topic) {
  std::string word = text_lower(topic);
  std::replace(word.begin(), word.end(), ' ', '-');
  return word;
}

std::vector<const char*> topics_near(std::string_view text) {
  const std::string wanted = topic_word(std::string(text).c_str());
  std::vector<const char*> found;
  for (const char* topic : kTopics) {
    const std::string word = topic_word(topic);
    if (word == wanted) return {topic};
    if (word.find(wanted) != std::string::npos) found.push_back(topic);
  }
  return found;
}
