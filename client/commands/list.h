// "wificonf list": which procedures there are.
#pragma once

#include <string_view>
#include <vector>

#include "commands/session.h"

struct list_choice {
  std::string_view pattern = "";  // see lookup_matches
  const char* topic = nullptr;    // one of topics(); nullptr: of all
  bool active = false;            // without those that do nothing
};

std::vector<const procedure_row*> list_find(const list_choice& choice);

// Words: list [--active] [--topic TOPIC] [PATTERN], or list --topics.
exit_status run_list(const output_streams& streams, const client_options& options);
