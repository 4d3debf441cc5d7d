#include "trust/profile_form.h"

#include <sys/mount.h>
#include <unistd.h>

#include <cstdio>

#include "support/files.h"

static constexpr char kProfile[] = "/tmp/mt76xx_24.dat";
static constexpr char kMirror[] = "/tmp/mt76xx_24.dat.hnc";
static constexpr char kElsewhere[] = "/tmp/elsewhere.dat";

const char* form_name(form which) {
  static constexpr const char* kNames[] = {"plain file", "symbolic link", "two names",
                                           "mount point"};
  return kNames[static_cast<int>(which)];
}

void unform_profile() {
  umount2(kProfile, MNT_DETACH);
  unlink(kProfile);
  unlink(kElsewhere);
}

static int make_form(form which) {
  switch (which) {
    case form::kPlain:
      return rename(kElsewhere, kProfile);
    case form::kSymbolicLink:
      return symlink(kElsewhere, kProfile);
    case form::kTwoNames:
      return link(kElsewhere, kProfile);
    case form::kMountPoint:
      write_file(kProfile, "");
      return mount(kElsewhere, kProfile, nullptr, MS_BIND, nullptr);
  }
  return -1;
}

void form_profile(form which, const std::string& content) {
  unform_profile();
  write_file(kElsewhere, content);
  write_file(kMirror, content);
  if (make_form(which) != 0) perror(form_name(which));
}
