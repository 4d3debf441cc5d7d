#pragma once

#include "hnc/listener.h"

// Settings of the home network controller. All but its own switch are kept by the
// listener: each operation is one exchange with it, of at most one second. Every
// operation returns 0, or -1 when the controller does not run, the request cannot be sent
// or no reply comes. settings.def says which failures are reported.
// cannot be sent or no reply comes; the messages are those of settings.def.
//
//   int hnc_getTopologyEnable(int instance, int* result);
//   int hnc_setTopologyEnable(int instance, int value);
//
// A getter's result is unchanged when the getter fails. A text is stored without its
// terminator, so the buffer must be zeroed. A flag is 1 when the answer begins with '1',
// else 0. A number is converted by atoi. An empty answer is a success: 0 or an empty
// text.
//
// A setter does not look at the reply, so a value that the listener refuses goes
// unnoticed. Texts are cut to 127 bytes. Where the row is CHECKED, a null text returns -1
// and nothing is sent; other setters must not be given one.

constexpr size_t kHncTextSize = sizeof(hnc_reply::value);

#define HNC_ARGUMENT_SENT int instance,
#define HNC_ARGUMENT_IGNORED [[maybe_unused]] int instance,
#define HNC_ARGUMENT_NONE
#define HNC_RESULT_FLAG int* result
#define HNC_RESULT_INTEGER int* result
#define HNC_RESULT_TEXT char(&result)[kHncTextSize]
#define HNC_VALUE_FLAG int value
#define HNC_VALUE_INTEGER int value
#define HNC_VALUE_TEXT const char* value

#define HNC_GETTER(name, key, type, instance, ...) \
  int hnc_get##name(HNC_ARGUMENT_##instance HNC_RESULT_##type);
#define HNC_PAIR(name, key, type, instance, ...)     \
  HNC_GETTER(name, key, type, instance, __VA_ARGS__) \
  int hnc_set##name(HNC_ARGUMENT_##instance HNC_VALUE_##type);
#include "hnc/settings.def"

// Creates (1) or removes (0) the marker file by which the watcher starts and stops the
// controller, and reports what it did; any other value does nothing. Always 0.
int hnc_setEnable(int instance, int value);
