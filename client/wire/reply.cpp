#include "wire/reply.h"

#include "base/text.h"

// wlan_config_result_data_t: opaque return_data<WLAN_CONFIG_RETURN_DATA_MAX>
static constexpr uint32_t kReturnDataMax = 8256;

// Whether the whole record was received; sizes are in `unit`.
static bool suffices(size_t there, size_t size, const char* unit, std::string& error) {
  if (there >= size) return true;
  error = text_format("it has %zu of %zu %s", there, size, unit);
  return false;
}

static bool take_words(const procedure_row& procedure, const std::vector<uint32_t>& words,
                       decoded_reply& reply, std::string& error) {
  // The wire's count is the payload's size in bytes, so it has about four times as many words
  // as have meaning.
  size_t meaningful = procedure.size / 4;
  if (!suffices(words.size(), meaningful, "words", error)) return false;
  for (size_t i = 0; i < 4 * meaningful; ++i)
    reply.data += static_cast<char>(words[i / 4] >> (8 * (i % 4)));
  return true;
}

static bool take_payload(const procedure_row& procedure, const std::vector<uint32_t>& words,
                         const std::string& data, decoded_reply& reply, std::string& error) {
  switch (procedure.payload) {
    case payload_kind::INT:
      if (!suffices(words.size(), 1, "words", error)) return false;
      reply.value = static_cast<int32_t>(words[0]);
      return true;
    case payload_kind::WORDS:
      return take_words(procedure, words, reply, error);
    case payload_kind::TEXT:
      reply.text = data.substr(0, data.find('\0'));
      return true;
    case payload_kind::IMAGE:
      reply.data = data;
      return suffices(data.size(), procedure.size, "bytes", error);
    case payload_kind::CODE:
    case payload_kind::NONE:
      break;
  }
  return true;
}

static bool decode_record(const procedure_row& procedure, unread_bytes& unread,
                          decoded_reply& reply, std::string& error) {
  std::vector<uint32_t> words;
  std::string data;
  if (!xdr_get_words(unread, words)) {
    error = "return_words is longer than the reply";
    return false;
  }
  if (!xdr_get_opaque(unread, kReturnDataMax, data)) {
    error = "return_data is longer than the reply, or than it may be";
    return false;
  }
  return reply.code < 0 || take_payload(procedure, words, data, reply, error);
}

bool reply_decode(const procedure_row& procedure, unread_bytes result, decoded_reply& reply,
                  std::string& error) {
  reply = {};
  unread_bytes unread = result;
  uint32_t code = 0;
  if (!xdr_get_word(unread, &code)) {
    error = text_format("%zu bytes are too few for a return code", result.size());
    return false;
  }
  reply.code = static_cast<int32_t>(code);
  bool record = procedure.payload != payload_kind::CODE;
  if (record && !decode_record(procedure, unread, reply, error)) return false;
  if (unread.empty()) return true;
  error = text_format("%zu bytes follow its end", unread.size());
  return false;
}
