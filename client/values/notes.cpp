#include "values/notes.h"

#include <sstream>

#include "base/text.h"

#define QUEUE                                                                                 \
  "Queued: \"ok\" comes at once, the work is done later, one request at a time. The queue "   \
  "holds two, the one at work and one that waits; a further one takes the place of the "      \
  "one that waits, which is dropped without a word. wlan_init may follow wlan_load at once; " \
  "send nothing else until all is done, that is until wlan_get_btm_capable does not fail."
static constexpr char kQueue[] = QUEUE;
static constexpr char kInitQueue[] = QUEUE
    " Does nothing, though the answer is \"ok\", while this daemon has not loaded the drivers.";
static constexpr char kRestartQueue[] = QUEUE
    " A restart that is next and has not begun takes in the radios of a further one. Does "
    "nothing, though the answer is \"ok\", while the drivers are not loaded and initialized.";
static constexpr char kDriver[] = "Fails until the radios are up.";
static constexpr char kStatistics[] =
    "Of the same radio. Until its statistics daemon has reported, there is no value.";
static constexpr char kSteerKey[] =
    "Only stores it, once for all BSSs of the radio: wlan_set_hnc_steer_sta_type steers.";
static constexpr char kStored[] = "Fails, or is empty, until it is set.";
static constexpr char kDcs[] =
    "Stored in the profile. The channel selection daemon is told if it runs, and the answer is "
    "\"ok\" if it does not.";
static constexpr char kDcsSwitch[] =
    "The channel selection daemon runs only when both switches are on and the 2.4 GHz profile has "
    "its radio on and its channel automatic.";
static constexpr char kWps[] =
    "Does nothing, though the answer is \"ok\", unless the profile has radio, BSS and WPS on "
    "(RadioOn, BssEnabled, WscEnable). Fails when WscConfMethods does not permit the method.";
static constexpr char kWpsOn[] =
    "Does nothing, though the answer is \"ok\", unless the profile has WPS on (WscEnable).";

// For procedures that depend on it and have no note of their own.
static constexpr std::string_view kControllerSwitch = "HNC_SET_ENABLE";
static constexpr char kController[] = "Fails while the home network controller does not run.";

