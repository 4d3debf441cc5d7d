#pragma once

/* In C: what the daemon keeps between calls. The table is generated from the objects of
 * its archive, so nothing that is added to the daemon is missed. */

struct state_object {
  char* start; /* null: the end of the table */
  unsigned long size;
  const char* name; /* as the linker knows it */
};

#ifdef __cplusplus
extern "C" {
#endif
extern const struct state_object kStateObjects[];

/* The first notes the current state, the second restores what was noted. If nothing was,
 * restoring notes the current state first. */
void note_daemon_state(void);
void restore_daemon_state(void);

/* To be called before a restore that stands for the daemon's end: the system frees what
 * the daemon had allocated, so that is no leak. */
void end_daemon_state(void);
#ifdef __cplusplus
}
#endif
