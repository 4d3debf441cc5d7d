#pragma once

#include "wlan/survey_layout.h"

// The site survey, run by the driver, and the channel. One state serves both
// radios and lasts as long as the process: a survey that one radio started is
// the one that a query on the other asks about. RPC thread only.

constexpr int kSurveyNone = 0;
constexpr int kSurveyRunning = 1;
constexpr int kSurveyFailed = 2;
constexpr int kSurveyFinished = 3;

// Starts a survey. Returns 0; a refusal shows in the state.
int wlan_ApSiteSurvey(int bss);

// The state, brought up to date by asking the driver while a survey runs.
// Returns 0.
int wlan_ApSiteSurveyStatus(int bss, int* state);

// Asks the driver for the results whatever the state, and follows its answer.
// Returns 0 when they are there, 3 while the survey runs, -1 for a failure. The
// record is written in every case: the networks found so far while the survey
// runs, zeros after a failure. `*length` becomes its size.
constexpr int kSurveyStillRunning = 3;
int wlan_getApScanResult(int bss, survey_record* record, unsigned* length);

// Has the driver choose a channel. An MT7615 only; other boards report that they
// cannot. Returns 0.
int wlan_apAutoChannelSelect(int bss);

// The channel in use by the radio of a BSS. 0, also when no socket could be had
// and `*channel` stays as it is, or -1 when the driver does not say; both are
// reported.
int wlan_getCurrentChannel(int bss, int* channel);
