#include "values/payload.h"

// Meanings of single-value answers and of return codes.

using enum content;
using enum not_known;

static constexpr value_meaning kValues[] = {
    {"WLAN_GET_ASSOC_DEVICES_NUM", "", "stations associated with the BSS", kFree},
    {"WLAN_GET_CURRENT_CHANNEL", "", "channel number", kFree, kZero},
    {"WLAN_GET_AP_SCAN_STATUS", "", "0: none asked for, 1: running, 2: failed, 3: finished", kFree},
    {"WLAN_GET_RETRANSMISSION_METRIC", "%", "share of packets sent again", kFree, kMinusOne},
    {"WLAN_GET_BTM_CAPABLE", "", "1: 802.11v BSS transition management can be used", kFree},
    {"WLAN_GET_BTM_ENABLE", "", "1: 802.11v BSS transition management is on", kFree},
    {"WLAN_GET_CHANNEL_UTILIZATION_ENABLE", "", "1: the channel's utilization is measured", kFree},
    {"WLAN_GET_CHANNEL_UTILIZATION", "%", "share of time that the channel is busy", kFree},
    {"WLAN_GET_OPERATING_CLASS", "", "operating class of the channel, IEEE 802.11 annex E", kFree,
     kZero},
    {"WLAN_GET_HT_SUPPORT", "", "1: the wireless mode has 802.11n", kFree},
    {"WLAN_GET_VHT_SUPPORT", "", "1: the wireless mode has 802.11ac", kFree},
    {"WLAN_GET_HNC_STEER_STA_TYPE", "", "0: blacklist, 1: BSS transition request, 3: disconnect",
     kFree},
    {"WLAN_GET_HNC_STEER_BLACKLIST_ACTION", "", "0, 1, or 2: for the blacklist timer", kFree},
    {"WLAN_GET_HNC_STEER_BLACKLIST_TIMER", "s", "time of blacklist action 2", kFree},
    {"WLAN_GET_RADIO_MAX_BIT_RATE", "Mbit/s", "bit rate of the radio", kFree, kZero},
    {"WLAN_GET_ON_CHANNEL_MAX_TX_POWER_DBM", "dBm", "limit of the current channel", kFree},
    {"WLAN_GET_RADIO_MAX_TX_POWER_DBM", "dBm", "highest limit of all channels", kFree, kZero},
    {"WLAN_GET_BSS_HNC_SERVICE", "", "service of the BSS for the home network; 7: backhaul", kFree},
    {"WLAN_GET_PREK_STATUS", "",
     "0: calibrated, 2: calibrated, with a backup, 3: not calibrated, -1: incomplete", kFree},
    {"HNC_GET_HNE_CONFIG_ATTEMPTS", "", "attempts to configure an extender", kFree},
    {"HNC_GET_HNE_CONFIG_DURATION", "", "duration of the attempts, as the controller counts it",
     kFree},
    {"HNC_GET_ENABLE", "", "", kFree},
    {"HNC_GET_ACMENABLE", "", "", kFree},
    {"HNC_GET_UPDATEFW_ENABLE", "", "", kFree},
    {"HNC_GET_TOPOLOGYENABLE", "", "", kFree},
    {"HNC_GET_SUPPORTEDHNENUMBEROFENTRIES", "", "", kFree},
    {"HNC_GET_SUPPORTEDHNECONFIGONDEMAND", "", "", kFree},
    {"HNC_GET_CLIENT_STEERING_ENABLE", "", "", kFree},
    {"HNC_GET_RRM_ENABLE", "", "", kFree},
    {"HNC_GET_MSEARCH_ENABLE", "", "", kFree},
    {"HNC_GET_HNE_SECURITY_ENABLE", "", "", kFree},
    {"WLAN_GET_NONASSOC_STA_REPORT_CAPABLE", "", "", kFree},
    {"WLAN_GET_NONASSOC_STA__ENABLE", "", "", kFree},
    {"WLAN_GET_BS_ENABLE", "", "", kFree},
    {"WLAN_GET_BH_ENABLE", "", "", kFree},
    {"WLAN_GET_HNC_REPLICATE", "", "", kFree},
    {"WLAN_GET_HNC_WDS_MODE", "", "", kFree},
    {"WLAN_GET_WPS_UUID", "", "", kSecret},
    {"WLAN_GET_WPS_RESULT_STATUS", "", "", kFree},
    {"WLAN_GET_HNC_ACTION_FRAME_CATEGORY_TYPE", "", "", kName},
    {"WLAN_GET_HNC_ACTION_FRAME_PAYLOAD", "", "", kSecret},
    {"HNC_GET_UPDATEFW_URL", "", "", kSecret},
    {"HNC_GET_UPDATEFW_FILENAME", "", "", kName},
    {"HNC_GET_UPDATEFW_USERNAME", "", "", kSecret},
    {"HNC_GET_UPDATEFW_PASSWORD", "", "", kSecret},
    {"HNC_GET_UPDATEFW_TIME", "", "", kNumber},
    {"HNC_GET_SUPPORTEDHNEMANUFACTURER", "", "", kName},
    {"HNC_GET_SUPPORTEDHNEMODELNAME", "", "", kName},
    {"HNC_GET_SUPPORTEDHNEMODELNUMBER", "", "", kName},
    {"WLAN_GET_HNC_REPLICATE_RADIO", "", "", kNumber},
};

static constexpr value_meaning kNoMeaning = {"", "", ""};

std::span<const value_meaning> payload_values() {
  return kValues;
}

const value_meaning& payload_value(const procedure_row& procedure) {
  for (const value_meaning& value : kValues) {
    if (std::string_view(value.procedure) == procedure.name) return value;
  }
  return kNoMeaning;
}

const char* payload_codes(const procedure_row& procedure) {
  return procedure.update ? "1: written, 2: no change, 0: the call failed"
                          : "negative: the call failed";
}

bool payload_failed(const procedure_row& procedure, int32_t code) {
  return code < 0 || (code == 0 && procedure.update);
}
