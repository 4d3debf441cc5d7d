#include "sys/shell.h"

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
  *output = nullptr;
  FILE* stream = popen(command, "re");
  if (stream == nullptr) {
    RPC_TRACE("%s: popen %s error\n", caller, command);
    return -1;
  }
  const int status = read_all(caller, command, stream, output);
  pclose(stream);
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

static int report_copy(const char* step, const char* path) {
  const int error = errno;
  fprintf(stderr, "_file_copy %s %s error\n", step, path);
  errno = error;
  perror(step);
  return 0;
}

int _file_copy(const char* source, const char* target) {
  FILE* in = fopen(source, "re");
  if (in == nullptr) return report_copy("fopen", source);
  FILE* out = fopen(target, "w+e");
  if (out == nullptr) {
    report_copy("fopen", target);
    fclose(in);
    return 0;
  }
  char block[4096];
  size_t length;
  bool whole = true;
  while (whole && (length = fread(block, 1, sizeof block, in)) > 0) {
    whole = fwrite(block, 1, length, out) == length;
  }
  whole = whole && ferror(in) == 0;
  fclose(in);
  if (fclose(out) != 0 || !whole) return report_copy("write", target);
  return 1;
}
