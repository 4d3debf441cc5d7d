// The client of every comparison. Prints one line of JSON.
//
//   bench_client alternate CALLS SIDE...          {"us": [[each call's time], ...]}; ends
//                                                 after a quarter of a second at most
//   bench_client commands RUNS COMMAND...         the same for commands, without a shell
//   bench_client load SECONDS CLIENTS SIDE        {"calls": n, "seconds": s}
//   bench_client paced PER_SECOND SECONDS SIDE    the same
//   bench_client restart SIDE RESTART             {"us": [[idle], [while restarting]]}
//   bench_client start SIDE COMMAND...            {"us": n}; stops the command again
//
// For SIDE see call.h. RESTART is a side that requests the restart of one radio.

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include "call.h"

extern char** environ;

enum { kSidesMax = 4, kBlock = 20, kSamplesMax = 400000 };

struct samples {
  int count;
  double* us;
};

static struct samples new_samples(void) {
  return (struct samples){.us = malloc(kSamplesMax * sizeof(double))};
}

static void add_sample(struct samples* to, double us) {
  if (to->count < kSamplesMax) to->us[to->count++] = us;
}

static void print_samples(const struct samples* sides, int count) {
  printf("{\"us\": [");
  for (int s = 0; s < count; ++s) {
    printf("%s[", s > 0 ? ", " : "");
    for (int i = 0; i < sides[s].count; ++i)
      printf("%s%.2f", i > 0 ? ", " : "", sides[s].us[i]);
    printf("]");
    free(sides[s].us);
  }
  printf("]}\n");
}

static void timed_call(struct side* side, struct samples* to) {
  const double start = microseconds();
  side_call(side);
  if (to != NULL) add_sample(to, microseconds() - start);
}

// Calls each side in blocks, in turn. The first call of a block is not counted, because it
// finds the other side's data in the caches.
static int alternate(int argc, char** argv) {
  const int calls = atoi(argv[0]);
  const int count = argc - 1;
  if (count > kSidesMax) return 2;
  static struct side sides[kSidesMax];
  struct samples samples[kSidesMax];
  for (int s = 0; s < count; ++s) {
    side_open(&sides[s], argv[s + 1]);
    samples[s] = new_samples();
  }
  const double end = microseconds() + 250e3;
  for (int done = 0; done < calls && microseconds() < end; done += kBlock) {
    for (int s = 0; s < count; ++s) {
      timed_call(&sides[s], NULL);
      for (int i = 0; i < kBlock; ++i)
        timed_call(&sides[s], &samples[s]);
    }
  }
  print_samples(samples, count);
  return 0;
}

static pid_t spawn(char** words) {
  if (words[0] == NULL) exit(2);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = -1;
  const int error = posix_spawnp(&child, words[0], &quiet, NULL, words, environ);
  posix_spawn_file_actions_destroy(&quiet);
  if (error == 0) return child;
  fprintf(stderr, "bench_client: %s: %s\n", words[0], strerror(error));
  exit(1);
}

static void timed_command(char** words, struct samples* to) {
  const double start = microseconds();
  const pid_t child = spawn(words);
  int status = -1;
  waitpid(child, &status, 0);
  add_sample(to, microseconds() - start);
  if (status == 0) return;
  fprintf(stderr, "bench_client: %s failed\n", words[0]);
  exit(1);
}

enum { kWordsMax = 16 };

static void split_words(char* command, char** words) {
  int count = 0;
  for (char* word = strtok(command, " "); word != NULL && count < kWordsMax - 1;
       word = strtok(NULL, " "))
    words[count++] = word;
  words[count] = NULL;
}

static int commands(int argc, char** argv) {
  const int runs = atoi(argv[0]);
  const int count = argc - 1;
  if (count > kSidesMax) return 2;
  char* words[kSidesMax][kWordsMax];
  struct samples samples[kSidesMax];
  for (int s = 0; s < count; ++s) {
    split_words(argv[s + 1], words[s]);
    samples[s] = new_samples();
  }
  for (int run = 0; run < runs; ++run) {
    for (int s = 0; s < count; ++s)
      timed_command(words[s], &samples[s]);
  }
  print_samples(samples, count);
  return 0;
}

static void call_until(const char* side_text, double end, long* calls) {
  struct side side;
  side_open(&side, side_text);
  while (microseconds() < end) {
    side_call(&side);
    ++*calls;
  }
}

