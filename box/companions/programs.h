// The companions, each in a file of its own. They return the exit status.
#pragma once

#include <string>

// Band steering: creates its marker file once it is ready.
int bndstrg_main();

// Dynamic channel selection: records the settings that it is sent.
int dcs_main();

// Driver control: answers with the steer events.
int mtk_ctrl_main();

// Radio statistics of one interface: -i raN -r N -m N -R N. NAME: the name it was started under.
int radstat_main(const std::string& name, int argc, char** argv);

// HncInit of the home network controller: records the signals that say that Wi-Fi is up or down.
int hnc_init_main();

// The home network controller's listener.
int hnc_listener_main();

// Companions that only have to be there: wapp, bs20, rtdot1xd, rtinicapd.
int idle_main();
