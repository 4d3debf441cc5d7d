#pragma once

// The host's reverse RPC client, libvexal_rev_rpc_client.so. It is opened at the first
// call that finds it; without it a call does nothing.

// Passes a changed backhaul setting on: BSS index, setting number, value text.
void rev_set_bh_setting(int bss_index, int kind, const char* value);
