#include "support/known_commands.h"

#include <iterator>

// "%d" is a number, perhaps with a minus sign. "%w" is a word: letters, digits and "._-:",
// or a text in single quotes, in which a quote can only be part of '\''.
static constexpr std::string_view kCommands[] = {
    // radios and driver
    "iwpriv ra%d set ApEnableRadioChStats=%d",
    "iwpriv ra%d set ApEnableRadioChStats=%d;",
    "iwpriv ra%d set BndStrgEnable=%d",
    "iwpriv ra%d set AutoChannelSel=3",
    "iwpriv ra%d set DisConnectSta=%w",
    "iwpriv ra%d set AccessPolicy=2",
    "iwpriv ra%d set ACLAddEntry=%w",
    "iwpriv ra%d set WscPinCode=%w",
    "iwpriv ra%d set WscConfMode=7",
    "iwpriv ra%d set WscConfStatus=%d",
    "iwpriv ra%d set WscMode=%d",
    "iwpriv ra%d set WscGetConf=1",
    "iwpriv ra%d set WscStop",
    // calibration
    "iwpriv ra0 e2p 52",
    ("iwpriv ra0 set ATE=ATESTART; iwpriv ra0 set ATE=RXFRAME; iwpriv ra0 set ATE=RX2GSELFTEST; "
     "sleep 2; iwpriv ra0 set ATE=ATESTOP"),
    ("iwpriv ra8 set ATE=ATESTART; iwpriv ra8 set ATE=RXFRAME; iwpriv ra8 set ATE=RX5GSELFTEST; "
     "sleep 2; iwpriv ra8 set ATE=ATESTOP"),
    "mkdir /nvram/backup_EEPROM_CALDATA; cp /nvram/MT7615_EEPROM_* /nvram/backup_EEPROM_CALDATA",
    "rm -f /nvram/MT7615_CALDATA1.bin",
    "rm -f /nvram/MT7615_CALDATA2.bin",
    "mv /nvram/backup_EEPROM_CALDATA/MT7615_* /nvram/",
    "rm -rf /nvram/backup_EEPROM_CALDATA",
    // band steering and the other companions
    "/bin/kill $(pgrep -f bs20 | awk '{print $1}')",
    "/bin/kill $(pgrep -f bndstrg_1 | awk '{print $1}')",
    "/bin/kill $(pgrep -f dcs | awk '{print $1}')",
    "/bin/kill $(pgrep -f mtk_ctrl | awk '{print $1}')",
    "/bin/kill $(pgrep -f wapp | awk '{print $1}')",
    "/bin/rm /tmp/mtk_bnd_file",
    "/sbin/EasyMesh_openwrt.sh",
    "bndstrg_1&",
    "dcs&",
    "mtk_ctrl&",
    "wapp -d2 -v2 -f /etc/wapp_ap.conf &",
    "/sbin/rtdot1xd &",
    "/sbin/rtinicapd &",
    "pgrep -l rtdot1xd | grep -c rtdot1xd",
    "pgrep -l rtinicapd | grep -c rtinicapd",
    "/usr/bin/killall -9 rtdot1xd",
    "/usr/bin/killall -9 rtinicapd",
    "killall -USR1 HncInit",
    "killall -USR2 HncInit",
    "touch /nvram/hnc_enable",
    "rm -rf /nvram/hnc_enable",
    "ln -s -T /bin/radstat /var/run/radstat%d",
    "killall radstat%d",
    "/var/run/radstat%d -i ra%d -r %d -m %d -R %d&",
    // load, init, restart, reset
    "cp /etc/Wireless/7615AP/MT7615_EEPROM.bin /nvram/MT7615_EEPROM_2G.bin",
    "cp /etc/Wireless/7615AP/MT7615_EEPROM.bin /nvram/MT7615_EEPROM_5G.bin",
    "cp /etc/Wireless/7603AP/MT7603_EEPROM.bin /nvram/",
    "cp /etc/Wireless/7612AP/MT7612_EEPROM.bin /nvram/",
    "cp /etc/Wireless/7615AP/l1profile.dat /tmp/l1profile.dat",
    "df -h /dev/sda1 | awk 'NR==2{print $NF}'",
    "echo %d > /sys/bus/pci/slots/0000:0%d:00.0/power",
    "echo 1 > /sys/bus/pci/devices/0000:0%d:00.0/remove",
    "echo 1 > /sys/bus/pci/rescan",
    "sleep 1",
    "echo %d > /proc/irq/%d/smp_affinity",
    ("INTRPT=`awk -F':' '/udma1/{print $1}' /proc/interrupts | sed 's/ //g'`; "
     "echo 2 > /proc/irq/$INTRPT/smp_affinity"),
    "touch /tmp/wifi_restart",
    "rmmod mt7615_ap.ko",
    "rmmod mt7603e_ap.ko",
    "rmmod mt7612e_ap.ko",
    // power tables
    "cp /etc/Wireless/7615AP/SingleSKU_FCC_3_TxStream_%w.dat /tmp/.mt7615_SingleSKU.dat",
    "cp /etc/Wireless/7615AP/SingleSKU_FCC_%w.dat /tmp/.mt7615_SingleSKU.dat",
    "cp /etc/Wireless/7615AP/SingleSKU_ETSI_%w.dat /tmp/.mt7615_SingleSKU.dat",
    "cp /etc/Wireless/7615AP/SingleSKU_BF_FCC_%w.dat /tmp/.mt7615_SingleSKU_BF.dat",
    "cp /etc/Wireless/7615AP/SingleSKU_BF_ETSI_%w.dat /tmp/.mt7615_SingleSKU_BF.dat",
    "/scripts/SKU_generator.sh %d %w FCC",
    "/scripts/SKU_generator.sh %d %w ETSI",
    "ln -sf /tmp/%w_%d.dat /tmp/.mt7603_SingleSKU.dat",
    "ln -sf /tmp/%w_%d.dat /tmp/.mt7612_SingleSKU.dat",
};

static bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

static bool is_plain(char c) {
  const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return letter || is_digit(c) || c == '.' || c == '_' || c == '-' || c == ':';
}

static size_t number_length(std::string_view text) {
  size_t length = text.starts_with('-') ? 1 : 0;
  const size_t sign = length;
  while (length < text.size() && is_digit(text[length]))
    ++length;
  return length > sign ? length : 0;
}

// Length of the text in single quotes at the start; 0 if the quote is not closed.
static size_t quoted_length(std::string_view text) {
  size_t at = 1;
  for (;;) {
    const size_t end = text.find('\'', at);
    if (end == text.npos) return 0;
    if (!text.substr(end).starts_with("'\\''")) return end + 1;
    at = end + 4;
  }
}

static bool matches(std::string_view pattern, std::string_view text);

// A plain word may end anywhere, a quoted one only at its quote.
static bool word_matches(std::string_view behind, std::string_view text) {
  if (text.starts_with('\'')) {
    const size_t length = quoted_length(text);
    return length > 0 && matches(behind, text.substr(length));
  }
  for (size_t length = 0;; ++length) {
    if (matches(behind, text.substr(length))) return true;
    if (length == text.size() || !is_plain(text[length])) return false;
  }
}

static bool matches(std::string_view pattern, std::string_view text) {
  const size_t hole = pattern.find('%');
  if (hole == pattern.npos) return pattern == text;
  if (!text.starts_with(pattern.substr(0, hole))) return false;
  text.remove_prefix(hole);
  const std::string_view behind = pattern.substr(hole + 2);
  if (pattern[hole + 1] == 'w') return word_matches(behind, text);
  const size_t length = number_length(text);
  return length > 0 && matches(behind, text.substr(length));
}

bool is_known_command(std::string_view command) {
  for (const std::string_view pattern : kCommands) {
    if (matches(pattern, command)) return true;
  }
  return false;
}
