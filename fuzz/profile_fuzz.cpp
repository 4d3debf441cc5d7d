#include "profile/store.h"

#include <memory>

#include "support/check.h"
#include "support/outside.h"
#include "support/profile_model.h"

// The profile store compared with its model. The input: one byte for the operation, two
// for the largest length, four for the index, then key and value of two requests, each
// after a length of one byte (keys) or two (values), then the profile.

namespace {

enum operation_kind : uint8_t {
  kValue,
  kField,
  kReplace,
  kUpdate,
  kUpdateTwo,
  kUpdateField,
  kUpdateTwoFields,
  kForce,
  kForceField,
  kForceTwo,
};

struct scenario {
  operation_kind operation;
  uint16_t max_len;
  model_request first, second;
  std::string profile;
};

}  // namespace

static constexpr char kPath[] = "/tmp/mt76xx_24.dat";
static constexpr uint16_t kMostLength = 2000;

// As a C string: a NUL ends it.
static std::string text_of(std::string_view bytes) {
  return std::string(bytes.substr(0, bytes.find('\0')));
}

static model_request take_request(std::string_view* bytes, int index) {
  const uint8_t key_length = take_byte(bytes);
  const std::string key = text_of(take_bytes(bytes, key_length));
  const uint16_t value_length = take_u16(bytes);
  return {key, index, text_of(take_bytes(bytes, value_length))};
}

static scenario parse(std::string_view bytes) {
  scenario out = {};
  out.operation = static_cast<operation_kind>(take_byte(&bytes) % (kForceTwo + 1));
  out.max_len = take_u16(&bytes) % kMostLength;
  const int index = static_cast<int>(take_u32(&bytes));
  out.first = take_request(&bytes, index);
  out.second = take_request(&bytes, index < 100 ? index + 1 : index);
  out.profile = bytes;
  return out;
}

static void compare(int found, const std::string& got, const std::optional<std::string>& expected) {
  CHECK(found == (expected ? 1 : 0));
  if (expected && got != *expected) broken("'%s' instead of '%s'", got.c_str(), expected->c_str());
}

static void read_value(const scenario& what) {
  // Exactly as large as it must be.
  const std::unique_ptr<char[]> buffer(new char[what.max_len + size_t{1}]);
  const int found = wifiprofile_getParam(kPath, what.first.key.c_str(), buffer.get(), what.max_len);
  const auto expected = model_value(what.profile, what.first.key, what.max_len);
  const std::string got = expected ? std::string(buffer.get(), expected->size()) : "";
  if (expected) CHECK(buffer[expected->size()] == '\0');
  compare(found, got, expected);
}

static void read_field(const scenario& what) {
  const std::unique_ptr<char[]> buffer(new char[kProfileFieldBuffer]);
  const int found = wifiprofile_getParam_with_index(kPath, what.first.key.c_str(), what.first.index,
                                                    buffer.get(), what.max_len);
  compare(found, found == 1 ? buffer.get() : "",
          model_field(what.profile, what.first.key, what.first.index, what.max_len));
}

static void replace(const scenario& what) {
  const std::unique_ptr<char[]> out(new char[kProfileValueBuffer]());
  const std::string list = text_of(what.profile);
  const char* result = _replace_param_value_with_index(list.c_str(), what.first.value.c_str(),
                                                       what.first.index, out.get());
  CHECK(result == out.get());
  const auto expected = model_replaced(list, what.first.value, what.first.index);
  compare(1, result, expected ? *expected : "");
}

static unsigned update(const scenario& what) {
  const char* key = what.first.key.c_str();
  const char* value = what.first.value.c_str();
  const char* key2 = what.second.key.c_str();
  const char* value2 = what.second.value.c_str();
  const int index = what.first.index;
  switch (what.operation) {
    case kUpdate:
      return wifiprofile_updateParam(kPath, key, value, "");
    case kUpdateTwo:
      return wifiprofile_updateParam(kPath, key, value, key2, value2, "");
    case kUpdateField:
      return wifiprofile_updateParam_with_index(kPath, key, index, value, "");
    case kUpdateTwoFields:
      return wifiprofile_updateParam_with_index(kPath, key, index, value, key2, what.second.index,
                                                value2, "");
    case kForce:
      return wifiprofile_updateParam_force(kPath, key, value, "");
    case kForceField:
      return wifiprofile_updateParam_with_index_force(kPath, key, index, value, "");
    case kForceTwo:
      return wifiprofile_updateParam_force(kPath, key, value, key2, value2, "");
    case kValue:
    case kField:
    case kReplace:
      break;
  }
  broken("operation %d is no update", what.operation);
}

// An empty key ends the list.
static std::vector<model_request> requests_of(const scenario& what) {
  std::vector<model_request> list;
  if (what.first.key.empty()) return list;
  list.push_back(what.first);
  const bool two = what.operation == kUpdateTwo || what.operation == kUpdateTwoFields ||
                   what.operation == kForceTwo;
  if (two && !what.second.key.empty()) list.push_back(what.second);
  return list;
}

static model_outcome expected_update(const scenario& what) {
  const bool indexed = what.operation == kUpdateField || what.operation == kUpdateTwoFields ||
                       what.operation == kForceField;
  if (what.operation >= kForce) return model_forced(what.profile, requests_of(what), indexed);
  return model_update(what.profile, requests_of(what), indexed);
}

static void run_update(const scenario& what) {
  const model_outcome expected = expected_update(what);
  const unsigned result = update(what);
  if (result != expected.result) broken("result %u instead of %u", result, expected.result);
  CHECK(find_file(kPath)->content == expected.content);
  const outside_file* mirror = find_file("/tmp/mt76xx_24.dat.hnc");
  CHECK((mirror != nullptr) == (result == kProfileWritten));
  CHECK(mirror == nullptr || mirror->content == expected.content);
}

static void run(const scenario& what) {
  switch (what.operation) {
    case kValue:
      read_value(what);
      return;
    case kField:
      read_field(what);
      return;
    case kReplace:
      replace(what);
      return;
    case kUpdate:
    case kUpdateTwo:
    case kUpdateField:
    case kUpdateTwoFields:
    case kForce:
    case kForceField:
    case kForceTwo:
      run_update(what);
  }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const scenario what = parse({reinterpret_cast<const char*>(data), size});
  outside world;
  outside_begin(&world);
  find_file(kPath)->content = what.profile;
  world.any_key_forced = true;
  outside_before_call();
  run(what);
  outside_after_call();
  outside_end();
  return 0;
}
