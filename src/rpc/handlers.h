#pragma once

#include "rpc/answers.h"
#include "rpc/back_ends.h"
#include "rpc/row_types.h"

// The service handlers, one per procedure, named STEM_1_svc. Each takes the members of
// its argument in order, the zeroed result and the unused request. It traces,
// calls its back-end operation, copies the status into the result and packs the value, if
// any, into heap memory that the dispatcher frees after the reply. Returns 1 to send the
// reply, 0 or less for none.

// The rows as types: row_STEM has the members, the answer and the facts.

#define NOTHING
#define SHARED(stem)
#define INDEX(name) , member<int, #name, false>
#define FIELD(type, name) , member<type, #name, true>
#define ONLY_INDEX(name) , member<int, #name, true>
#define ONLY(type, name) , member<type, #name, true>
#define CODE code_answer
#define UPDATE code_answer
#define INT(label) int_answer<#label>
#define TEXT(label) text_answer<#label>
#define WORDS(type) words_answer<type>
#define IMAGE(type) image_answer<type>
#define NONE no_answer
#define PROCEDURE(number, name, stem, topic, members, answer, back_end, summary, ...) \
  struct row_##stem : row_types<member_list<void members>, answer> {                  \
    static constexpr row_facts kFacts = {__VA_ARGS__};                                \
    static constexpr const char* kHandler =                                           \
        kFacts.handler != nullptr ? kFacts.handler : #stem "_1_svc";                  \
    static constexpr const char* kStub = "_" #stem "_1";                              \
  };
#include "rpc/procedures.def"

// What a row's handler packs: the type named by its answer.
template <typename Row>
using value_of = typename Row::answer::value;

// Hand-written handlers are functions; all others follow from their rows.

#define PROCEDURE(number, name, stem, topic, members, answer, back_end, ...) \
  static_assert(kFits<row_##stem, decltype(back_end)>,                       \
                #name ": " #back_end                                         \
                      " has to take the members of the row and, last, "      \
                      "int* for INT, char (&)[N] for TEXT, type* for WORDS " \
                      "and IMAGE, and to return an int");                    \
  inline constexpr auto& stem##_1_svc = derived<row_##stem, back_end>::handler;
#define INERT(number, name, stem, ...) \
  inline constexpr auto& stem##_1_svc = derived<row_##stem, inert<0>>::handler;
#define INERT_REFUSED(number, name, stem, ...) \
  inline constexpr auto& stem##_1_svc = derived<row_##stem, inert<-1>>::handler;
// Checks that an OWN row's operation exists.
#define OWN(number, name, stem, topic, members, answer, back_end, ...) \
  row_##stem::handler stem##_1_svc;                                    \
  using operation_of_##stem = decltype(back_end);
#include "rpc/procedures.def"

// Names that differ from the procedure's: kept on purpose.

#define PROCEDURE(...)
#define HANDLER(stem) stem##_1_svc
#define RENAMED(number, name, stem, topic, members, answer, back_end, summary, handler, ...) \
  inline constexpr auto& handler = stem##_1_svc;
#include "rpc/procedures.def"

// Handlers without a procedure number: getters for the DCS settings, of which only the
// setters have numbers. They answer an empty record.
#define DCS_GETTERS(GETTER)                                          \
  GETTER(wlan_get_mso_dcs_on_1_svc)                                  \
  GETTER(wlan_get_user_dcs_on_1_svc)                                 \
  GETTER(wlan_get_dcs_serving_channel_sample_time_1_svc)             \
  GETTER(wlan_get_dcs_serving_channel_sample_num_1_svc)              \
  GETTER(wlan_get_dcs_medium_utilization_threshold_1_svc)            \
  GETTER(wlan_get_dcs_off_channel_scan_period_1_svc)                 \
  GETTER(wlan_get_dcs_off_channel_scan_sample_num_1_svc)             \
  GETTER(wlan_get_dcs_channel_switch_time_window_1_svc)              \
  GETTER(wlan_get_dcs_channel_switch_limited_num_1_svc)              \
  GETTER(wlan_get_dcs_medium_utilization_weight_1_svc)               \
  GETTER(wlan_get_dcs_medium_utilization_latest_sample_weight_1_svc) \
  GETTER(wlan_get_dcs_radio_channel_power_ajuster_1_svc)             \
  GETTER(wlan_get_dcs_rssi_weight_1_svc)

#define DECLARE_GETTER(handler) \
  int handler(int radio, wlan_config_result_data_t* result, svc_req* request);
DCS_GETTERS(DECLARE_GETTER)
#undef DECLARE_GETTER
