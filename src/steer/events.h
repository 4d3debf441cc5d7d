#pragma once

#include "steer/event_records.h"

// Steer events of a radio, from the driver control daemon: which stations were steered,
// with what outcome, and when. `record` receives a steer_event_report
// (steer/event_records.h) and is unchanged on failure. 0, or -1, reported, when the
// daemon cannot be reached, does not answer within two seconds or could not deliver them.
int wlan_getSteerEventReport(int radio, steer_event_report* record);
