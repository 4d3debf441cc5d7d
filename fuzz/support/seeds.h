#pragma once

#include <filesystem>
#include <string>

#include "support/input.h"

// Parts of inputs, see make_seeds.cpp.

std::string byte(unsigned value);

// The low byte first.
std::string u16(unsigned value);

// A text after its length, as the profile target takes it.
std::string text_item(const std::string& text);

// Which files are there, the board, and how far the lifecycle is.
std::string world(unsigned there, unsigned board, unsigned progress);

// What the driver, a command or a companion does next.
std::string answer(record_type type, unsigned outcome, const std::string& bytes);

// A call of the targets "answers" and "driver".
std::string operation(unsigned number, unsigned index);

// Varying bytes, with four zeros at the start of every forty.
std::string pattern(size_t size);

// Ends the program if the file cannot be written.
void write_seed(const std::filesystem::path& directory, const std::string& name,
                const std::string& bytes);

// edge_seeds.cpp: records that are full, counts and lengths at their bounds.
void write_edges(const std::filesystem::path& root);