static int load(int argc, char** argv) {
  if (argc != 3) return 2;
  const double seconds = atof(argv[0]);
  const int clients = atoi(argv[1]);
  long* calls = mmap(NULL, sizeof(long) * (size_t)clients, PROT_READ | PROT_WRITE,
                     MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  const double start = microseconds();
  for (int i = 0; i < clients; ++i) {
    if (fork() == 0) {
      call_until(argv[2], start + seconds * 1e6, &calls[i]);
      _exit(0);
    }
  }
  long sum = 0;
  int failed = 0;
  for (int i = 0; i < clients; ++i) {
    int status = -1;
    wait(&status);
    failed |= status;
  }
  for (int i = 0; i < clients; ++i)
    sum += calls[i];
  printf("{\"calls\": %ld, \"seconds\": %.6f}\n", sum, (microseconds() - start) / 1e6);
  return failed != 0;
}

static void sleep_until(double when) {
  const struct timespec at = {.tv_sec = (time_t)(when / 1e6),
                              .tv_nsec = (long)((when / 1e6 - (double)(time_t)(when / 1e6)) * 1e9)};
  clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &at, NULL);
}

static int paced(int argc, char** argv) {
  if (argc != 3) return 2;
  const double rate = atof(argv[0]);
  const double seconds = atof(argv[1]);
  struct side side;
  side_open(&side, argv[2]);
  const double start = microseconds();
  long calls = 0;
  for (; (double)calls < rate * seconds; ++calls) {
    sleep_until(start + (double)calls / rate * 1e6);
    side_call(&side);
  }
  sleep_until(start + seconds * 1e6);
  printf("{\"calls\": %ld, \"seconds\": %.6f}\n", calls, (microseconds() - start) / 1e6);
  return 0;
}

static void call_for(struct side* side, double us, struct samples* to) {
  const double end = microseconds() + us;
  while (microseconds() < end)
    timed_call(side, to);
}

// A restart begins a second after it is requested, and creates the marker file in its
// second-last step. Calls are counted between the two.
static int restart(int argc, char** argv) {
  static const char kMarker[] = "/tmp/wifi_restart";
  if (argc != 2) return 2;
  struct side inert;
  struct side request;
  side_open(&inert, argv[0]);
  side_open(&request, argv[1]);
  struct samples samples[2] = {new_samples(), new_samples()};
  // By then an earlier restart has finished its last step, after the marker.
  sleep_until(microseconds() + 200e3);
  unlink(kMarker);
  const double asked = microseconds();
  side_call(&request);
  call_for(&inert, 800e3, &samples[0]);
  sleep_until(asked + 1e6);
  while (access(kMarker, F_OK) != 0 && microseconds() < asked + 10e6)
    timed_call(&inert, &samples[1]);
  if (access(kMarker, F_OK) != 0) {
    fprintf(stderr, "bench_client: no restart within ten seconds\n");
    exit(1);
  }
  print_samples(samples, 2);
  return 0;
}

// Calls until there is an answer. Retries a refused call after 0.1 ms, so that a server on the
// same CPU can run meanwhile.
static void call_until_answered(struct side* side) {
  static const struct timespec kPause = {.tv_nsec = 100000};
  while (!side_send(side) || !side_receive(side, 20))
    nanosleep(&kPause, NULL);
}

static int start(int argc, char** argv) {
  if (argc < 2) return 2;
  struct side side;
  side_open(&side, argv[0]);
  const double begun = microseconds();
  const pid_t child = spawn(argv + 1);
  call_until_answered(&side);
  const double us = microseconds() - begun;
  kill(child, SIGTERM);
  waitpid(child, NULL, 0);
  printf("{\"us\": %.1f}\n", us);
  return 0;
}

static const struct {
  const char* name;
  int (*run)(int argc, char** argv);
} kModes[] = {{"alternate", alternate}, {"commands", commands}, {"load", load},
              {"paced", paced},         {"restart", restart},   {"start", start}};

int main(int argc, char** argv) {
  int status = 2;
  for (size_t i = 0; i < sizeof kModes / sizeof *kModes && argc > 3; ++i) {
    if (strcmp(argv[1], kModes[i].name) == 0) status = kModes[i].run(argc - 2, argv + 2);
  }
  if (status == 2) fprintf(stderr, "bench_client: see the head of client.c\n");
  return status;
}
