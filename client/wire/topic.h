// What a procedure is about, for people who look for one.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "wire/table.h"

// As headings, "Traffic and channel statistics" for one.
std::span<const char* const> topics();

// The topic of a procedure, one of topics().
const char* topic_of(const procedure_row& procedure);

// A topic as one word: "traffic-and-channel-statistics".
std::string topic_word(const char* topic);

// The topics that have the text in their word, blanks being dashes and capitals
// no difference; the one that is the text alone when there is one.
std::vector<const char*> topics_near(std::string_view text);
