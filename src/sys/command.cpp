#include "sys/command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/trace.h"

static constexpr size_t kReadStep = 256;

int run_command(const char* command) {
  const int status = system(command);
  if (status == -1) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void probe_lines(const char* command, void (*take)(const char* line, void* context),
                 void* context) {
  FILE* stream = popen(command, "re");
  if (stream == nullptr) return;
  char line[64];
  while (fgets(line, sizeof line, stream) != nullptr)
    take(line, context);
  // pclose, so that the shell does not remain as a zombie.
  pclose(stream);
}

static void take_number(const char* line, void* number) {
  *static_cast<int*>(number) = atoi(line);
}

int probe_number(const char* command, int missing) {
  int number = missing;
  probe_lines(command, take_number, &number);
  return number;
}

static int read_all(const char* caller, const char* command, FILE* stream, char** output) {
  size_t length = 0;
  while (!feof(stream)) {
    char* grown = static_cast<char*>(realloc(*output, length + kReadStep));
    if (grown == nullptr) {
      trace_rpc("ex_cmd", "%s: realloc %s error\n", caller, command);
      return -1;
    }
    *output = grown;
    grown[length] = '\0';
    if (fgets(grown + length, kReadStep, stream) == nullptr || grown[length] == '\0') break;
    length += strlen(grown + length);
  }
  return 0;
}

int ex_cmd(const char* caller, const char* command, char** output) {
  char* text = nullptr;
  int status = -1;
  FILE* stream = popen(command, "re");
  if (stream == nullptr) {
    RPC_TRACE("%s: popen %s error\n", caller, command);
  } else {
    status = read_all(caller, command, stream, &text);
    pclose(stream);
  }
  if (output != nullptr) {
    *output = text;
  } else {
    free(text);
  }
  return status;
}

static int spawn_shell(const char* command, pid_t* child) {
  posix_spawn_file_actions_t actions;
  int error = posix_spawn_file_actions_init(&actions);
  if (error != 0) return error;
  error = posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  char shell[] = "sh";
  char option[] = "-c";
  char* const words[] = {shell, option, const_cast<char*>(command), nullptr};
  if (error == 0) error = posix_spawn(child, "/bin/sh", &actions, nullptr, words, environ);
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

int cfg_executecmd(const char* caller, const char* command) {
  RPC_TRACE("%s: cmd:%s\n", __func__, command);
  pid_t child = -1;
  if (spawn_shell(command, &child) != 0) {
    RPC_TRACE("%s: popen %s error\n", caller, command);
    return -1;
  }
  while (waitpid(child, nullptr, 0) == -1 && errno == EINTR) {
  }
  return 0;
}
