#include "support/profile_lines.h"

#include <iterator>

const char kUsualProfile[] =
    "#The word of \"Default\" must not be removed\n"
    "Default\n"
    "CountryCode=DE\n"
    "SSID1=Home\n"
    "SSID2=Guest\n"
    "SSID3=\n"
    "SSID8=Setup\n"
    "RadioOn=1\n"
    "BssEnabled=1;1;0;0;0;0;0;1\n"
    "WirelessMode=9\n"
    "Channel=0\n"
    "HideSSID=0;0;0;0;0;0;0;1\n"
    "AuthMode=WPA2PSK;WPA2PSK;OPEN;OPEN;OPEN;OPEN;OPEN;OPEN\n"
    "EncrypType=AES;AES;NONE;NONE;NONE;NONE;NONE;NONE\n"
    "WPAPSK1=correct-horse\n"
    "WPAPSK2=guest guest\n"
    "HT_TxStream=2\n"
    "WscEnable=1;1;0;0;0;0;0;0\n"
    "WscConfMethods=238c;0080;0004;;;;;\n"
    "RADIUS_Server=10.0.0.1;;;;;;;\n"
    "VLAN_ID=0;7;7;9;0;0;0;0\n"
    "VLANID=5;0;0;0;0;0;0;0\n"
    "UdmaEnable=0\n"
    "RSG_Enable=0\n"
    "BandSteering=1\n"
    "MSODCSOn=1\n"
    "USERDCSOn=1\n"
    "DCSSerChSampTime=5\n"
    "DCSRSSIWeight=1,2,3\n"
    "BSSHNCService=0;7;0;0;0;0;0;0\n"
    "BSSHNCBHEnable=0;1;0;0;0;0;0;0\n"
    "BSSHNCReplicate=0;1\n"
    "BSSHNCReplicateRadio=1;2;1\n"
    "BSSHNCWdsMode=0;0\n"
    "HNCSteerSTAMac=02:00:5e:00:00:01\n"
    "HNCActionFrameMac=02:00:5e:00:00:02\n"
    "HNCActionFramePayload=0a07\n"
    "HNCActionFrameType=wnm\n"
    "HNCSteerBlackListTimer=30\n"
    "NonAssocReqMac=02:00:5e:00:00:03\n"
    "NonAssocRptEnable=1\n";

static constexpr size_t kPiece = 1727;

static constexpr std::string_view kForcedKeys[] = {
    "BandSteering",       "ChannelUtilizationEnable", "HNCSteerSTAMac",
    "HNCSteerSTAType",    "HNCSteerBlackListAction",  "HNCSteerBlackListTimer",
    "HNCActionFrameType", "HNCActionFrameMac",        "HNCActionFramePayload",
    "NonAssocReqMac",     "NonAssocRptEnable",        "WNMEnable",
};

static std::string_view key_of(std::string_view line) {
  const size_t equals = line.find('=');
  return equals == line.npos ? std::string_view() : line.substr(0, equals);
}

std::vector<std::string_view> profile_pieces(std::string_view profile) {
  std::vector<std::string_view> pieces;
  while (!profile.empty()) {
    const size_t end = profile.substr(0, kPiece).find('\n');
    const size_t length = end == profile.npos ? std::min(profile.size(), kPiece) : end + 1;
    pieces.push_back(profile.substr(0, length));
    profile.remove_prefix(length);
  }
  return pieces;
}

static std::string joined(const std::vector<std::string>& pieces) {
  std::string out;
  for (const std::string& piece : pieces)
    out += piece;
  return out;
}

static void put_line(std::vector<std::string>* profile, std::string_view line) {
  for (std::string& piece : *profile) {
    if (!key_of(line).empty() && key_of(piece) == key_of(line)) {
      piece = line;
      return;
    }
  }
  profile->emplace_back(line);
}

std::string profile_with(const std::string& profile, std::string_view lines) {
  const std::vector<std::string_view> old = profile_pieces(profile);
  std::vector<std::string> pieces(old.begin(), old.end());
  for (const std::string_view line : profile_pieces(lines))
    put_line(&pieces, std::string(line) + (line.ends_with('\n') ? "" : "\n"));
  return joined(pieces);
}

static bool may_be_added(std::string_view line) {
  for (const std::string_view key : kForcedKeys) {
    if (key_of(line) == key) return line.ends_with('\n');
  }
  return false;
}

// A piece may get another value and a line end, nothing else.
static bool same_but_value(std::string_view old_piece, std::string_view new_piece) {
  if (old_piece == new_piece) return true;
  if (new_piece.ends_with('\n') && new_piece.substr(0, new_piece.size() - 1) == old_piece)
    return true;
  const bool is_setting = old_piece.find('=') != old_piece.npos;
  return is_setting && key_of(old_piece) == key_of(new_piece) && new_piece.ends_with('\n');
}

std::string profile_objection(std::string_view old_content, std::string_view new_content) {
  const std::vector<std::string_view> before = profile_pieces(old_content);
  std::vector<std::string_view> after = profile_pieces(new_content);
  if (after.size() > before.size() && may_be_added(after.back())) {
    after.pop_back();
    // If the last line was of the greatest length and had no line end, that is a piece now.
    if (after.size() > before.size() && after.back() == "\n") after.pop_back();
  }
  if (after.size() != before.size()) return "a line was added or is missing";
  for (size_t i = 0; i < after.size(); ++i) {
    if (!same_but_value(before[i], after[i]))
      return "a line became another: " + std::string(after[i]);
  }
  return "";
}
