#pragma once

#ifdef __linux__

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace support {

/// Runs `action` in a process of its own, in which each large read that isn't of exactly `whole` bytes fails
/// as on a damaged disk: a reader of blocks gets its first block and no second one. The result is that of
/// `action`; -1 when no such process can be made.
inline int WithBrokenReads(std::uint32_t whole, const std::function<int()>& action) {
  constexpr std::uint32_t kLarge = 4096;
  constexpr int kNoFilter = 255;
  const pid_t child = fork();
  if (child < 0) return -1;
  if (child == 0) {
    std::array filter{
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_read, 0, 4),
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, whole, 2, 0),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JGE | BPF_K, kLarge, 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EIO),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{filter.size(), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
      _exit(kNoFilter);
    }
    _exit(action());
  }
  int status = 0;
  if (waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) == kNoFilter)
    return -1;
  return WEXITSTATUS(status);
}

}  // namespace support

#endif
