#pragma once

#include <string>

// Stations around the simulated gateway, and what its driver answers.

// Runs gwbox with these words. Fails the test when it refuses them.
void gwbox(const std::string& words);

// Takes the scenario's stations away, which would have sent something by now, and
// brings interfaces up ("ra0 ra8").
void start_radios(const std::string& interfaces);

// A station 02:00:5e:00:01:<n> with further words, such as "bss=1 rssi=[-50]". A
// station that is there already is changed.
void set_station(int n, const std::string& words);
void remove_station(int n);

// The same as text, lower case.
std::string station_mac(int n);

// So many stations of one BSS, numbered from 1 on.
void set_stations(int count, int bss);
