#include "Foundation/Process/ShellCommand.h"

#include "Foundation/Text/String.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {
namespace {

/// The input as a file in memory: a command that reads none of it holds nobody up.
int inputFile(std::string_view input) {
  const int file = memfd_create("input", MFD_CLOEXEC);
  if (file < 0) return -1;
  while (!input.empty()) {
    const ssize_t size = ::write(file, input.data(), input.size());
    if (size <= 0) break;
    input.remove_prefix(static_cast<std::size_t>(size));
  }
  ::lseek(file, 0, SEEK_SET);
  return file;
}

/// Signals that this process blocks or ignores are the program's own business.
struct Attributes {
  explicit Attributes(short flags) {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_init(&value);
    posix_spawnattr_setsigmask(&value, &none);
    posix_spawnattr_setsigdefault(&value, &all);
    posix_spawnattr_setflags(
        &value, static_cast<short>(flags | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
  }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  ~Attributes() { posix_spawnattr_destroy(&value); }

  posix_spawnattr_t value{};
};

Result<pid_t> start(const std::vector<std::string>& words, int input, char** variables,
                    short flags) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  if (input >= 0) {
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
  } else {
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  const Attributes attributes(flags);
  pid_t process = 0;
  const int problem =
      posix_spawnp(&process, arguments[0], &files, &attributes.value, arguments.data(), variables);
  posix_spawn_file_actions_destroy(&files);
  if (problem != 0) return failure<PosixError>("cannot run " + inQuotes(words.front()), problem);
  return process;
}

/// Its exit status; absent where it took too long, and was ended.
std::optional<int> awaited(pid_t process, int longestSeconds) {
  const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
  const bool isOver = descriptor >= 0 && ::poll(&waiting, 1, longestSeconds * 1000) == 0;
  if (isOver) ::kill(-process, SIGKILL);
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  if (descriptor >= 0) ::close(descriptor);
  return isOver ? std::nullopt : std::optional(status);
}

}  // namespace

Result<void> runShellCommand(const std::string& command, std::string_view input,
                             int longestSeconds) {
  const int file = inputFile(input);
  const auto process = start({"/bin/sh", "-c", command}, file, environ, POSIX_SPAWN_SETPGROUP);
  if (file >= 0) ::close(file);
  if (!process) return std::unexpected(process.error());
  const auto status = awaited(*process, longestSeconds);
  const auto failed = [&](const std::string& how) {
    return failure<Error>("velloro.shell", 1, "the command " + inQuotes(command) + " " + how);
  };
  if (!status) {
    return failed("took longer than " + std::to_string(longestSeconds) + " seconds and was ended");
  }
  if (WIFSIGNALED(*status)) {
    return failed("was ended by signal " + std::to_string(WTERMSIG(*status)));
  }
  if (WEXITSTATUS(*status) != 0) {
    return failed("ended with exit code " + std::to_string(WEXITSTATUS(*status)));
  }
  return {};
}

Result<void> startProgram(const std::vector<std::string>& words,
                          const std::vector<std::pair<std::string, std::string>>& variables) {
  std::vector<std::string> texts;
  for (char** variable = environ; *variable != nullptr; ++variable) texts.emplace_back(*variable);
  for (const auto& [name, value] : variables) {
    std::erase_if(texts, [&](const auto& text) { return text.starts_with(name + "="); });
    texts.push_back(name + "=" + value);
  }
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  // By way of the shell, so that it is nobody's child here.
  std::vector<std::string> detached = {"/bin/sh", "-c", "\"$@\" & exit 0", "sh"};
  detached.insert(detached.end(), words.begin(), words.end());
  const auto process = start(detached, -1, pointers.data(), POSIX_SPAWN_SETPGROUP);
  if (!process) return std::unexpected(process.error());
  constexpr int longest = 5;
  static_cast<void>(awaited(*process, longest));
  return {};
}

}  // namespace platform
