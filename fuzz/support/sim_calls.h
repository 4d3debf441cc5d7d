#pragma once

#include <dirent.h>
#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/types.h>
#include <time.h>

#include <cstdio>

// What the daemon calls instead of the system's functions, see outside.h. Each has the
// name and the signature of the function that it replaces; _chk and _2 are those of
// fortified builds.
extern "C" {
int sim_open(const char* path, int flags, ...);
int sim_open_2(const char* path, int flags);
int sim_openat(int directory, const char* path, int flags, ...);
int sim_openat_2(int directory, const char* path, int flags);
int sim_close(int fd);
ssize_t sim_read(int fd, void* data, size_t size);
ssize_t sim_read_chk(int fd, void* data, size_t size, size_t room);
ssize_t sim_write(int fd, const void* data, size_t size);
off_t sim_lseek(int fd, off_t offset, int whence);
int sim_fsync(int fd);
int sim_ftruncate(int fd, off_t length);
int sim_fallocate(int fd, int mode, off_t offset, off_t length);
int sim_fstat(int fd, struct stat* status);
int sim_stat(const char* path, struct stat* status);
int sim_lstat(const char* path, struct stat* status);
int sim_access(const char* path, int mode);
int sim_chmod(const char* path, mode_t mode);
int sim_fchmod(int fd, mode_t mode);
int sim_chown(const char* path, uid_t owner, gid_t group);
int sim_unlink(const char* path);
int sim_rmdir(const char* path);
char* sim_mkdtemp(char* pattern);
int sim_mkostemp(char* pattern, int flags);
ssize_t sim_readlinkat(int directory, const char* path, char* target, size_t size);
ssize_t sim_readlinkat_chk(int directory, const char* path, char* target, size_t size, size_t room);
int sim_rename(const char* from, const char* to);
int sim_renameat(int old_directory, const char* from, int new_directory, const char* to);
int sim_flock(int fd, int operation);
int sim_fcntl(int fd, int operation, ...);
void* sim_mmap(void* address, size_t size, int protection, int flags, int fd, off_t offset);
int sim_munmap(void* start, size_t size);

FILE* sim_fopen(const char* path, const char* mode);
int sim_fclose(FILE* stream);
FILE* sim_popen(const char* command, const char* mode);
int sim_pclose(FILE* stream);
int sim_system(const char* command);
int sim_posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                    const posix_spawnattr_t* attributes, char* const words[], char* const names[]);
pid_t sim_waitpid(pid_t child, int* status, int options);

int sim_socket(int domain, int type, int protocol);
int sim_ioctl(int fd, unsigned long request, ...);
int sim_bind(int fd, const sockaddr* address, socklen_t size);
int sim_connect(int fd, const sockaddr* address, socklen_t size);
int sim_setsockopt(int fd, int level, int option, const void* value, socklen_t size);
ssize_t sim_send(int fd, const void* data, size_t size, int flags);
ssize_t sim_sendto(int fd, const void* data, size_t size, int flags, const sockaddr* address,
                   socklen_t address_size);
ssize_t sim_recv(int fd, void* data, size_t size, int flags);
ssize_t sim_recv_chk(int fd, void* data, size_t size, size_t room, int flags);
ssize_t sim_recvfrom(int fd, void* data, size_t size, int flags, sockaddr* address,
                     socklen_t* address_size);
ssize_t sim_recvfrom_chk(int fd, void* data, size_t size, size_t room, int flags, sockaddr* address,
                         socklen_t* address_size);
int sim_poll(pollfd* descriptors, nfds_t count, int timeout_ms);
int sim_poll_chk(pollfd* descriptors, nfds_t count, int timeout_ms, size_t room);
unsigned sim_if_nametoindex(const char* name);

time_t sim_time(time_t* now);
int sim_gettimeofday(timeval* now, void* zone);
int sim_nanosleep(const timespec* duration, timespec* left);
unsigned sim_sleep(unsigned seconds);
pid_t sim_getpid();
DIR* sim_opendir(const char* path);
int sim_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                       void* argument);
int sim_pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex);
[[noreturn]] void sim_exit(int status);
long sim_syscall(long number, ...);
void* sim_dlopen(const char* name, int flags);
void* sim_dlsym(void* library, const char* name);
int sim_dlclose(void* library);
}

// The service's own socket, which has only these requests: the length of the current
// datagram, and dropping it unread.
struct service_socket {
  int fd;
  int (*length)();
  void (*drop)();
};
extern service_socket service;
