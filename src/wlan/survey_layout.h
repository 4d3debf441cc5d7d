#pragma once

#include <cstddef>
#include <cstdint>

// Records of the site survey, in host byte order. An entry describes one neighbouring
// network; its layout is the driver's. Entries, and the bytes after them, are passed on
// unchanged.

constexpr uint32_t kSurveyEntryMax = 64;  // that a caller gets
constexpr size_t kSurveyEntrySize = 100;
constexpr size_t kSurveyTailSize = 360;

// The driver's answer to object query 0x069B.
struct survey_answer {
  uint32_t count;
  uint8_t entries[128][kSurveyEntrySize];
  uint8_t tail[kSurveyTailSize];
};
static_assert(sizeof(survey_answer) == 13164);
static_assert(offsetof(survey_answer, tail) == 12804);

struct survey_record {
  uint32_t count;  // at most kSurveyEntryMax
  uint8_t entries[kSurveyEntryMax][kSurveyEntrySize];
  uint8_t tail[kSurveyTailSize];
};
static_assert(sizeof(survey_record) == 6764);
static_assert(offsetof(survey_record, tail) == 6404);
