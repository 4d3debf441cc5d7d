#include <gtest/gtest.h>

#include "rpc/handlers.h"
#include "rpc/wire_support.h"
#include "support/stations.h"
#include "unit_support.h"

TEST(SurveyHandlers, ScanResultIsTracedWithItsLength) {
  start_radios("ra0");
  switch_log_on();
  wlan_config_result_data_t result = {};
  EXPECT_EQ(wlan_get_ap_scan_result_1_svc(1, &result, nullptr), 1);
  EXPECT_EQ(result.return_code, 0);
  EXPECT_EQ(logged(),
            " WLAN RPC server : [index 1]\n"
            " WLAN RPC server : result->return_data.return_data_len = 6764\n");
  released(xdr_wlan_config_result_data_t, &result);
}
