// The boards that a box can simulate: the radio cards on the PCI bus and the interfaces that the
// driver creates for them.
#pragma once

#include <span>
#include <string>
#include <string_view>

struct pci_card {
  unsigned slot;  // bus number << 8 | device << 3 | function
  unsigned id;    // vendor << 16 | device, as the kernel prints it
  unsigned irq;
  unsigned long long bar;   // address of the register window, 0 for a bridge
  unsigned long long size;  // its size in bytes
  const char* driver;
};

struct board {
  const char* name;
  int interfaces;  // ra0 .. ra<interfaces-1>
  bool dual_band;  // ra8 and up are on the 5 GHz band, which has its own profile
  pci_card cards[4];
  int card_count;
};

constexpr const char* kBoardDefault = "mt7603+mt7612";
constexpr int kBoardMaxInterfaces = 16;
constexpr int kBoardFirst5ghz = 8;  // number of the first 5 GHz interface

// The board with that name, or null.
const board* board_find(std::string_view name);

std::span<const board> board_all();

// All board names, separated by ", ".
std::string board_names();

// N of the interface names ra0 to ra15, -1 for any other name.
int board_interface_number(const char* name);

// The content of /proc/bus/pci/devices on that board, in the kernel's format.
std::string board_pci_devices(const board& b);
