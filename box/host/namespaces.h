// The namespaces of a box.
//
// Root creates them directly. An ordinary user, and root without the capabilities that a box needs,
// as in most containers, gets a user namespace around them, in which it is root.
#pragma once

#include <sys/types.h>

// Whether the caller can create a box only in a new user namespace.
[[nodiscard]] bool namespaces_need_user();

// Forks into new namespaces, with USER into a new user namespace as well. Returns as fork does;
// reports a failure with what is missing.
[[nodiscard]] pid_t namespaces_clone(bool user);

// In a new user namespace: makes root there the same as the user UID and the group GID outside.
// Reports what failed and returns false.
[[nodiscard]] bool namespaces_map_root(uid_t uid, gid_t gid);

// Whether the kernel lets ordinary users create user namespaces, but gives them no rights there.
[[nodiscard]] bool namespaces_are_confined();

// Whether root is the only user here, so that no program can become another one.
[[nodiscard]] bool namespaces_have_root_alone();
