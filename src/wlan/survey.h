#pragma once

#include "wlan/survey_layout.h"

// The site survey, run by the driver, and the channel. Both radios share one state, which
// lasts as long as the process: a query on one radio is about the survey started last, on
// either. RPC thread only.

constexpr int kSurveyNone = 0;
constexpr int kSurveyRunning = 1;
constexpr int kSurveyFailed = 2;
constexpr int kSurveyFinished = 3;

// Starts a survey. Returns 0; the state shows a refusal.
int wlan_ApSiteSurvey(int bss);

// The state, updated from the driver while a survey runs. Returns 0.
int wlan_ApSiteSurveyStatus(int bss, int* state);

// Asks the driver for the results whatever the state, and updates it. Returns 0 when they
// are there, kSurveyStillRunning, or -1 for a failure. The record is always written:
// while the survey runs, with the networks found so far; after a failure, with zeros.
// `*length` is set to its size.
constexpr int kSurveyStillRunning = 3;
int wlan_getApScanResult(int bss, survey_record* record, unsigned* length);

// Makes the driver choose a channel. MT7615 only; other boards report that they cannot.
// Returns 0.
int wlan_apAutoChannelSelect(int bss);

// The channel in use by the radio of a BSS. -1 when the driver does not answer. 0
// otherwise, even when no socket is available and `*channel` is unchanged. Both failures
// are reported.
int wlan_getCurrentChannel(int bss, int* channel);
