#pragma once

#include <array>

#include "diag/trace.h"
#include "rpc/reply.h"
#include "rpc/row_types.h"

// Handlers that follow from a procedure's answer: each traces its arguments, calls the
// back end, keeps the status and packs the value, even if the back end failed.

// ---- A setter's trace: " WLAN RPC server : [ssid=%s]\n".

template <typename Type>
inline constexpr const char* kConversion = nullptr;
template <>
inline constexpr const char* kConversion<int> = "%d";
template <>
inline constexpr const char* kConversion<u_int> = "%u";
template <>
inline constexpr const char* kConversion<u_short> = "%hu";
template <>
inline constexpr const char* kConversion<string_t> = "%s";

constexpr void append(char* to, size_t* at, const char* text) {
  for (; *text != '\0'; ++text)
    to[(*at)++] = *text;
}

template <typename Member>
constexpr void append_member(char* to, size_t* at) {
  if (!Member::kShown) return;
  append(to, at, "[");
  append(to, at, Member::kName.text);
  append(to, at, "=");
  append(to, at, kConversion<typename Member::type>);
  append(to, at, "]");
}

template <typename Members>
struct shown_input;
template <typename... Members>
struct shown_input<member_list<void, Members...>> {
  // Room for the longest list in the table, cut to the used length below.
  static constexpr size_t kRoom = 256;
  static constexpr size_t fill(char* to) {
    size_t at = 0;
    append(to, &at, " WLAN RPC server : ");
    (append_member<Members>(to, &at), ...);
    append(to, &at, "\n");
    return at;
  }
  static constexpr size_t length() {
    char room[kRoom] = {};
    return fill(room);
  }
  static constexpr auto make() {
    char room[kRoom] = {};
    fill(room);
    std::array<char, length() + 1> format = {};
    for (size_t i = 0; i < length(); ++i)
      format[i] = room[i];
    return format;
  }
  static constexpr auto kFormat = make();
};

// The formats are literals put together at compile time.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

inline void trace_values(const char* handler, const char* format) {
  trace_rpc(handler, format);
}
template <typename... Values>
void trace_values(const char* handler, const char* format, Values... values) {
  trace_rpc(handler, format, values...);
}

#pragma GCC diagnostic pop

// Does not show a leading index.
template <typename Row, typename... Values>
void trace_input(Values... values) {
  trace_values(Row::kHandler, shown_input<typename Row::members>::kFormat.data(), values...);
}
template <typename Row, typename Index, typename... Values>
requires(Row::kLeadsWithIndex) void trace_input(Index, Values... values) {
  trace_values(Row::kHandler, shown_input<typename Row::members>::kFormat.data(), values...);
}

// ---- A getter's trace: its first argument. Numbers and records differ in the form: kept
// on purpose.

enum class asked_form { kPlain, kBracketed };

inline void trace_asked(const char* handler, asked_form) {
  trace_rpc(handler, " WLAN RPC server :\n");
}
template <typename... Others>
void trace_asked(const char* handler, asked_form form, int index, Others...) {
  trace_rpc(handler,
            form == asked_form::kPlain ? " WLAN RPC server : index %d\n"
                                       : " WLAN RPC server : [index %d]\n",
            index);
}
inline void trace_asked(const char* handler, asked_form, const char* text) {
  trace_rpc(handler, " WLAN RPC server : [%s]\n", text);
}

// ---- The handlers, by answer.

// The back end of an inert procedure.
template <int Status>
struct inert_operation {
  template <typename... Members>
  constexpr int operator()(Members...) const {
    return Status;
  }
};
template <int Status>
inline constexpr inert_operation<Status> inert = {};

template <typename Row, auto BackEnd, typename Members = typename Row::members,
          typename Answer = typename Row::answer>
struct derived;

template <typename Row, auto BackEnd, typename... Members>
struct derived<Row, BackEnd, member_list<void, Members...>, code_answer> {
  static int handler(typename Members::type... in, wlan_config_return_code_e* result, svc_req*) {
    trace_input<Row>(in...);
    *result = static_cast<wlan_config_return_code_e>(BackEnd(in...));
    return 1;
  }
};

template <typename Row, auto BackEnd, typename... Members>
struct derived<Row, BackEnd, member_list<void, Members...>, no_answer> {
  static int handler(typename Members::type... in, wlan_config_result_data_t* result, svc_req*) {
    trace_asked(Row::kHandler, asked_form::kPlain, in...);
    result->return_code = BackEnd(in...);
    return 1;
  }
};

template <typename Row, auto BackEnd, typename... Members, fixed_text Label>
struct derived<Row, BackEnd, member_list<void, Members...>, int_answer<Label>> {
  static int handler(typename Members::type... in, wlan_config_result_data_t* result, svc_req*) {
    int value = 0;
    trace_asked(Row::kHandler, asked_form::kPlain, in...);
    result->return_code = BackEnd(in..., &value);
    pack_int(Row::kHandler, Label.text, value, result);
    return 1;
  }
};

template <typename Row, auto BackEnd, typename... Members, fixed_text Label>
struct derived<Row, BackEnd, member_list<void, Members...>, text_answer<Label>> {
  static int handler(typename Members::type... in, wlan_config_result_data_t* result, svc_req*) {
    char text[kTextSize<std::remove_pointer_t<decltype(BackEnd)>>] = {};
    trace_asked(Row::kHandler, asked_form::kBracketed, in...);
    result->return_code = BackEnd(in..., text);
    pack_text(Row::kHandler, Label.text, text, sizeof text, result);
    if (Row::kFacts.answer_shown_twice) trace_text_again(Row::kHandler, *result);
    return 1;
  }
};

template <typename Row, auto BackEnd, typename... Members, typename Record>
struct derived<Row, BackEnd, member_list<void, Members...>, words_answer<Record>> {
  static int handler(typename Members::type... in, wlan_config_result_data_t* result, svc_req*) {
    Record record = {};
    trace_asked(Row::kHandler, asked_form::kBracketed, in...);
    result->return_code = BackEnd(in..., &record);
    pack_words(&record, sizeof record, result);
    return 1;
  }
};

template <typename Row, auto BackEnd, typename... Members, typename Record>
struct derived<Row, BackEnd, member_list<void, Members...>, image_answer<Record>> {
  static int handler(typename Members::type... in, wlan_config_result_data_t* result, svc_req*) {
    Record record = {};
    trace_asked(Row::kHandler, asked_form::kBracketed, in...);
    result->return_code = BackEnd(in..., &record);
    pack_image(&record, sizeof record, result);
    trace_rpc(Row::kHandler, " WLAN RPC server : result->return_data.return_data_len = %u\n",
              result->return_data.return_data_len);
    return 1;
  }
};
