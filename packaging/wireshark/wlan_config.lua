-- Dissector of the Wi-Fi configuration program, UDP port 60001.
--
--   tshark -X lua_script:wlan_config.lua ...
--   Wireshark: copy it and wlan_config_tables.lua into the personal plugins directory
--
-- The tables are read from the directory of this file. Wireshark also loads both by itself
-- from its plugins directory, and then ignores what the tables return.
local directory = debug.getinfo(1, "S").source:match("^@(.*[/\\])") or ""
local tables = directory .. "wlan_config_tables.lua"
local found, procedures = pcall(dofile, tables)
if not found then error("cannot read " .. tables .. ": " .. procedures, 0) end

local statuses = {
  [0] = "success", [1] = "program unavailable", [2] = "version mismatch",
  [3] = "procedure unavailable", [4] = "garbage arguments", [5] = "system error"}

local wlan_config = Proto("wlan_config", "Wi-Fi configuration")
local f = {
  xid = ProtoField.uint32("wlan_config.xid", "Transaction", base.HEX),
  type = ProtoField.uint32("wlan_config.type", "Message", base.DEC, {[0] = "Call", [1] = "Reply"}),
  number = ProtoField.uint32("wlan_config.number", "Number", base.DEC_HEX),
  procedure = ProtoField.string("wlan_config.procedure", "Procedure"),
  argument = ProtoField.string("wlan_config.argument", "Argument"),
  accepted = ProtoField.uint32("wlan_config.accepted", "Accepted", base.DEC, statuses),
  code = ProtoField.int32("wlan_config.code", "Return code"),
  value = ProtoField.string("wlan_config.value", "Value"),
  field = ProtoField.string("wlan_config.field", "Field"),
  row = ProtoField.string("wlan_config.row", "Row"),
}
wlan_config.fields = {f.xid, f.type, f.number, f.procedure, f.argument, f.accepted, f.code,
                      f.value, f.field, f.row}
local malformed = ProtoExpert.new("wlan_config.malformed", "cut off or malformed",
                                  expert.group.MALFORMED, expert.severity.ERROR)
wlan_config.experts = {malformed}

local PROGRAM = 0x20131337
local ACCEPTED, CALL = 0, 0
local called = {}  -- by ports and transaction: the number that was called

local function padded(length) return length + (4 - length % 4) % 4 end

-- Characters that are shown: printable ASCII and UTF-8, except for controls (C1) and marks
-- that change the direction of writing.
local CHARACTERS = {
  "[\32-\126]", "\194[\160-\191]", "[\195-\215\217-\223][\128-\191]", "\216[\128-\155\157-\191]",
  "\224[\160-\191][\128-\191]", "[\225\227-\236\238\239][\128-\191][\128-\191]",
  "\226\128[\128-\141\144-\167\175-\191]", "\226\129[\128-\165\170-\191]",
  "\226[\130-\191][\128-\191]", "\237[\128-\159][\128-\191]",
  "\240[\144-\191][\128-\191][\128-\191]", "[\241-\243][\128-\191][\128-\191][\128-\191]",
  "\244[\128-\143][\128-\191][\128-\191]"}

local function character_at(text, at)
  for _, pattern in ipairs(CHARACTERS) do
    local character = text:match("^" .. pattern, at)
    if character then return character end
  end
end

