// Lines of the journal that tell what something led to.
#pragma once

#include "gateway/state.h"

void effect_tell(trap_state& trap, const journal_effect& effect);

// The same, done by ACTOR, or null if nobody is known.
void effect_tell_by(trap_state& trap, journal_effect effect, const process_actor* actor);

// What changed on the air since the last call.
void effect_tell_air(trap_state& trap, const process_actor* actor);
