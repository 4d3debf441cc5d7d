#include "trust/profile_form.h"

#include <sys/mount.h>
#include <unistd.h>

#include <cstdio>

#include "support/files.h"
#include "support/gateway.h"

static constexpr char kElsewhere[] = "/tmp/elsewhere.dat";

const char* form_name(form which) {
  static constexpr const char* kNames[] = {"plain file", "symbolic link", "two names",
                                           "mount point"};
  return kNames[static_cast<int>(which)];
}

void unform_profile() {
  umount2(kProfile24, MNT_DETACH);
  unlink(kProfile24);
  unlink(kElsewhere);
}

static int make_form(form which) {
  switch (which) {
    case form::kPlain:
      return rename(kElsewhere, kProfile24);
    case form::kSymbolicLink:
      return symlink(kElsewhere, kProfile24);
    case form::kTwoNames:
      return link(kElsewhere, kProfile24);
    case form::kMountPoint:
      write_file(kProfile24, "");
      return mount(kElsewhere, kProfile24, nullptr, MS_BIND, nullptr);
  }
  return -1;
}

void form_profile(form which, const std::string& content) {
  unform_profile();
  write_file(kElsewhere, content);
  write_file(kMirror24, content);
  if (make_form(which) != 0) perror(form_name(which));
}
