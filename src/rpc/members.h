#pragma once

// Expansions of a row's members column where one definition needs several of
// them: a parameter list, an argument list and a trace of the same members.
//
// Here each member is a tuple (kind, type, name) in a sequence without commas.
// The two macros of an expansion take turns: each handles the tuple behind it
// and leaves the other's name for the next one, and END closes the last name.

#define INDEX(name) (index, int, name)
#define FIELD(type, name) (field, type, name)
#define ONLY_INDEX(name) (only, int, name)
#define ONLY(type, name) (only, type, name)

#define MEMBERS_JOIN(...) MEMBERS_JOIN_(__VA_ARGS__)
#define MEMBERS_JOIN_(...) __VA_ARGS__##_END

// int bss, string_t ssid,
#define PARAMETERS(members) MEMBERS_JOIN(PARAMETERS_A members)
#define PARAMETERS_A(kind, type, name) type name, PARAMETERS_B
#define PARAMETERS_B(kind, type, name) type name, PARAMETERS_A
#define PARAMETERS_A_END
#define PARAMETERS_B_END

// , bss, ssid
#define ARGUMENTS(members) MEMBERS_JOIN(ARGUMENTS_A members)
#define ARGUMENTS_A(kind, type, name) , name ARGUMENTS_B
#define ARGUMENTS_B(kind, type, name) , name ARGUMENTS_A
#define ARGUMENTS_A_END
#define ARGUMENTS_B_END

// Calls function(arguments..., last) where ARGUMENTS leads with a comma.
#define CALL(function, ...) CALL_(function, __VA_ARGS__)
#define CALL_(function, nothing, ...) function(__VA_ARGS__)

// "[ssid=%s]": what a setter shows of its input. A leading index is shown only
// where it is all there is.
#define SHOWN_FORMAT(members) MEMBERS_JOIN(SHOWN_FORMAT_A members)
#define SHOWN_FORMAT_A(kind, type, name) SHOWN_FORMAT_##kind(type, name) SHOWN_FORMAT_B
#define SHOWN_FORMAT_B(kind, type, name) SHOWN_FORMAT_##kind(type, name) SHOWN_FORMAT_A
#define SHOWN_FORMAT_A_END
#define SHOWN_FORMAT_B_END
#define SHOWN_FORMAT_index(type, name)
#define SHOWN_FORMAT_field(type, name) "[" #name "=" CONVERSION_##type "]"
#define SHOWN_FORMAT_only(type, name) "[" #name "=" CONVERSION_##type "]"

// , ssid
#define SHOWN_VALUES(members) MEMBERS_JOIN(SHOWN_VALUES_A members)
#define SHOWN_VALUES_A(kind, type, name) SHOWN_VALUES_##kind(name) SHOWN_VALUES_B
#define SHOWN_VALUES_B(kind, type, name) SHOWN_VALUES_##kind(name) SHOWN_VALUES_A
#define SHOWN_VALUES_A_END
#define SHOWN_VALUES_B_END
#define SHOWN_VALUES_index(name)
#define SHOWN_VALUES_field(name) , name
#define SHOWN_VALUES_only(name) , name

#define CONVERSION_int "%d"
#define CONVERSION_u_int "%u"
#define CONVERSION_u_short "%hu"
#define CONVERSION_bool_t "%d"
#define CONVERSION_string_t "%s"
