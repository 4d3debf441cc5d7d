#include "commands/command.h"

std::span<const command_row* const> command_all() {
  static constexpr const command_row* kAll[] = {
      &kPingCommand, &kListCommand,  &kDescribeCommand, &kSchemaCommand,
      &kDumpCommand, &kWatchCommand, &kTopCommand,      &kCompletionCommand};
  return kAll;
}
