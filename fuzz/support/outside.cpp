#include "support/outside.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "lifecycle/state.h"
#include "support/check.h"
#include "support/daemon_state.h"
#include "support/profile_lines.h"
#include "wlan/driver_gate.h"

outside* simulated;

static constexpr presence kPresence[] = {
    {"/tmp/wlandbg", kConsoleOn},
    {"/tmp/auto_debug/rpc_dbg_en", kLogOn},
    {"/nvram/hnc_enable", kControllerOn},
    {"/tmp/factoryModeEnabled", kFactoryMode},
    {"/dev/sda1", kDrive},
    {"/tmp/mtk_bnd_file", kBandSteeringMarker},
    {"/tmp/wifi_restart", kRestarted},
    {"/nvram/MT7615_CALDATA1.bin", kCalibration1},
    {"/nvram/MT7615_CALDATA2.bin", kCalibration2},
    {"/nvram/backup_EEPROM_CALDATA", kCalibrationBackup},
    {"/nvram/MT76*", kEeprom},
    {"/tmp/l1profile.dat", kEeprom},
    {"/var/run/radstat*", kRadstatLink},
    {"/lib/modules/wifi/*", kModules},
    {"/nvram/mt7*", kModules},
    {"/tmp/*_1.dat", kPowerTables},
};

static bool named(std::string_view pattern, std::string_view path) {
  const size_t star = pattern.find('*');
  if (star == pattern.npos) return path == pattern;
  return path.starts_with(pattern.substr(0, star)) && path.ends_with(pattern.substr(star + 1));
}

bool outside_has(std::string_view path) {
  if (find_file(path) != nullptr) return true;
  for (const presence& row : kPresence) {
    if (named(row.path, path)) return (simulated->there & row.bit) != 0;
  }
  return path.ends_with(".ko") && (simulated->there & kModules) != 0;
}

outside_answer next_answer(answer_queue* queue) {
  if (queue->used >= queue->answers.size()) return {0, {}};
  return queue->answers[queue->used++];
}

static constexpr int kErrors[] = {ENOENT, EACCES,     EMFILE, ENOSPC, EIO,   EINTR,
                                  EXDEV,  EBUSY,      EROFS,  ENOMEM, EPERM, EDQUOT,
                                  EINVAL, EOPNOTSUPP, EAGAIN, EFAULT};

bool strike(uint8_t* how) {
  std::deque<fault>& faults = simulated->faults;
  if (faults.empty() || faults.front().calls_before-- != 0) return false;
  *how = faults.front().how;
  faults.pop_front();
  simulated->faults_struck = true;
  errno = kErrors[*how % std::size(kErrors)];
  return true;
}

int new_descriptor(descriptor_kind kind) {
  std::deque<outside_descriptor>& all = simulated->descriptors;
  size_t place = 0;
  while (place < all.size() && all[place].kind != descriptor_kind::kClosed)
    ++place;
  if (place == all.size()) all.emplace_back();
  all[place] = {};
  all[place].kind = kind;
  return kFirstDescriptor + static_cast<int>(place);
}

outside_descriptor* descriptor_of(int fd) {
  const int place = fd - kFirstDescriptor;
  const bool known = place >= 0 && place < static_cast<int>(simulated->descriptors.size());
  if (!known) broken("descriptor %d was never opened", fd);
  outside_descriptor* found = &simulated->descriptors[static_cast<size_t>(place)];
  if (found->kind == descriptor_kind::kClosed) broken("descriptor %d is closed", fd);
  return found;
}

unsigned outside_open_descriptors() {
  unsigned count = 0;
  for (const outside_descriptor& each : simulated->descriptors)
    count += each.kind != descriptor_kind::kClosed && !each.kept;
  return count;
}

outside_file* find_file(std::string_view path) {
  for (outside_file& file : simulated->files) {
    if (file.there && file.path == path) return &file;
  }
  return nullptr;
}

outside_file* make_file(std::string_view path) {
  outside_file* file = find_file(path);
  if (file != nullptr) return file;
  simulated->files.emplace_back();
  simulated->files.back().path = path;
  return &simulated->files.back();
}

int profile_number_of(std::string_view path) {
  if (path == "/tmp/mt76xx_24.dat") return 0;
  return path == "/tmp/mt76xx_5.dat" ? 1 : -1;
}

bool is_temporary(std::string_view path) {
  return path.starts_with("/tmp/wifitemp.24.") || path.starts_with("/tmp/wifitemp.5.");
}

// Not static, so that no compiler omits the copy.
char outside_scratch[0x10000];

void must_be_there(const void* start, size_t size) {
  CHECK(size <= sizeof outside_scratch);
  if (size > 0) memcpy(outside_scratch, start, size);
}

