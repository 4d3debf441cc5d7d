#pragma once

#include <cstring>

#include "hnc/listener.h"

// What the controller's operations share: whether it runs, and one request with
// the messages that belong to it.

// What an operation says on standard error of its failures, see hnc_exchange.
struct hnc_reports {
  // What stands between the operation's name and "HNC Process is not running":
  // ":" or " ", which differ without a reason: kept on purpose. Null: no message.
  const char* not_running;
  bool send_failed;
};

// Copies a text into the zeroed field of a request: what fits with its NUL.
template <size_t Size>
void hnc_put_text(char (&field)[Size], const char* text) {
  memcpy(field, text, strnlen(text, Size - 1));
}

// A request without a value.
[[nodiscard]] hnc_request hnc_make_request(uint32_t type, const char* key, uint32_t index);

// The controller counts as running while its marker file is there; nothing else
// is asked. Whatever watches the file starts and stops it.
constexpr char kHncMarker[] = "/nvram/hnc_enable";
[[nodiscard]] bool hnc_running();

// Sends the request of the operation `caller` and waits for the reply. False,
// with the messages that `reports` names, when the controller does not run,
// nothing is sent then, and when the exchange fails.
[[nodiscard]] bool hnc_exchange(const char* caller, const hnc_reports& reports,
                                const hnc_request& request, hnc_reply* reply);