// clang-format off
static constexpr procedure_note kNotes[] = {
    {"WLAN_LOAD", kQueue},
    {"WLAN_INIT", kInitQueue},
    {"WLAN_RESTART", kRestartQueue},
    {"WLAN_RESTART_ALL", kRestartQueue},
    {"WLAN_RESET", "Not queued: done when \"ok\" comes. Waits for a load at work; fails while an init or a restart is at work."},

    {"WLAN_SET_WPS_PUSHBUTTON", kWps},
    {"WLAN_SET_WPS_PINSTART", kWps},
    {"WLAN_SET_WPS_OOB", kWpsOn},
    {"WLAN_SET_WPS_CANCEL", kWpsOn},

    {"WLAN_GET_AP_SCAN_RESULT", "Exit status 4 means that the survey is not done yet: try again in a second."},
    {"WLAN_AP_AUTO_CHANNEL_SELECT", "Does nothing, though the answer is \"ok\", on boards without an MT7615."},

    {"WLAN_GET_CHANNEL_STATISTICS", kStatistics},
    {"WLAN_GET_CHANNEL_NOISE_FLOOR", kStatistics},
    {"WLAN_GET_RADIO_TX_PACKETS", kStatistics},
    {"WLAN_GET_RADIO_RX_PACKETS", kStatistics},
    {"WLAN_GET_RETRANSMISSION_METRIC", kStatistics},
    {"WLAN_GET_RSSI_TABLE", kStatistics},
    {"WLAN_GET_STEER_EVENT_REPORT", "Fails while the driver control daemon does not run; init starts it."},

    {"WLAN_GET_CHANNEL_UTILIZATION", "Of the same radio. Fails until both are done."},
    {"WLAN_GET_CHANNEL_UTILIZATION_ENABLE", kDriver},
    {"WLAN_SET_CHANNEL_UTILIZATION_ENABLE", kDriver},
    {"WLAN_GET_OPERATING_CLASS", kDriver},
    {"WLAN_GET_BTM_CAPABLE", kDriver},
    {"WLAN_SET_BTM_ENABLE", kDriver},

    {"WLAN_SET_HNC_STEER_STA_TYPE", "This call steers, with what the calls before it have set on the same radio; what is not set "
     "anew is that of the last steer. Type 1 (BTM request) takes the action frame's MAC address and "
     "payload. Type 3 (disconnect) takes the station to steer; type 0 (blacklist) takes that, the "
     "blacklist action and, with action 2, the timer. Without an action the station goes on the "
     "access list. \"ok\" means that the driver took it, not that the station moved."},
    {"WLAN_SET_HNC_STEER_STA_MAC_ADDRESS", "Only stores it, once for all BSSs of the radio: wlan_set_hnc_steer_sta_type steers. For types 0 and 3; a BTM request goes to the action frame's MAC address."},
    {"WLAN_SET_HNC_STEER_BLACKLIST_ACTION", kSteerKey},
    {"WLAN_SET_HNC_STEER_BLACKLIST_TIMER", "Only stores it, once for all BSSs of the radio: wlan_set_hnc_steer_sta_type steers. Used with blacklist action 2 alone."},
    {"WLAN_SET_HNC_ACTION_FRAME_MAC_ADDRESS", kSteerKey},
    {"WLAN_SET_HNC_ACTION_FRAME_PAYLOAD", kSteerKey},
    {"WLAN_SET_HNC_ACTION_FRAME_CATEGORY_TYPE", "Only stores it, and nothing uses it: the frame that is sent has category 10 (WNM)."},
    {"WLAN_GET_HNC_STEER_STA_MAC_ADDRESS", kStored},
    {"WLAN_GET_HNC_STEER_STA_TYPE", kStored},
    {"WLAN_GET_HNC_STEER_BLACKLIST_ACTION", kStored},
    {"WLAN_GET_HNC_STEER_BLACKLIST_TIMER", kStored},
    {"WLAN_GET_HNC_ACTION_FRAME_CATEGORY_TYPE", kStored},
    {"WLAN_GET_HNC_ACTION_FRAME_MAC_ADDRESS", kStored},
    {"WLAN_GET_HNC_ACTION_FRAME_PAYLOAD", kStored},

    {"WLAN_GET_NA_STA_REQUEST_MAC_ADDRESS", kStored},
    {"WLAN_GET_NA_STA_REPORT", "Of the same radio. All is 0 until the station has been heard."},

    {"WLAN_SET_MSO_DCS_ON", kDcsSwitch},
    {"WLAN_SET_USER_DCS_ON", kDcsSwitch},
    {"WLAN_SET_DCS_SERVING_CHANNEL_SAMPLE_TIME", kDcs},
    {"WLAN_SET_DCS_SERVING_CHANNEL_SAMPLE_NUM", kDcs},
    {"WLAN_SET_DCS_MEDIUM_UTILIZATION_THRESHOLD", kDcs},
    {"WLAN_SET_DCS_OFF_CHANNEL_SCAN_PERIOD", kDcs},
    {"WLAN_SET_DCS_OFF_CHANNEL_SCAN_SAMPLE_NUM", kDcs},
    {"WLAN_SET_DCS_CHANNEL_SWITCH_TIME_WINDOW", kDcs},
    {"WLAN_SET_DCS_CHANNEL_SWITCH_LIMITED_NUM", kDcs},
    {"WLAN_SET_DCS_MEDIUM_UTILIZATION_WEIGHT", kDcs},
    {"WLAN_SET_DCS_MEDIUM_UTILIZATION_LATEST_SAMPLE_WEIGHT", kDcs},
    {"WLAN_SET_DCS_RADIO_CHANNEL_POWER_AJUSTER", kDcs},
    {"WLAN_SET_DCS_RSSI_WEIGHT", kDcs},
    {"WLAN_SET_DCS_DEBUG_LEVEL", kDcs},
};
// clang-format on

std::span<const procedure_note> notes_all() {
  return kNotes;
}

const char* notes_text(const procedure_row& procedure) {
  for (const procedure_note& note : kNotes) {
    if (std::string_view(note.procedure) == procedure.name) return note.text;
  }
  return std::string_view(procedure.needs) == kControllerSwitch ? kController : "";
}

std::vector<std::string> notes_needs(const procedure_row& procedure) {
  std::istringstream stream(procedure.needs);
  std::vector<std::string> names;
  for (std::string name; stream >> name;)
    names.push_back(text_lower(name));
  return names;
}
