#include "gateway/effects.h"

void effect_tell(trap_state& trap, const journal_effect& effect) {
  journal_append(trap.log, effect, driver_now_us(trap.driver));
}

static void name_actor(journal_effect& effect, const process_actor* actor) {
  if (!actor) return;
  effect.pid = actor->pid;
  effect.comm = actor->comm;
  effect.cause = actor->cause;
}

void effect_tell_by(trap_state& trap, journal_effect effect, const process_actor* actor) {
  name_actor(effect, actor);
  effect_tell(trap, effect);
}

// A BSS that begins to beacon by itself was set up before, and its radio needed time.
static const process_actor* who_set_up(const trap_state& trap, const driver_effect& effect) {
  auto actor = trap.interface_actors.find(effect.interface);
  bool is_beacon = effect.effect == std::string_view("beacon");
  return is_beacon && actor != trap.interface_actors.end() ? &actor->second : nullptr;
}

void effect_tell_air(trap_state& trap, const process_actor* actor) {
  std::vector<driver_effect> effects;
  effects.swap(trap.driver.effects);
  for (const driver_effect& effect : effects) {
    journal_effect told = {};
    told.effect = effect.effect;
    told.interface = effect.interface;
    told.members = effect.members;
    name_actor(told, actor ? actor : who_set_up(trap, effect));
    journal_append(trap.log, told, effect.time_us);
  }
}
