#include "notes.h"

#include <sstream>

#include "text.h"

namespace {

#define QUEUE                                                                                 \
  "Queued: \"ok\" comes at once, the work is done later, one request at a time. The queue "   \
  "holds two, the one at work and one that waits; a further one takes the place of the "      \
  "one that waits, which is dropped without a word. wlan_init may follow wlan_load at once; " \
  "send nothing else until all is done, that is until wlan_get_btm_capable does not fail."
constexpr char kQueue[] = QUEUE;
constexpr char kInitQueue[] = QUEUE
    " Does nothing, though the answer is \"ok\", while this daemon has not loaded the drivers.";
constexpr char kRestartQueue[] = QUEUE
    " A restart that is next and has not begun takes in the radios of a further one. Does "
    "nothing, though the answer is \"ok\", while the drivers are not loaded and initialized.";
constexpr char kDriver[] = "Fails until the radios are up.";
constexpr char kStatistics[] =
    "Of the same radio. Until its statistics daemon has reported, there is no value.";
constexpr char kSteerKey[] =
    "Only stores it, once for all BSSs of the radio: wlan_set_hnc_steer_sta_type steers.";
constexpr char kStored[] = "Fails, or is empty, until it is set.";
constexpr char kDcs[] =
    "Stored in the profile. The channel selection daemon is told if it runs, and the answer is "
    "\"ok\" if it does not.";
constexpr char kDcsSwitch[] =
    "The channel selection daemon runs only when both switches are on and the 2.4 GHz profile has "
    "its radio on and its channel automatic.";
constexpr char kWps[] =
    "Does nothing, though the answer is \"ok\", unless the profile has radio, BSS and WPS on "
    "(RadioOn, BssEnabled, WscEnable). Fails when WscConfMethods does not permit the method.";
constexpr char kWpsOn[] =
    "Does nothing, though the answer is \"ok\", unless the profile has WPS on (WscEnable).";
constexpr char kController[] = "Fails while the home network controller does not run.";

// clang-format off
constexpr procedure_note kNotes[] = {
    {"WLAN_LOAD", "", kQueue},
    {"WLAN_INIT", "WLAN_LOAD", kInitQueue},
    {"WLAN_RESTART", "WLAN_LOAD WLAN_INIT", kRestartQueue},
    {"WLAN_RESTART_ALL", "WLAN_LOAD WLAN_INIT", kRestartQueue},
    {"WLAN_RESET", "", "Not queued: done when \"ok\" comes. Waits for a load at work; fails while an init or a restart is at work."},

    {"WLAN_SET_WPS_MODE", "", "Does nothing, though the answer is \"ok\": WPS is on where the profile says so (WscEnable)."},
    {"WLAN_SET_WPS_PUSHBUTTON", "WLAN_SET_ENABLE", kWps},
    {"WLAN_SET_WPS_PINSTART", "WLAN_SET_ENABLE", kWps},
    {"WLAN_SET_WPS_OOB", "", kWpsOn},
    {"WLAN_SET_WPS_CANCEL", "", kWpsOn},

    {"WLAN_GET_AP_SCAN_RESULT", "WLAN_AP_SCAN", "Exit status 4 means that the survey is not done yet: try again in a second."},
    {"WLAN_GET_AP_SCAN_STATUS", "WLAN_AP_SCAN", ""},
    {"WLAN_AP_AUTO_CHANNEL_SELECT", "", "Does nothing, though the answer is \"ok\", on boards without an MT7615."},

    {"WLAN_GET_CHANNEL_STATISTICS", "WLAN_SET_RAD_STAT_ENABLE", kStatistics},
    {"WLAN_GET_CHANNEL_NOISE_FLOOR", "WLAN_SET_RAD_STAT_ENABLE", kStatistics},
    {"WLAN_GET_RADIO_TX_PACKETS", "WLAN_SET_RAD_STAT_ENABLE", kStatistics},
    {"WLAN_GET_RADIO_RX_PACKETS", "WLAN_SET_RAD_STAT_ENABLE", kStatistics},
    {"WLAN_GET_RETRANSMISSION_METRIC", "WLAN_SET_RAD_STAT_ENABLE", kStatistics},
    {"WLAN_GET_RSSI_TABLE", "WLAN_SET_RAD_STAT_ENABLE", kStatistics},
    {"WLAN_GET_STEER_EVENT_REPORT", "WLAN_INIT", "Fails while the driver control daemon does not run; init starts it."},

    {"WLAN_GET_CHANNEL_UTILIZATION", "WLAN_INIT WLAN_SET_CHANNEL_UTILIZATION_ENABLE", "Of the same radio. Fails until both are done."},
    {"WLAN_GET_CHANNEL_UTILIZATION_ENABLE", "WLAN_INIT", kDriver},
    {"WLAN_SET_CHANNEL_UTILIZATION_ENABLE", "WLAN_INIT", kDriver},
    {"WLAN_GET_OPERATING_CLASS", "WLAN_INIT", kDriver},
    {"WLAN_GET_BTM_CAPABLE", "WLAN_INIT", kDriver},
    {"WLAN_SET_BTM_ENABLE", "WLAN_INIT", kDriver},

    {"WLAN_SET_HNC_STEER_STA_TYPE",
     "WLAN_INIT WLAN_SET_BTM_ENABLE WLAN_SET_HNC_ACTION_FRAME_MAC_ADDRESS "
     "WLAN_SET_HNC_ACTION_FRAME_PAYLOAD WLAN_SET_HNC_STEER_STA_MAC_ADDRESS "
     "WLAN_SET_HNC_STEER_BLACKLIST_ACTION WLAN_SET_HNC_STEER_BLACKLIST_TIMER",
     "This call steers, with what the calls before it have set on the same radio; what is not set "
     "anew is that of the last steer. Type 1 (BTM request) takes the action frame's MAC address and "
     "payload. Type 3 (disconnect) takes the station to steer; type 0 (blacklist) takes that, the "
     "blacklist action and, with action 2, the timer. Without an action the station goes on the "
     "access list. \"ok\" means that the driver took it, not that the station moved."},
    {"WLAN_SET_HNC_STEER_STA_MAC_ADDRESS", "", "Only stores it, once for all BSSs of the radio: wlan_set_hnc_steer_sta_type steers. For types 0 and 3; a BTM request goes to the action frame's MAC address."},
    {"WLAN_SET_HNC_STEER_BLACKLIST_ACTION", "", kSteerKey},
    {"WLAN_SET_HNC_STEER_BLACKLIST_TIMER", "WLAN_SET_HNC_STEER_BLACKLIST_ACTION", "Only stores it, once for all BSSs of the radio: wlan_set_hnc_steer_sta_type steers. Used with blacklist action 2 alone."},
    {"WLAN_SET_HNC_ACTION_FRAME_MAC_ADDRESS", "", kSteerKey},
    {"WLAN_SET_HNC_ACTION_FRAME_PAYLOAD", "", kSteerKey},
    {"WLAN_SET_HNC_ACTION_FRAME_CATEGORY_TYPE", "", "Only stores it, and nothing uses it: the frame that is sent has category 10 (WNM)."},
    {"WLAN_GET_HNC_STEER_STA_MAC_ADDRESS", "WLAN_SET_HNC_STEER_STA_MAC_ADDRESS", kStored},
    {"WLAN_GET_HNC_STEER_STA_TYPE", "WLAN_SET_HNC_STEER_STA_TYPE", kStored},
    {"WLAN_GET_HNC_STEER_BLACKLIST_ACTION", "WLAN_SET_HNC_STEER_BLACKLIST_ACTION", kStored},
    {"WLAN_GET_HNC_STEER_BLACKLIST_TIMER", "WLAN_SET_HNC_STEER_BLACKLIST_TIMER", kStored},
    {"WLAN_GET_HNC_ACTION_FRAME_CATEGORY_TYPE", "WLAN_SET_HNC_ACTION_FRAME_CATEGORY_TYPE", kStored},
    {"WLAN_GET_HNC_ACTION_FRAME_MAC_ADDRESS", "WLAN_SET_HNC_ACTION_FRAME_MAC_ADDRESS", kStored},
    {"WLAN_GET_HNC_ACTION_FRAME_PAYLOAD", "WLAN_SET_HNC_ACTION_FRAME_PAYLOAD", kStored},

    {"WLAN_SET_NA_STA_REQUEST_MAC_ADDRESS", "WLAN_SET_NONASSOC_STA__ENABLE", ""},
    {"WLAN_GET_NA_STA_REQUEST_MAC_ADDRESS", "WLAN_SET_NA_STA_REQUEST_MAC_ADDRESS", kStored},
    {"WLAN_GET_NA_STA_REPORT", "WLAN_SET_NONASSOC_STA__ENABLE WLAN_SET_NA_STA_REQUEST_MAC_ADDRESS", "Of the same radio. All is 0 until the station has been heard."},

    {"WLAN_SET_MSO_DCS_ON", "WLAN_SET_USER_DCS_ON", kDcsSwitch},
    {"WLAN_SET_USER_DCS_ON", "WLAN_SET_MSO_DCS_ON", kDcsSwitch},
    {"WLAN_SET_DCS_SERVING_CHANNEL_SAMPLE_TIME", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_SERVING_CHANNEL_SAMPLE_NUM", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_MEDIUM_UTILIZATION_THRESHOLD", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_OFF_CHANNEL_SCAN_PERIOD", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_OFF_CHANNEL_SCAN_SAMPLE_NUM", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_CHANNEL_SWITCH_TIME_WINDOW", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_CHANNEL_SWITCH_LIMITED_NUM", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_MEDIUM_UTILIZATION_WEIGHT", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_MEDIUM_UTILIZATION_LATEST_SAMPLE_WEIGHT", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_RADIO_CHANNEL_POWER_AJUSTER", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_RSSI_WEIGHT", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},
    {"WLAN_SET_DCS_DEBUG_LEVEL", "WLAN_SET_MSO_DCS_ON WLAN_SET_USER_DCS_ON", kDcs},

    {"WLAN_UNDO_PREK_OPERATION", "WLAN_SET_PREK_OPERATION", ""},
    {"WLAN_GET_PREK_STATUS", "WLAN_SET_PREK_OPERATION", ""},

    {"HNC_GET_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_GET_ACMENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_SET_ACMENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_GET_UPDATEFW_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_SET_UPDATEFW_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_GET_UPDATEFW_URL", "HNC_SET_ENABLE", kController},
    {"HNC_SET_UPDATEFW_URL", "HNC_SET_ENABLE", kController},
    {"HNC_GET_UPDATEFW_FILENAME", "HNC_SET_ENABLE", kController},
    {"HNC_SET_UPDATEFW_FILENAME", "HNC_SET_ENABLE", kController},
    {"HNC_GET_UPDATEFW_USERNAME", "HNC_SET_ENABLE", kController},
    {"HNC_SET_UPDATEFW_USERNAME", "HNC_SET_ENABLE", kController},
    {"HNC_GET_UPDATEFW_PASSWORD", "HNC_SET_ENABLE", kController},
    {"HNC_SET_UPDATEFW_PASSWORD", "HNC_SET_ENABLE", kController},
    {"HNC_GET_UPDATEFW_TIME", "HNC_SET_ENABLE", kController},
    {"HNC_SET_UPDATEFW_TIME", "HNC_SET_ENABLE", kController},
    {"HNC_GET_TOPOLOGYENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_SET_TOPOLOGYENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_GET_SUPPORTEDHNENUMBEROFENTRIES", "HNC_SET_ENABLE", kController},
    {"HNC_SET_SUPPORTEDHNENUMBEROFENTRIES", "HNC_SET_ENABLE", kController},
    {"HNC_GET_SUPPORTEDHNECONFIGONDEMAND", "HNC_SET_ENABLE", kController},
    {"HNC_SET_SUPPORTEDHNECONFIGONDEMAND", "HNC_SET_ENABLE", kController},
    {"HNC_GET_SUPPORTEDHNEMANUFACTURER", "HNC_SET_ENABLE", kController},
    {"HNC_SET_SUPPORTEDHNEMANUFACTURER", "HNC_SET_ENABLE", kController},
    {"HNC_GET_SUPPORTEDHNEMODELNAME", "HNC_SET_ENABLE", kController},
    {"HNC_SET_SUPPORTEDHNEMODELNAME", "HNC_SET_ENABLE", kController},
    {"HNC_GET_SUPPORTEDHNEMODELNUMBER", "HNC_SET_ENABLE", kController},
    {"HNC_SET_SUPPORTEDHNEMODELNUMBER", "HNC_SET_ENABLE", kController},
    {"HNC_GET_CLIENT_STEERING_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_SET_CLIENT_STEERING_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_GET_RRM_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_SET_RRM_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_GET_MSEARCH_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_SET_MSEARCH_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_GET_HNE_CONFIG_ATTEMPTS", "HNC_SET_ENABLE", kController},
    {"HNC_SET_HNE_CONFIG_ATTEMPTS", "HNC_SET_ENABLE", kController},
    {"HNC_GET_HNE_CONFIG_DURATION", "HNC_SET_ENABLE", kController},
    {"HNC_SET_HNE_CONFIG_DURATION", "HNC_SET_ENABLE", kController},
    {"HNC_GET_HNE_SECURITY_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_SET_HNE_SECURITY_ENABLE", "HNC_SET_ENABLE", kController},
    {"HNC_GET_HNE_TABLE_ENTRY", "HNC_SET_ENABLE", kController},
    {"HNC_SET_HNE_DEVICE_NAME", "HNC_SET_ENABLE", kController},
    {"HNC_GET_SUPPORTED_HNE_TABLE_ENTRY", "HNC_SET_ENABLE", kController},
    {"HNC_SET_SUPPORTED_HNE_ROW_STATUS", "HNC_SET_ENABLE", kController},
    {"HNC_SET_HNE_TABLE_ENTRY", "HNC_SET_ENABLE", kController},
};
// clang-format on

}  // namespace

std::span<const procedure_note> notes_all() {
  return kNotes;
}

const procedure_note* notes_find(const procedure_row& procedure) {
  for (const procedure_note& note : kNotes) {
    if (std::string_view(note.procedure) == procedure.name) return &note;
  }
  return nullptr;
}

std::vector<std::string> notes_needs(const procedure_row& procedure) {
  std::vector<std::string> names;
  const procedure_note* note = notes_find(procedure);
  std::istringstream stream(note == nullptr ? "" : note->needs);
  for (std::string name; stream >> name;)
    names.push_back(text_lower(name));
  return names;
}
