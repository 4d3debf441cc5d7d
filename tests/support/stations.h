#pragma once

#include <string>

// Stations around the simulated gateway, and the answers of its driver.

// Runs gwbox with these words. Fails the test if it rejects them.
void gwbox(const std::string& words);

// Removes the scenario's stations, which would have sent traffic by now, and brings interfaces
// up ("ra0 ra8").
void start_radios(const std::string& interfaces);

// Lets radios beacon as soon as they are up, however long the scenario says they need.
void beacon_at_once();

// Adds or changes station 02:00:5e:00:01:<n> with further words, such as "bss=1 rssi=[-50]".
void set_station(int n, const std::string& words);
void remove_station(int n);

// Its MAC address, in lower case.
std::string station_mac(int n);

// Adds `count` stations to one BSS, numbered from 1.
void set_stations(int count, int bss);
