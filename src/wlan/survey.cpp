#include "wlan/survey.h"

#include <cstdio>
#include <cstring>

#include "diag/trace.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/wext.h"

static constexpr unsigned kObjectSurvey = 0x069B;

static int survey_state = kSurveyNone;

// Asks for the results into `answer`, zeroed by the caller, and updates the survey's
// state.
static void query_results(int bss, survey_answer* answer) {
  switch (rtpriv_get_ioctl_2(bss, kRtprivObject, kObjectSurvey, answer, sizeof *answer)) {
    case 1:
      survey_state = kSurveyFinished;
      return;
    case kRtprivTryAgain:
      survey_state = kSurveyRunning;
      return;
    default:
      survey_state = kSurveyFailed;
  }
}

int wlan_ApSiteSurvey(int bss) {
  const bool accepted = rtpriv_set_ioctl(bss, kRtprivText, 0, "SiteSurvey=1") == 1;
  survey_state = accepted ? kSurveyRunning : kSurveyFailed;
  return 0;
}

int wlan_ApSiteSurveyStatus(int bss, int* state) {
  if (survey_state == kSurveyRunning) {
    survey_answer answer = {};
    query_results(bss, &answer);
  }
  *state = survey_state;
  return 0;
}

int wlan_getApScanResult(int bss, survey_record* record, unsigned* length) {
  survey_answer answer = {};
  query_results(bss, &answer);
  record->count = answer.count < kSurveyEntryMax ? answer.count : kSurveyEntryMax;
  memcpy(record->entries, answer.entries, sizeof record->entries);
  memcpy(record->tail, answer.tail, sizeof record->tail);
  *length = sizeof *record;
  if (survey_state == kSurveyFinished) return 0;
  return survey_state == kSurveyRunning ? kSurveyStillRunning : -1;
}

int wlan_apAutoChannelSelect(int bss) {
  if (hasMTK7615() == 0) {
    REV_ERROR("only MT7615 support manual trigger ACS. \n");
    return 0;
  }
  char command[64];
  snprintf(command, sizeof command, "iwpriv %s set AutoChannelSel=3", bss_interface(bss).text);
  ex_cmd(__func__, command, nullptr);
  return 0;
}

static bool fits_channel(long double value) {
  return value <= 2147483647.0L && value >= -2147483648.0L;
}

int wlan_getCurrentChannel(int bss, int* channel) {
  wireless_frequency frequency = {};
  switch (wireless_get_frequency(bss, &frequency)) {
    case wireless_result::kNoSocket:
      // Returns success: kept on purpose.
      REV_ERROR("socket failed\n");
      return 0;
    case wireless_result::kRefused:
      REV_ERROR("wlan_getCurrentChannel ioctl failed \n");
      return -1;
    case wireless_result::kDone:
      break;
  }
  long double value = frequency.mantissa;
  // Stop at the first power of ten that does not fit.
  for (int i = 0; i < frequency.exponent && fits_channel(value); ++i)
    value *= 10;
  *channel = fits_channel(value) ? static_cast<int>(value) : 0;
  return 0;
}