-- Characters as they are, with every other byte as \xNN.
local function safe(text)
  if not text:find("[^\32-\126]") then return text end
  local pieces, at = {}, 1
  while at <= #text do
    local character = character_at(text, at)
    pieces[#pieces + 1] = character or string.format("\\x%02x", text:byte(at))
    at = at + (character and #character or 1)
  end
  return table.concat(pieces)
end

local function until_nul(bytes)
  local text = bytes:raw()
  local nul = text:find("\0", 1, true)
  return safe(nul and text:sub(1, nul - 1) or text)
end

-- Counted bytes. A length of -1 must not get through: it would mean everything to the end.
local function counted(buffer, at)
  local length = buffer(at, 4):uint()
  if length > buffer:len() - at - 4 then error("cut off") end
  return buffer(at + 4, length), length
end

-- Readers of arguments: they return the text and where the next argument starts.
local function xdr_text(buffer, at)
  local bytes, length = counted(buffer, at)
  return '"' .. safe(bytes:raw()) .. '"', at + 4 + padded(length)
end

local readers = {
  i = function(buffer, at) return tostring(buffer(at, 4):int()), at + 4 end,
  u = function(buffer, at) return tostring(buffer(at, 4):uint()), at + 4 end,
  b = function(buffer, at) return buffer(at, 4):uint() ~= 0 and "on" or "off", at + 4 end,
  s = xdr_text,
  -- char[N]: each takes four bytes
  c = function(buffer, at, count)
    local text = ""
    for i = 0, count - 1 do
      local byte = buffer(at + 4 * i + 3, 1):uint()
      if byte == 0 then break end
      text = text .. string.char(byte)
    end
    return '"' .. safe(text) .. '"', at + 4 * count
  end,
}

-- Values of record fields, little-endian.
local function number_of(bytes, signed)
  if bytes:len() == 8 then return tostring(signed and bytes:le_int64() or bytes:le_uint64()) end
  return tostring(signed and bytes:le_int() or bytes:le_uint())
end

-- The driver's rate word: bits 0-5 MCS, 7-8 bandwidth, 9 short guard interval, 13-15 PHY
-- mode; of VHT, the modes from 4 on, bits 0-3 MCS and 4-5 streams less one.
local CCK = {1000, 2000, 5500, 11000}
local OFDM = {6000, 9000, 12000, 18000, 24000, 36000, 48000, 54000}
local OFDM_OF_SIGNAL = {6, 4, 2, 0, 7, 5, 3, 1}
local SUBCARRIERS = {52, 108, 234, 468}
-- By MCS: coded bits, and the coding rate as a fraction.
local SCHEMES = {{1, 1, 2}, {2, 1, 2}, {2, 3, 4}, {4, 1, 2}, {4, 3, 4},
                 {6, 2, 3}, {6, 3, 4}, {6, 5, 6}, {8, 3, 4}, {8, 5, 6}}

local function bits_of(word, first, count) return math.floor(word / 2 ^ first) % 2 ^ count end

-- nil: there is no such rate
local function mimo_kilobits(word, streams, mcs)
  local scheme = SCHEMES[mcs + 1]
  if not scheme then return nil end
  local carried = SUBCARRIERS[bits_of(word, 7, 2) + 1] * streams * scheme[1]
  local symbol = math.floor(carried * scheme[2] / scheme[3])
  return bits_of(word, 9, 1) == 1 and math.floor(symbol * 2500 / 9) or symbol * 250
end

local function kilobits_of(word)
  local mode, code = bits_of(word, 13, 3), bits_of(word, 0, 6)
  if mode == 0 then return CCK[code % 4 + 1] end
  if mode == 1 then return OFDM[(code < 8 and code or OFDM_OF_SIGNAL[code % 8 + 1]) + 1] end
  if mode < 4 then return mimo_kilobits(word, math.floor(code / 8) + 1, code % 8) end
  return mimo_kilobits(word, math.floor(code / 16) + 1, code % 16)
end

local function rate_of(word)
  local kilobits = kilobits_of(word)
  if not kilobits then return string.format("0x%04x (no such rate)", word) end
  return string.format("0x%04x (%.1f Mbit/s)", word, math.floor((kilobits + 50) / 100) / 10)
end

local values = {
  u = function(bytes) return number_of(bytes, false) end,
  i = function(bytes) return number_of(bytes, true) end,
  f = function(bytes) return bytes:le_uint() ~= 0 and "yes" or "no" end,
  t = function(bytes) return '"' .. until_nul(bytes) .. '"' end,
  -- Not ether(), which would show a manufacturer's name instead of bytes.
  m = function(bytes) return bytes:bytes():tohex(true, ":") end,
  r = function(bytes) return rate_of(bytes:le_uint()) end,
  e = function(bytes)
    local seconds = bytes:le_uint()
    return seconds == 0 and "-" or os.date("!%Y-%m-%d %H:%M:%SZ", seconds)
  end,
  x = function(bytes)
    local most = 16
    if bytes:len() <= most then return bytes:bytes():tohex(true) end
    return string.format("%s... (%d bytes)", bytes(0, most):bytes():tohex(true), bytes:len())
  end,
}

local function marked(text, unknown)
  return unknown and unknown[text] and text .. " (not known)" or text
end

local function add_fields(tree, fields, buffer)
  for _, field in ipairs(fields) do
    local name, type, offset, width = field[1], field[2], field[3], field[4]
    local bytes = buffer(offset, width)
    local text = name .. ": " .. marked(values[type](bytes), field[5])
    tree:add(f.field, bytes, text):set_text(text)
  end
end

local function add_record(tree, layout, buffer)
  add_fields(tree, layout.fields, buffer)
  local rows = layout.rows
  if not rows then return end
  local count = rows.capacity
  if rows.count_at then count = math.min(buffer(rows.count_at, 4):le_uint(), count) end
  for i = 0, count - 1 do
    local bytes = buffer(rows.first + i * rows.stride, rows.stride)
    local text = rows.name .. " " .. i
    local branch = tree:add(f.row, bytes, text):set_text(text)
    add_fields(branch, rows.fields, bytes:tvb())
  end
end

-- The words of a record as the bytes that they are in the daemon.
local function words_to_bytes(buffer, at, size)
  local bytes = ByteArray.new()
  for i = 0, size / 4 - 1 do
    local word = buffer(at + 4 * i, 4):bytes()
    for j = 3, 0, -1 do bytes = bytes .. word:subset(j, 1) end
  end
  return bytes:tvb("Record")
end

-- The Info column also shows the first arguments or the value, and of long ones the start.
local INFO_ARGUMENTS, INFO_CHARACTERS = 3, 40

local function beginning(text)
  local characters = 0
  for at in text:gmatch("()[^\128-\191]") do
    characters = characters + 1
    if characters > INFO_CHARACTERS then return text:sub(1, at - 1) .. "..." end
  end
  return text
end

-- The value of a failure means nothing.
local function add_value(tree, bytes, text, pinfo, code)
  tree:add(f.value, bytes, text)
  if code >= 0 then pinfo.cols.info:append(": " .. beginning(text)) end
end

local function add_payload(tree, procedure, buffer, pinfo, at)
  local code = buffer(at - 4, 4):int()
  local words = buffer(at, 4):uint()
  local data_at = at + 4 + 4 * words
  local data, length = counted(buffer, data_at)
  if procedure.kind == "INT" and words > 0 then
    local text = marked(tostring(buffer(at + 4, 4):int()), procedure.unknown)
    add_value(tree, buffer(at + 4, 4), text, pinfo, code)
  elseif procedure.kind == "WORDS" and 4 * words >= procedure.size then
    add_record(tree, procedure, words_to_bytes(buffer, at + 4, procedure.size))
  elseif procedure.kind == "TEXT" and length > 0 then
    add_value(tree, data, values.t(data), pinfo, code)
  elseif procedure.kind == "IMAGE" and length >= procedure.size then
    add_record(tree, procedure, data:tvb())
  end
end

local function add_result(tree, procedure, buffer, pinfo, at)
  tree:add(f.code, buffer(at, 4))
  pinfo.cols.info:append(" -> " .. buffer(at, 4):int())
  if procedure.kind ~= "CODE" then add_payload(tree, procedure, buffer, pinfo, at + 4) end
end

local function info_of(index, text)
  if index > INFO_ARGUMENTS + 1 then return "" end
  if index > INFO_ARGUMENTS then return " ..." end
  return " " .. beginning(text)
end

local function add_arguments(tree, procedure, buffer, pinfo, at)
  for index, argument in ipairs(procedure.arguments) do
    local text, next_at = readers[argument[2]](buffer, at, argument[3])
    pinfo.cols.info:append(info_of(index, text))
    text = argument[1] .. ": " .. text
    tree:add(f.argument, buffer(at, next_at - at), text):set_text(text)
    at = next_at
  end
end

-- The position after one authenticator: a call has two, a reply has one.
local function skip_auth(buffer, at) return at + 8 + padded(buffer(at + 4, 4):uint()) end

-- Procedure 0, which does nothing, is named after the wificonf command that calls it.
local function name_of(number)
  if number == 0 then return "ping" end
  return procedures[number] and procedures[number].name or string.format("procedure %u", number)
end

local function dissect_call(tree, buffer, pinfo, key)
  local number = buffer(20, 4):uint()
  called[key] = number
  tree:add(f.number, buffer(20, 4))
  tree:add(f.procedure, buffer(20, 4), name_of(number))
  pinfo.cols.info = "Call " .. name_of(number)
  local procedure = procedures[number]
  if not procedure then return end
  add_arguments(tree, procedure, buffer, pinfo, skip_auth(buffer, skip_auth(buffer, 24)))
end

local function dissect_reply(tree, buffer, pinfo, key)
  local number = called[key]
  local name = number and name_of(number) or "unknown procedure"
  pinfo.cols.info = "Reply " .. name
  tree:add(f.procedure, name):set_generated()
  if buffer(8, 4):uint() ~= ACCEPTED then
    pinfo.cols.info:append(": denied")
    return
  end
  local at = skip_auth(buffer, 12)
  tree:add(f.accepted, buffer(at, 4))
  local status = buffer(at, 4):uint()
  if status ~= 0 then pinfo.cols.info:append(": " .. (statuses[status] or "status " .. status)) end
  local procedure = number and procedures[number]
  if status == 0 and procedure then add_result(tree, procedure, buffer, pinfo, at + 4) end
end

local function is_ours(buffer)
  if buffer:len() < 12 then return false end
  if buffer(4, 4):uint() == CALL then
    return buffer:len() >= 24 and buffer(12, 4):uint() == PROGRAM
  end
  return buffer(4, 4):uint() == 1
end

-- Takes everything that comes to the port: another dissector that was given one packet
-- would keep the rest of the conversation.
function wlan_config.dissector(buffer, pinfo, root)
  pinfo.cols.protocol = "WLAN_CONFIG"
  if not is_ours(buffer) then
    root:add(wlan_config, buffer()):add_proto_expert_info(malformed)
    return buffer:len()
  end
  local is_call = buffer(4, 4):uint() == CALL
  local client = is_call and pinfo.src_port or pinfo.dst_port
  local key = client .. "/" .. buffer(0, 4):uint()
  local tree = root:add(wlan_config, buffer())
  tree:add(f.xid, buffer(0, 4))
  tree:add(f.type, buffer(4, 4))
  local dissect = is_call and dissect_call or dissect_reply
  local whole = pcall(dissect, tree, buffer, pinfo, key)
  if not whole then
    tree:add_proto_expert_info(malformed)
    pinfo.cols.info:append(" [cut off]")
  end
  return buffer:len()
end

DissectorTable.get("udp.port"):add(60001, wlan_config)
