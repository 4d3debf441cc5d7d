#include <bit>
#include <cstddef>

#include "diag/trace.h"
#include "hnc/tables.h"
#include "rpc/handlers.h"

// The handler whose argument is a row of a table. Once decoded, it has the layout of the
// listener's record.

static_assert(sizeof(hnc_supported_hne_table) == sizeof(hnc_supported_hne));
static_assert(offsetof(hnc_supported_hne_table, manufacturer) ==
              offsetof(hnc_supported_hne, manufacturer));
static_assert(offsetof(hnc_supported_hne_table, firmware_url) ==
              offsetof(hnc_supported_hne, firmware_url));
static_assert(offsetof(hnc_supported_hne_table, update_time) ==
              offsetof(hnc_supported_hne, update_time));

int hnc_set_hne_table_entry_1_svc(u_int row, hnc_supported_hne_table entry,
                                  wlan_config_return_code_e* result, svc_req*) {
  RPC_TRACE(" WLAN RPC server : [row=%u][index=%u][row_status=%u]\n", row, entry.index,
            entry.row_status);
  const hnc_supported_hne record = std::bit_cast<hnc_supported_hne>(entry);
  *result = hnc_setSupportedHneTableEntry(row, &record);
  return 1;
}
