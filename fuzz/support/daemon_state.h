#pragma once

/* C: what the daemon keeps between calls. The table is made from the objects of
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

/* Notes the state as it is now, and puts all of it back to that; the first
 * restoring notes it where nothing was. */
void note_daemon_state(void);
void restore_daemon_state(void);

/* Before a restoring that stands for the daemon's end: what its memory leads to is
 * given back by the system, so it is no leak. */
void end_daemon_state(void);
#ifdef __cplusplus
}
#endif
