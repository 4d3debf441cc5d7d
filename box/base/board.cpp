#include "base/board.h"

#include <cstring>

#include <cstdio>

// The SoC has two root ports. Each populated one has a card.
static constexpr pci_card kRootPort0 = {0x0000, 0x0e8d0801, 4, 0, 0, "pcieport"};
static constexpr pci_card kRootPort1 = {0x0008, 0x0e8d0801, 24, 0, 0, "pcieport"};
static constexpr pci_card kMt7603 = {0x0100, 0x14c37603, 4, 0x60000000, 0x100000, "mt7603e_ap"};
static constexpr pci_card kMt7612 = {0x0200, 0x14c37612, 24, 0x60100000, 0x100000, "mt7612e_ap"};
static constexpr pci_card kMt7615 = {0x0100, 0x14c37615, 4, 0x60000000, 0x100000, "mt7615_ap"};

static constexpr board kBoards[] = {
    {"mt7603", 8, false, {kRootPort0, kMt7603}, 2},
    {"mt7603+mt7612", 16, true, {kRootPort0, kRootPort1, kMt7603, kMt7612}, 4},
    {"mt7615", 16, true, {kRootPort0, kMt7615}, 2},
};

const board* board_find(std::string_view name) {
  for (const board& b : kBoards) {
    if (name == b.name) return &b;
  }
  return nullptr;
}

std::span<const board> board_all() {
  return kBoards;
}

std::string board_names() {
  std::string names;
  for (const board& b : kBoards)
    names += (names.empty() ? "" : ", ") + std::string(b.name);
  return names;
}

// slot, id, irq, seven window addresses, seven window sizes, driver; tab-separated.
static std::string pci_line(const pci_card& card) {
  constexpr int kWindows = 7;
  char text[32];
  snprintf(text, sizeof text, "%04x\t%08x\t%x", card.slot, card.id, card.irq);
  std::string line = text;
  for (unsigned long long first : {card.bar, card.size}) {
    for (int i = 0; i < kWindows; ++i) {
      snprintf(text, sizeof text, "\t%16llx", i == 0 ? first : 0);
      line += text;
    }
  }
  return line + "\t" + card.driver + "\n";
}

std::string board_pci_devices(const board& b) {
  std::string text;
  for (int i = 0; i < b.card_count; ++i)
    text += pci_line(b.cards[i]);
  return text;
}

int board_interface_number(const char* name) {
  if (strncmp(name, "ra", 2) != 0) return -1;
  for (int number = 0; number < kBoardMaxInterfaces; ++number) {
    if (std::to_string(number) == name + 2) return number;
  }
  return -1;
}
