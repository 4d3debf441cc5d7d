#include <gtest/gtest.h>

#include <unistd.h>

#include <string>

#include "lifecycle/lifecycle_support.h"
#include "rpc/handlers.h"
#include "rpc/wire_support.h"
#include "unit_support.h"

// The first message that a handler logs.
template <typename Handler, typename Result>
static std::string first_logged(Handler handler, Result* result) {
  unlink("/tmp/auto_debug/dbg_rpc.log");
  EXPECT_EQ(handler(result), 1);
  const std::string log = logged();
  return log.substr(0, log.find('\n') + 1);
}

TEST(LifecycleHandlers, RequestsAreTracedWithoutTheirArguments) {
  switch_log_on();
  int (*const handlers[])(int*) = {
      [](int* result) { return wlan_load_1_svc(1, result, nullptr); },
      [](int* result) { return wlan_init_1_svc(result, nullptr); },
      [](int* result) { return wlan_restart_1_svc(12, result, nullptr); },
      [](int* result) { return wlan_restart_all_1_svc(result, nullptr); },
      [](int* result) { return wlan_reset_1_svc(result, nullptr); },
  };
  for (const auto& handler : handlers) {
    int result = 7;
    EXPECT_EQ(first_logged(handler, &result), "WLAN RPC server :\n");
    EXPECT_EQ(result, 0);
  }
}

TEST(LifecycleHandlers, CalibrationIsTracedWithItsInput) {
  switch_log_on();
  note_commands("[0x0052]:0x0002\n");
  int code = 7;
  EXPECT_EQ(
      first_logged([](int* result) { return wlan_set_prek_operation_1_svc(5, 1, result, nullptr); },
                   &code),
      " WLAN RPC server : [enable=1]\n");
  EXPECT_EQ(code, 0);
  commands();
  wlan_config_result_data_t result = {};
  EXPECT_EQ(
      first_logged([](auto* data) { return wlan_undo_prek_operation_1_svc(5, data, nullptr); },
                   &result),
      " WLAN RPC server : index 5\n");
  EXPECT_EQ(result.return_code, -1);
  EXPECT_EQ(first_logged([](auto* data) { return wlan_get_prek_status_1_svc(9, data, nullptr); },
                         &result),
            " WLAN RPC server : index 9\n");
  EXPECT_EQ(result.return_code, -1);
  EXPECT_EQ(commands(), "iwpriv ra0 e2p 52\n");
  released(xdr_wlan_config_result_data_t, &result);
}
