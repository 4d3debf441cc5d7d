// Regulatory power tables, one file per country and kind:
//
//   SingleSKU_<domain>_<country>.dat          limits for one or two streams
//   SingleSKU_BF_<domain>_<country>.dat       the same while beam forming
//   SingleSKU_FCC_3_TxStream_<country>.dat    limits for three streams
//
// The domain is ETSI or FCC. Every country has the tables of its own domain, and the last one.
#pragma once

#include <string>

// Writes all tables into the directory, which exists. Reports what failed.
[[nodiscard]] bool power_table_install(const std::string& directory);
