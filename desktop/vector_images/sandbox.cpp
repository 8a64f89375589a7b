#include "desktop/vector_images/sandbox.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoranth::desktop::vector_images {
namespace {

static_assert(std::endian::native == std::endian::little);  // the filter reads the lower halves

#if defined(__x86_64__)
constexpr std::uint32_t kMachine = AUDIT_ARCH_X86_64;
constexpr std::uint32_t kOtherKind = 0x40000000;  // of its calls: numbers with this bit
#elif defined(__aarch64__)
constexpr std::uint32_t kMachine = AUDIT_ARCH_AARCH64;
constexpr std::uint32_t kOtherKind = 0x80000000;  // there are none
#else
constexpr std::uint32_t kMachine = 0;  // has no filter here
constexpr std::uint32_t kOtherKind = 0x80000000;
#endif

// What a reader of a file has no use for, but one who took it over has.
constexpr std::array kForbidden{
#if defined(__x86_64__)
    SYS_fork, SYS_vfork, SYS_creat, SYS_unlink, SYS_rename, SYS_link, SYS_symlink, SYS_mkdir,
    SYS_rmdir, SYS_chmod, SYS_chown, SYS_lchown, SYS_mknod, SYS_utime, SYS_utimes, SYS_futimesat,
    SYS_modify_ldt, SYS_renameat,
#endif
    // The network and other processes.
    SYS_socket, SYS_socketpair, SYS_connect, SYS_bind, SYS_listen, SYS_accept, SYS_accept4,
    SYS_kill, SYS_tkill, SYS_tgkill, SYS_rt_sigqueueinfo, SYS_rt_tgsigqueueinfo,
    SYS_pidfd_send_signal, SYS_pidfd_open, SYS_pidfd_getfd, SYS_ptrace, SYS_process_vm_readv,
    SYS_process_vm_writev, SYS_kcmp, SYS_shmget, SYS_shmat, SYS_shmctl, SYS_msgget, SYS_semget,
    SYS_mq_open, SYS_setpriority,
    // Files. A truncated one is one that is written.
    SYS_unlinkat, SYS_renameat2, SYS_linkat, SYS_symlinkat, SYS_mkdirat, SYS_fchmod, SYS_fchmodat,
    SYS_fchown, SYS_fchownat, SYS_mknodat, SYS_utimensat, SYS_truncate, SYS_ftruncate,
    SYS_fallocate, SYS_setxattr, SYS_lsetxattr, SYS_fsetxattr, SYS_removexattr, SYS_lremovexattr,
    SYS_fremovexattr, SYS_mq_unlink,
    // The system, and ways around this filter.
    SYS_mount, SYS_umount2, SYS_pivot_root, SYS_chroot, SYS_unshare, SYS_setns, SYS_bpf,
    SYS_perf_event_open, SYS_userfaultfd, SYS_io_uring_setup, SYS_io_uring_enter,
    SYS_io_uring_register, SYS_keyctl, SYS_add_key, SYS_request_key, SYS_open_by_handle_at};

constexpr std::uint32_t kCallAt = offsetof(seccomp_data, nr);
constexpr std::uint32_t kMachineAt = offsetof(seccomp_data, arch);

constexpr std::uint32_t argumentAt(std::uint32_t index) {
    return static_cast<std::uint32_t>(offsetof(seccomp_data, args)) + index * 8;
}

constexpr std::uint32_t kAllowed = SECCOMP_RET_ALLOW;
constexpr std::uint32_t kRefused = SECCOMP_RET_ERRNO | EPERM;
// What the C library tries first, and does without.
constexpr std::uint32_t kUnknown = SECCOMP_RET_ERRNO | ENOSYS;

constexpr sock_filter load(std::uint32_t at) {
    return {.code = BPF_LD | BPF_W | BPF_ABS, .jt = 0, .jf = 0, .k = at};
}

constexpr sock_filter end(std::uint32_t action) {
    return {.code = BPF_RET | BPF_K, .jt = 0, .jf = 0, .k = action};
}

// The next instruction is for what is this number; the others go on behind so many.
constexpr sock_filter forNumber(std::uint32_t value, std::uint8_t count) {
    return {.code = BPF_JMP | BPF_JEQ | BPF_K, .jt = 0, .jf = count, .k = value};
}

// The next instruction is for what has one of these bits.
constexpr sock_filter forBits(std::uint32_t bits) {
    return {.code = BPF_JMP | BPF_JSET | BPF_K, .jt = 0, .jf = 1, .k = bits};
}

constexpr std::uint32_t number(long call) {
    return static_cast<std::uint32_t>(call);
}

// Ends the call one way or the other, by whether its argument has one of these bits. The number of
// the call is loaded.
void decideByBits(std::vector<sock_filter>& filter, long call, std::uint32_t argument,
                  std::uint32_t bits, std::uint32_t having, std::uint32_t otherwise) {
    filter.insert(filter.end(), {forNumber(number(call), 4), load(argumentAt(argument)),
                                 forBits(bits), end(having), end(otherwise)});
}

std::vector<sock_filter> makeFilter() {
    constexpr std::uint32_t kWriting = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC;
    // Another machine's calls have other numbers: the first jump takes them to the refusal.
    std::vector<sock_filter> filter{load(kMachineAt), forNumber(kMachine, 2), load(kCallAt),
                                    forBits(kOtherKind), end(kRefused)};
    for (const long call : kForbidden) {
        filter.insert(filter.end(), {forNumber(number(call), 1), end(kRefused)});
    }
    for (const long call : {SYS_clone3, SYS_openat2}) {
        filter.insert(filter.end(), {forNumber(number(call), 1), end(kUnknown)});
    }
    decideByBits(filter, SYS_openat, 2, kWriting, kRefused, kAllowed);
#if defined(__x86_64__)
    decideByBits(filter, SYS_open, 1, kWriting, kRefused, kAllowed);
#endif
    // A thread is no process of its own.
    decideByBits(filter, SYS_clone, 0, CLONE_THREAD, kAllowed, kRefused);
    filter.push_back(end(kAllowed));
    return filter;
}

// One for all; made by the first sandbox.
const std::vector<sock_filter>& systemCallFilter() {
    static const std::vector<sock_filter> kFilter = makeFilter();
    return kFilter;
}

// Where programs, libraries and fonts are.
constexpr std::array kReadable{"/usr",      "/bin",        "/sbin", "/lib", "/lib64",
                               "/etc",      "/opt",        "/nix",  "/gnu", "/var/cache/fontconfig",
                               "/dev/null", "/dev/urandom"};

constexpr std::uint64_t kEveryAccess = LANDLOCK_ACCESS_FS_MAKE_SYM * 2 - 1;  // of the first version
constexpr std::uint64_t kReadingFiles = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_READ_FILE;

// What does not exist needs no rule.
void allowReading(int rules, const char* path) {
    const int place = open(path, O_PATH | O_CLOEXEC);
    if (place < 0) {
        return;
    }
    struct stat found{};
    const bool isFolder = fstat(place, &found) == 0 && S_ISDIR(found.st_mode);
    const landlock_path_beneath_attr rule{
        .allowed_access = kReadingFiles | (isFolder ? LANDLOCK_ACCESS_FS_READ_DIR : 0),
        .parent_fd = place};
    syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    close(place);
}

}  // namespace

Sandbox::Sandbox(const char* folder) {
    static_cast<void>(systemCallFilter());  // so that entering only looks at it
    landlock_ruleset_attr handled{};
    handled.handled_access_fs = kEveryAccess;
    rules_ = static_cast<int>(
        syscall(SYS_landlock_create_ruleset, &handled, sizeof handled.handled_access_fs, 0));
    if (rules_ < 0) {
        return;
    }
    for (const char* path : kReadable) {
        allowReading(rules_, path);
    }
    allowReading(rules_, folder);
}

Sandbox::~Sandbox() {
    if (rules_ >= 0) {
        close(rules_);
    }
}

bool Sandbox::enter() const {
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        return false;
    }
    if (rules_ >= 0 && syscall(SYS_landlock_restrict_self, rules_, 0) != 0) {
        return false;
    }
    if (kMachine == 0) {
        return true;
    }
    // The kernel's type takes what it only reads as something to change.
    const std::vector<sock_filter>& filter = systemCallFilter();
    const sock_fprog program{.len = static_cast<unsigned short>(filter.size()),
                             .filter = const_cast<sock_filter*>(filter.data())};
    return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0;
}

}  // namespace velmoranth::desktop::vector_images
