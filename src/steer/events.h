#pragma once

#include "steer/event_records.h"

// Steer events of a radio, from the driver control daemon: which stations were
// steered, how it ended, and when. `record` receives a steer_event_report
// (steer/event_records.h) and stays as it is on failure. 0, or -1 when
// the daemon cannot be reached, does not answer within two seconds or says
// that it could not deliver them, each reported.
int wlan_getSteerEventReport(int radio, steer_event_report* record);
