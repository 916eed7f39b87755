// Stands between a program and its disk (LD_PRELOAD), and counts the calls that change files. The
// variable FAULT names what happens at the one of the number FAULT_AT:
//   kill  the process is killed in front of it
//   tear  the same, and the first half of what is written is there
//   full  the disk is full from then on
//   fail  that call fails
// With FAULT_LOG each call is told to that file, and what is said on standard output in between.
// With FAULT_NO_LINKS the file system knows no hard links.
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

enum { kLogDescriptor = 200 };

static long sCalls;

static int Is(const char* fault) {
    const char* wanted = getenv("FAULT");
    return wanted && strcmp(wanted, fault) == 0;
}

/// `bytes` are what is written, or a second name.
static void Tell(const char* call, const char* name, long place, const void* bytes, size_t size) {
    if (fcntl(kLogDescriptor, F_GETFD) < 0) {
        const char* log = getenv("FAULT_LOG");
        const int opened =
            log ? (int)syscall(SYS_openat, AT_FDCWD, log, O_WRONLY | O_CREAT | O_APPEND, 0600) : -1;
        if (opened < 0)
            return;
        dup3(opened, kLogDescriptor, O_CLOEXEC);
        syscall(SYS_close, opened);
    }
    char line[4500];
    const int length =
        snprintf(line, sizeof line, "%s %ld %zu %s\n", call, place, bytes ? size : 0, name);
    const struct iovec parts[] = {{line, (size_t)length}, {(void*)bytes, bytes ? size : 0}};
    syscall(SYS_writev, kLogDescriptor, parts, bytes ? 2 : 1);
}

/// 0, or the error that the call is to answer. `halve` writes half of it.
static int Meet(const char* call, const char* name, long place, const void* bytes, size_t size) {
    const char* at = getenv("FAULT_AT");
    const long due = at ? atol(at) : 0;
    const long number = ++sCalls;
    const int isGrowing = strcmp(call, "write") == 0 || strcmp(call, "link") == 0;
    if (due > 0 && number >= due && isGrowing && Is("full"))
        return ENOSPC;
    if (number == due && Is("fail"))
        return EIO;
    if (number == due && Is("tear") && strcmp(call, "write") == 0) {
        const int torn = (int)syscall(SYS_openat, AT_FDCWD, name, O_WRONLY);
        syscall(SYS_pwrite64, torn, bytes, size / 2, place);
    }
    if (number == due && (Is("kill") || Is("tear")))
        kill(getpid(), SIGKILL);
    Tell(call, name, place, bytes, size);
    return 0;
}

static int MeetFile(const char* call, int file, long place, const void* bytes, size_t size) {
    char link[64];
    char name[4096] = "";
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const ssize_t length = readlink(link, name, sizeof name - 1);
    struct stat status;
    if (length < 0 || fstat(file, &status) != 0)
        return 0;
    if (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode))
        return Meet(call, name, place, bytes, size);
    if (file == STDOUT_FILENO)
        Tell("say", "-", 0, bytes, size);
    return 0;
}

static long Answer(int error, long result) {
    errno = error ? error : errno;
    return error ? -1 : result;
}

#define UNLESS_MET(met, number, ...)                                                               \
    const int error = met;                                                                         \
    return Answer(error, error ? -1 : syscall(number, __VA_ARGS__))

ssize_t write(int file, const void* bytes, size_t size) {
    const off_t place =
        fcntl(file, F_GETFL) & O_APPEND ? lseek(file, 0, SEEK_END) : lseek(file, 0, SEEK_CUR);
    UNLESS_MET(MeetFile("write", file, place, bytes, size), SYS_write, file, bytes, size);
}
ssize_t writev(int file, const struct iovec* parts, int count) {
    ssize_t total = 0;
    for (int i = 0; i < count; ++i) {
        const ssize_t written =
            parts[i].iov_len ? write(file, parts[i].iov_base, parts[i].iov_len) : 0;
        if (written < 0)
            return total ? total : -1;
        total += written;
    }
    return total;
}
ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t place) {
    UNLESS_MET(MeetFile("write", file, place, bytes, size), SYS_pwrite64, file, bytes, size, place);
}
ssize_t pwrite(int file, const void* bytes, size_t size, off_t place) {
    return pwrite64(file, bytes, size, place);
}
int ftruncate64(int file, off64_t size) {
    UNLESS_MET(MeetFile("truncate", file, size, NULL, 0), SYS_ftruncate, file, size);
}
int ftruncate(int file, off_t size) {
    return ftruncate64(file, size);
}
int fsync(int file) {
    UNLESS_MET(MeetFile("sync", file, 0, NULL, 0), SYS_fsync, file);
}
int fdatasync(int file) {
    return fsync(file);
}
int rename(const char* from, const char* to) {
    UNLESS_MET(Meet("rename", from, 0, to, strlen(to)), SYS_rename, from, to);
}
int link(const char* from, const char* to) {
    if (getenv("FAULT_NO_LINKS"))
        return (int)Answer(EPERM, 0);
    UNLESS_MET(Meet("link", from, 0, to, strlen(to)), SYS_link, from, to);
}
int unlink(const char* name) {
    UNLESS_MET(Meet("unlink", name, 0, NULL, 0), SYS_unlink, name);
}
int remove(const char* name) {
    return unlink(name);
}
// The kernel's own ways to copy go through the calls above.
ssize_t sendfile64(int to, int from, off64_t* place, size_t size) {
    static char block[1 << 20];
    const size_t most = size < sizeof block ? size : sizeof block;
    const ssize_t length = place ? pread64(from, block, most, *place) : read(from, block, most);
    const ssize_t written = length > 0 ? write(to, block, (size_t)length) : length;
    if (written > 0 && place)
        *place += written;
    return written;
}
ssize_t sendfile(int to, int from, off_t* place, size_t size) {
    return sendfile64(to, from, place, size);
}
ssize_t copy_file_range(int from, off64_t* there, int to, off64_t* here, size_t size,
                        unsigned int flags) {
    (void)from, (void)there, (void)to, (void)here, (void)size, (void)flags;
    return Answer(ENOSYS, 0);
}
