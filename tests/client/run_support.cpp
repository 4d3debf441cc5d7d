#include "run_support.h"

#include <cstdlib>

#include "fake_daemon.h"

run_outcome run_words(const std::vector<std::string>& words) {
  char *out = nullptr, *err = nullptr;
  size_t out_size = 0, err_size = 0;
  FILE* out_stream = open_memstream(&out, &out_size);
  FILE* err_stream = open_memstream(&err, &err_size);
  exit_status status = run(words, out_stream, err_stream);
  fclose(out_stream);
  fclose(err_stream);
  run_outcome outcome{status, {out, out_size}, {err, err_size}, {}};
  free(out);
  free(err);
  return outcome;
}

run_outcome run_against(uint32_t state, const byte_string& result, std::vector<std::string> words,
                        const char* timeout) {
  fake_daemon daemon;
  fake_daemon_start(daemon, [&](const byte_string& call) {
    byte_string reply = fake_reply(call, state, {});
    reply.insert(reply.end(), result.begin(), result.end());
    return std::vector<fake_datagram>{{reply}};
  });
  std::vector<std::string> all = {"--host", "127.0.0.1", "--timeout",
                                  timeout,  "--port",    std::to_string(daemon.port)};
  all.insert(all.end(), words.begin(), words.end());
  run_outcome outcome = run_words(all);
  fake_daemon_stop(daemon);
  outcome.calls = daemon.calls;
  return outcome;
}

byte_string words(std::initializer_list<uint32_t> list) {
  byte_string bytes;
  for (uint32_t word : list)
    xdr_put_word(bytes, word);
  return bytes;
}

byte_string data_record(uint32_t code, const std::string& data) {
  byte_string bytes = words({code, 0});
  xdr_put_opaque(bytes, data);
  return bytes;
}

bool one_line(const std::string& text) {
  return !text.empty() && text.find('\n') == text.size() - 1;
}