// Whatever texts the daemon was given, the only control bytes that it prints are line
// ends, tabs and those of its own colours.
static ssize_t read_console(void*, const char* bytes, size_t size) {
  static bool in_colour;
  for (const char c : std::string_view(bytes, size)) {
    if (in_colour && strchr("0123456789[;", c) != nullptr && c != '\0') continue;
    if (in_colour && c != 'm') broken("an escape sequence is printed that is no colour");
    const auto byte = static_cast<uint8_t>(c);
    in_colour = c == '\033';
    const bool control = (byte < ' ' && c != '\n' && c != '\t' && !in_colour) || byte == 0x7F;
    if (control) broken("the control byte %02x is printed", byte);
  }
  return static_cast<ssize_t>(size);
}

void outside_begin(outside* world) {
  simulated = world;
  restore_daemon_state();
  make_file("/tmp/mt76xx_24.dat")->content = kUsualProfile;
  make_file("/tmp/mt76xx_5.dat")->content = kUsualProfile;
  static FILE* quiet = fopencookie(nullptr, "w", {nullptr, read_console, nullptr, nullptr});
  stdout = stderr = quiet;
}

static FILE* const kOutput = stdout;
static FILE* const kErrorOutput = stderr;

void outside_end() {
  fflush(stdout);
  stdout = kOutput;
  stderr = kErrorOutput;
  simulated = nullptr;
}

static void apply_profile(std::string_view bytes) {
  const uint8_t how = take_byte(&bytes);
  outside_file* file = make_file((how & 1) == 0 ? "/tmp/mt76xx_24.dat" : "/tmp/mt76xx_5.dat");
  file->symlink = (how & 2) != 0;
  file->hard_linked = (how & 4) != 0;
  file->fifo = (how & 8) != 0;
  file->there = (how & 16) == 0;
  if ((how & 32) != 0) {
    file->content = bytes;
  } else {
    file->content = profile_with(file->content, bytes);
  }
}

static void apply_faults(std::string_view bytes) {
  while (!bytes.empty()) {
    const uint8_t before = take_byte(&bytes);
    simulated->faults.push_back({before, take_byte(&bytes)});
  }
}

static void apply_answer(answer_queue* queue, std::string_view bytes) {
  const uint8_t outcome = take_byte(&bytes);
  queue->answers.push_back({outcome, bytes});
}

// Sets how far the lifecycle is, without running it.
static void apply_progress(uint8_t progress) {
  drivers_inited = progress & 1;
  lifecycle.modules_loaded = (progress & 2) != 0;
}

void outside_apply(const record& what) {
  std::string_view bytes = what.bytes;
  switch (what.type) {
    case record_type::kDriver:
      apply_answer(&simulated->driver, bytes);
      return;
    case record_type::kCommand:
      apply_answer(&simulated->commands, bytes);
      return;
    case record_type::kPeer:
      apply_answer(&simulated->peers, bytes);
      return;
    case record_type::kProfile:
      apply_profile(bytes);
      return;
    case record_type::kWorld:
      simulated->there = take_u16(&bytes);
      simulated->board = take_byte(&bytes);
      apply_progress(take_byte(&bytes));
      return;
    case record_type::kFaults:
      apply_faults(bytes);
      return;
    case record_type::kCall:
    case record_type::kDatagram:
    case record_type::kWorker:
      return;
  }
}

static const char* profile_path(int number) {
  return number == 0 ? "/tmp/mt76xx_24.dat" : "/tmp/mt76xx_5.dat";
}

void outside_before_call() {
  for (int number : {0, 1})
    simulated->profiles[number] = {};
  simulated->faults_struck = false;
  simulated->no_socket = false;
}

static void check_profile(int number) {
  const profile_watch& watch = simulated->profiles[number];
  if (watch.allowed.empty()) return;
  const outside_file* file = find_file(profile_path(number));
  CHECK(file != nullptr);
  if (std::find(watch.allowed.begin(), watch.allowed.end(), file->content) == watch.allowed.end()) {
    broken("%s is neither old nor new", profile_path(number));
  }
  if (simulated->faults_struck || file->content == watch.allowed.front()) return;
  const outside_file* mirror = find_file(std::string(profile_path(number)) + ".hnc");
  CHECK(mirror != nullptr && mirror->content == file->content);
}

void outside_after_call() {
  for (int number : {0, 1})
    check_profile(number);
  for (const outside_file& file : simulated->files) {
    const bool left = file.there && is_temporary(file.path) && !simulated->faults_struck;
    if (left) broken("%s was left over", file.path.c_str());
  }
  if (outside_open_descriptors() != 0) broken("a descriptor is left open");
  if (!simulated->streams.empty()) broken("a stream is left open");
  if (!simulated->children.empty()) broken("a child was not waited for");
  if (!simulated->mappings.empty()) broken("a mapping is left");
}

void outside_run_worker(bool last) {
  if (simulated->worker == nullptr || (!last && !simulated->worker_there)) return;
  simulated->worker_runs = true;
  if (setjmp(simulated->worker_idle) == 0) simulated->worker(nullptr);
  simulated->worker_runs = false;
}
