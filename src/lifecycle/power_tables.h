#pragma once

// The drivers' transmit power limits per country (single-SKU tables).

// 1 for a country of the ETSI domain ("EU", "IL", "AR"), which it prints; 0 for any
// other, which is in the FCC domain.
[[nodiscard]] int isEtsiCountry(const char* code);

// Puts the tables for the profile's country where the drivers read them.
void setup_single_sku();
