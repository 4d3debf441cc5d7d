#pragma once

#include <string>

// The 2.4 GHz profile in the forms that it may have on a box.

enum class form {
  kPlain,
  kSymbolicLink,
  kTwoNames,
  kMountPoint,  // a file bound over it
};

const char* form_name(form which);

// Puts the content there in that form, whatever form it had, and into the mirror.
void form_profile(form which, const std::string& content);

// Undoes what stands in the way of a plain file.
void unform_profile();
