#pragma once

// Steps that init, restart and reset share. `caller` is the name in the message.

// Whether a load has inserted the modules; reported when none has.
[[nodiscard]] bool modules_inserted(const char* caller);

// Whether the home network controller's marker exists; reported when it does not.
[[nodiscard]] bool hnc_running(const char* caller);

// Notifies the controller that Wi-Fi is up again, or going down. Returns
// cfg_executecmd's result.
int notify_hnc(int up);
