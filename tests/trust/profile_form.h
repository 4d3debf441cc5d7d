#pragma once

#include <string>

// The forms that the 2.4 GHz profile may have on a box.

enum class form {
  kPlain,
  kSymbolicLink,
  kTwoNames,
  kMountPoint,  // a file bind-mounted over it
};

const char* form_name(form which);

// Writes the content to the profile, in that form, and to the mirror.
void form_profile(form which, const std::string& content);

// Removes the profile in any of its forms.
void unform_profile();
