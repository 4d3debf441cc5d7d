#pragma once

// Limits that the kernel sets this process.

// Lets this process, and what it starts, have as many descriptors open as its
// hard limit allows.
void raise_descriptor_limit();
