#pragma once

// The processes that run alongside the driver. Each control takes a mode, nonzero to start
// and 0 to stop. It decides from the profiles whether its process should run, and
// remembers a start, so that starting or stopping twice does nothing. A process left
// running by an earlier service child counts as started. The worker and the RPC thread
// may call them at the same time: a process is started once, and a stop waits for a start
// in progress. A call waits at most for the other thread's commands, not for the marker.

// Band steering: bndstrg_1, or on MT7615 boards the EasyMesh script.
void bndstrgStart(int mode);

// 1 when the first BSSes of both bands have the same SSID, authentication and pass
// phrase. Otherwise 0, reported, and "BandSteering" is forced to 0 in both profiles.
[[nodiscard]] int isAbleToEnableBandSteering();

// Dynamic channel selection: dcs, when the 2.4 GHz radio is on automatic channel.
void dcsStart(int mode);

// Driver control: mtk_ctrl.
void MtkCtrlStart(int mode);

// EasyMesh agent: wapp, on MT7615 boards only.
void wappStart(int mode);

// 802.1X authenticator of a radio, rtdot1xd (1) or rtinicapd (9). Modes 1 and 0. Mode 1
// without a RADIUS server in the profile stops it. Remembers no start: the process list
// shows what runs. In a turn only.
void rtdot1x_start(int radio, int mode);
