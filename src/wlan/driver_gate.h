#pragma once

// Whether the driver may be queried; reports on behalf of `caller` when not.
[[nodiscard]] bool driver_is_inited(const char* caller);
