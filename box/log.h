// `gwbox log`: prints the request journal of the box it runs in.
#pragma once

// JSON: the lines as they are; else one readable line per request. FOLLOW: goes on until it is
// interrupted. Returns the exit status.
int log_print(bool follow, bool json);
