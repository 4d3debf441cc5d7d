#pragma once

// The host's reverse RPC client, libvexal_rev_rpc_client.so: opened on first
// need, and again at the next call where it was absent. Without it the call
// does nothing.

// Hands a changed backhaul setting on: BSS index, setting number, value text.
void rev_set_bh_setting(int bss_index, int kind, const char* value);
