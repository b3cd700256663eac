#include "TarnwickMSL/Confinement/Confinement.h"

#include <sys/mman.h>

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <unistd.h>

namespace tarnwick::msl {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool canBeConfined = false;
#else
constexpr bool canBeConfined = true;
#endif

struct Release {
    void operator()(scmp_filter_ctx filter) const { seccomp_release(filter); }
};
using Filter = std::unique_ptr<void, Release>;

// On open files, with what is there already.
constexpr int files[] = {
    SCMP_SYS(read),     SCMP_SYS(write),   SCMP_SYS(readv),  SCMP_SYS(writev),
    SCMP_SYS(recvfrom), SCMP_SYS(recvmsg), SCMP_SYS(sendto), SCMP_SYS(poll),
    SCMP_SYS(ppoll),    SCMP_SYS(lseek),   SCMP_SYS(fstat),  SCMP_SYS(close),
};
constexpr int memory[] = {SCMP_SYS(brk), SCMP_SYS(munmap), SCMP_SYS(madvise), SCMP_SYS(mremap)};
constexpr int threads[] = {
    SCMP_SYS(futex),
    SCMP_SYS(futex_waitv),
    SCMP_SYS(set_robust_list),
    SCMP_SYS(rseq),
    SCMP_SYS(set_tid_address),
    SCMP_SYS(sched_yield),
    SCMP_SYS(gettid),
    SCMP_SYS(getpid),
    SCMP_SYS(rt_sigaction),
    SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(rt_sigreturn),
    SCMP_SYS(sigaltstack),
    SCMP_SYS(restart_syscall),
    SCMP_SYS(exit),
    SCMP_SYS(exit_group),
    SCMP_SYS(membarrier),
    SCMP_SYS(sched_getaffinity),
};
constexpr int clocks[] = {
    SCMP_SYS(clock_gettime), SCMP_SYS(gettimeofday), SCMP_SYS(clock_nanosleep), SCMP_SYS(nanosleep),
    SCMP_SYS(getrusage),     SCMP_SYS(setitimer),    SCMP_SYS(times),           SCMP_SYS(getrandom),
};

constexpr int looking[] = {
    SCMP_SYS(stat),      SCMP_SYS(lstat),      SCMP_SYS(newfstatat), SCMP_SYS(statx),
    SCMP_SYS(readlink),  SCMP_SYS(readlinkat), SCMP_SYS(getcwd),     SCMP_SYS(access),
    SCMP_SYS(faccessat), SCMP_SYS(faccessat2), SCMP_SYS(pread64),
};

bool allow(const Filter& filter, int call) {
    // A system call that this architecture or kernel does not have is no fault.
    const int result = seccomp_rule_add(filter.get(), SCMP_ACT_ALLOW, call, 0);
    return result == 0 || result == -EDOM || result == -EINVAL;
}

// If those bits of an argument have that value.
bool allow(const Filter& filter, int call, unsigned argument, scmp_datum_t bits,
           scmp_datum_t value) {
    const scmp_arg_cmp comparison{
        .arg = argument, .op = SCMP_CMP_MASKED_EQ, .datum_a = bits, .datum_b = value};
    return seccomp_rule_add_array(filter.get(), SCMP_ACT_ALLOW, call, 1, &comparison) == 0;
}

bool allowAll(const Filter& filter) {
    bool isAllowed = true;
    for (const int call : files)
        isAllowed = isAllowed && allow(filter, call);
    for (const int call : memory)
        isAllowed = isAllowed && allow(filter, call);
    for (const int call : threads)
        isAllowed = isAllowed && allow(filter, call);
    for (const int call : clocks)
        isAllowed = isAllowed && allow(filter, call);
    return isAllowed;
}

bool allowReading(const Filter& filter) {
    constexpr scmp_datum_t changes = O_ACCMODE | O_CREAT | O_TRUNC;
    bool isAllowed = true;
    for (const int call : looking)
        isAllowed = isAllowed && allow(filter, call);
    return isAllowed && allow(filter, SCMP_SYS(open), 1, changes, O_RDONLY) &&
           allow(filter, SCMP_SYS(openat), 2, changes, O_RDONLY);
}

// A crash may end the process by a signal to itself.
bool allowOwnSignals(const Filter& filter) {
    const auto self = static_cast<scmp_datum_t>(getpid());
    const scmp_datum_t all = ~scmp_datum_t{0};
    return allow(filter, SCMP_SYS(tgkill), 0, all, self) &&
           allow(filter, SCMP_SYS(kill), 0, all, self);
}

// Memory of its own, which never is code.
bool allowPlainMemory(const Filter& filter) {
    constexpr scmp_datum_t isCode = PROT_EXEC;
    return allow(filter, SCMP_SYS(mprotect), 2, isCode, 0) &&
           allow(filter, SCMP_SYS(mmap), 2, isCode, 0);
}

// clone3's flags are in memory, which no filter reads: the C library then takes clone.
bool allowThreads(const Filter& filter) {
    return allow(filter, SCMP_SYS(clone), 0, CLONE_THREAD, CLONE_THREAD) &&
           seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0;
}

} // namespace

bool confine(FileAccess access) {
    if (!canBeConfined)
        return false;
    const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)));
    return filter && seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1) == 0 &&
           allowAll(filter) && allowOwnSignals(filter) && allowPlainMemory(filter) &&
           allowThreads(filter) && (access == FileAccess::none || allowReading(filter)) &&
           seccomp_load(filter.get()) == 0;
}

} // namespace tarnwick::msl
