#pragma once

// Per-country transmit power limits (single-SKU tables) of the drivers.

// 1 for a country of the ETSI domain ("EU", "IL", "AR"), which it prints; 0 for
// any other, which is of the FCC domain.
[[nodiscard]] int isEtsiCountry(const char* code);

// Puts the tables of the profile's country where the drivers read them.
void setup_single_sku();
