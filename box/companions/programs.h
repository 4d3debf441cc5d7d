// The companions, each in a file of its own. They return the exit status.
#pragma once

#include <string>

// Band steering: makes its marker file once it is ready.
int bndstrg_main();

// Dynamic channel selection: records the settings that it is sent.
int dcs_main();

// Driver control: answers with the steer events.
int mtk_ctrl_main();

// Radio statistics of one interface: -i raN -r N -m N -R N. NAME: what it was started as.
int radstat_main(const std::string& name, int argc, char** argv);

// The home network controller's start: records whether it is told that Wi-Fi is up or down.
int hnc_init_main();

// The home network controller's listener.
int hnc_listener_main();

// Those that only run: wapp, bs20, rtdot1xd, rtinicapd.
int idle_main();
