#pragma once

#include <cstring>

#include "hnc/listener.h"

// What the controller's operations share: the check that it runs, and one request with
// its error messages.

// What an operation prints on standard error when it fails, see hnc_exchange.
struct hnc_reports {
  // Text between the operation's name and "HNC Process is not running": ":" or " ". The
  // difference has no reason and is kept on purpose. Null: no message.
  const char* not_running;
  bool send_failed;
};

// Copies a text into a zeroed field of a request, cut to fit with its NUL.
template <size_t Size>
void hnc_put_text(char (&field)[Size], const char* text) {
  memcpy(field, text, strnlen(text, Size - 1));
}

[[nodiscard]] hnc_request hnc_make_request(uint32_t type, const char* key, uint32_t index);

// The controller counts as running while its marker file exists. Whatever watches the
// file starts and stops it.
constexpr char kHncMarker[] = "/nvram/hnc_enable";
[[nodiscard]] bool hnc_running();

// Sends the request of the operation `caller` and waits for the reply. False, with the
// messages that `reports` gives, when the controller does not run (nothing is sent then)
// or the exchange fails.
[[nodiscard]] bool hnc_exchange(const char* caller, const hnc_reports& reports,
                                const hnc_request& request, hnc_reply* reply);
