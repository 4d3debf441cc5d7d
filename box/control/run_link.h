// What the process outside (gwbox run) and the box's first process say to each other over a
// socket pair, one byte a message. Its end, when the one outside is gone, ends the box.
#pragma once

constexpr char kLinkStopped = 'S';     // inside to outside: the payload was stopped (Ctrl-Z)
constexpr char kLinkContinue = 'C';    // outside to inside: let it go on, in the background
constexpr char kLinkForeground = 'F';  // outside to inside: let it go on with the terminal
