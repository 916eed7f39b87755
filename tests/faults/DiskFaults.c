// Stands between a program and its disk (LD_PRELOAD), and counts the calls that change files. The
// variable FAULT names what happens at the one of the number FAULT_AT:
//   kill  the process is killed in front of it
//   full  the disk is full from then on
//   fail  that call fails
// Each call is told to the file FAULT_LOG, and what is said on standard output in between. With
// FAULT_NO_LINKS the file system knows no hard links.
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

static int Is(const char* fault) {
    const char* wanted = getenv("FAULT");
    return wanted && strcmp(wanted, fault) == 0;
}

/// `bytes` are what is written, or a second name.
static void Tell(const char* call, const char* name, long place, const void* bytes, size_t size) {
    const char* path = getenv("FAULT_LOG");
    if (!path)
        return;
    char line[4500];
    const int length = snprintf(line, sizeof line, "%s %ld %zu %s\n", call, place, size, name);
    const struct iovec parts[] = {{line, (size_t)length}, {(void*)bytes, size}};
    const int log = (int)syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_APPEND, 0600);
    syscall(SYS_writev, log, parts, 2);
    syscall(SYS_close, log);
}

/// 0, or the error that the call is to answer.
static int Meet(const char* call, const char* name, long place, const void* bytes, size_t size) {
    static long number = 0;
    const char* at = getenv("FAULT_AT");
    const long due = at ? atol(at) : -1;
    const int isGrowing = strcmp(call, "write") == 0 || strcmp(call, "link") == 0;
    ++number;
    if (number == due && Is("kill"))
        kill(getpid(), SIGKILL);
    if (number >= due && isGrowing && Is("full"))
        return ENOSPC;
    if (number == due && Is("fail"))
        return EIO;
    Tell(call, name, place, bytes, size);
    return 0;
}

static int MeetFile(const char* call, int file, long place, const void* bytes, size_t size) {
    char link[64], name[4096] = "";
    struct stat status;
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    if (fstat(file, &status) != 0 || readlink(link, name, sizeof name - 1) < 0)
        return 0;
    if (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode))
        return Meet(call, name, place, bytes, size);
    if (file == STDOUT_FILENO)
        Tell("say", "-", 0, bytes, size);
    return 0;
}

#define UNLESS_MET(met, number, ...)                                                               \
    const int error = met;                                                                         \
    if (error)                                                                                     \
        errno = error;                                                                             \
    return error ? -1 : syscall(number, __VA_ARGS__)

ssize_t write(int file, const void* bytes, size_t size) {
    const off_t place = lseek(file, 0, SEEK_CUR);
    UNLESS_MET(MeetFile("write", file, place, bytes, size), SYS_write, file, bytes, size);
}
ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t place) {
    UNLESS_MET(MeetFile("write", file, place, bytes, size), SYS_pwrite64, file, bytes, size, place);
}
int ftruncate64(int file, off64_t size) {
    UNLESS_MET(MeetFile("truncate", file, size, "", 0), SYS_ftruncate, file, size);
}
int fsync(int file) {
    UNLESS_MET(MeetFile("sync", file, 0, "", 0), SYS_fsync, file);
}
int fdatasync(int file) {
    return fsync(file);
}
int rename(const char* from, const char* to) {
    UNLESS_MET(Meet("rename", from, 0, to, strlen(to)), SYS_rename, from, to);
}
int link(const char* from, const char* to) {
    const int refusal = getenv("FAULT_NO_LINKS") ? EPERM : Meet("link", from, 0, to, strlen(to));
    UNLESS_MET(refusal, SYS_link, from, to);
}
int unlink(const char* name) {
    UNLESS_MET(Meet("unlink", name, 0, "", 0), SYS_unlink, name);
}
int remove(const char* name) {
    return unlink(name);
}
// Copying goes through the calls above.
ssize_t sendfile(int to, int from, off_t* place, size_t size) {
    static char block[1 << 20];
    const ssize_t length = pread(from, block, size < sizeof block ? size : sizeof block, *place);
    const ssize_t written = length > 0 ? write(to, block, (size_t)length) : length;
    *place += written > 0 ? written : 0;
    return written;
}
