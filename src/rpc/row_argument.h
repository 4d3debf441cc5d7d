#pragma once

// ARGUMENT(stem, FIRST_##members): the argument type of a row in procedures.def, derived
// from its first member.
//
//   ARGUMENT(wlan_set_ssid, FIRST_INDEX(bss) ...)      wlan_set_ssid_1_argument
//   ARGUMENT(wlan_restart, FIRST_ONLY_INDEX(radio))    int
//   ARGUMENT(wlan_init, FIRST_NOTHING)                 void

#define FIRST_NOTHING IS, void,
#define FIRST_ONLY_INDEX(name) IS, int,
#define FIRST_ONLY(type, name) IS, type,
#define FIRST_SHARED(stem) STRUCTURE_OF, stem,
#define FIRST_INDEX(name) OWN_STRUCTURE, ,
#define FIRST_FIELD(type, name) OWN_STRUCTURE, ,

#define ARGUMENT(stem, ...) ARGUMENT_PICK(stem, __VA_ARGS__)
#define ARGUMENT_PICK(stem, how, what, ...) ARGUMENT_##how(stem, what)
#define ARGUMENT_IS(stem, type) type
#define ARGUMENT_STRUCTURE_OF(stem, other) other##_1_argument
#define ARGUMENT_OWN_STRUCTURE(stem, nothing) stem##_1_argument
