// Messages between `gwbox run` and the box's first process over a socket pair, one byte each. The
// box ends when `gwbox run` closes its end.
#pragma once

constexpr char kLinkStopped = 'S';     // inside to outside: the payload was stopped (Ctrl-Z)
constexpr char kLinkContinue = 'C';    // outside to inside: continue it in the background
constexpr char kLinkForeground = 'F';  // outside to inside: continue it with the terminal
