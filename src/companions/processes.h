#pragma once

// The processes that run beside the driver. Each control takes a mode, nonzero
// to start and 0 to stop, decides from the profiles whether its process should
// run, and remembers that it started it, so that starting or stopping twice
// does nothing. A process that outlived the service child that started it counts
// as started. The worker and the RPC thread may call them at the same time:
// a process is started once, and a stop follows the start that it meets. A call
// waits for the other one's commands at most, not for its marker.

// Band steering: bndstrg_1, or on MT7615 boards the EasyMesh script.
void bndstrgStart(int mode);

// 1 when both bands' first BSS carry the same SSID, authentication and pass
// phrase. Else 0, reported, with "BandSteering" forced to 0 in both profiles.
[[nodiscard]] int isAbleToEnableBandSteering();

// Dynamic channel selection: dcs, for the 2.4 GHz radio on automatic channel.
void dcsStart(int mode);

// Driver control: mtk_ctrl.
void MtkCtrlStart(int mode);

// EasyMesh agent: wapp, on MT7615 boards only.
void wappStart(int mode);

// 802.1X authenticator of a radio, rtdot1xd (1) or rtinicapd (9). Modes 1 and
// 0; it remembers no start, the process list tells what runs. Mode 1 without a
// RADIUS server in the profile stops it. In a turn only.
void rtdot1x_start(int radio, int mode);
