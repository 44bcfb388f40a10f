#include "Tests/Support/FailingCalls.h"

#include <cerrno>
#include <ctime>
#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" [[gnu::visibility("default")]] int poll(pollfd* watched, nfds_t count, int timeout) {
    if (FailingCalls::poll) {
        errno = EINVAL;
        return -1;
    }
    const timespec time{timeout / 1000, timeout % 1000 * 1'000'000L};
    return ppoll(watched, count, timeout < 0 ? nullptr : &time, nullptr);
}

extern "C" [[gnu::visibility("default")]] int socketpair(int family, int type, int protocol, int* ends) noexcept {
    if (FailingCalls::socketpair) {
        errno = EMFILE;
        return -1;
    }
    return static_cast<int>(syscall(SYS_socketpair, family, type, protocol, ends));
}

extern "C" [[gnu::visibility("default")]] int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                                             void* (*run)(void*), void* argument) noexcept {
    static const auto start = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return FailingCalls::threadsLeft-- > 0 ? start(thread, attributes, run, argument) : EAGAIN;
}
