// SPDX-License-Identifier: Apache-2.0
#include "support/process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>

extern char** environ;

namespace {

// Pointers to texts, with the null at the end that exec() wants.
std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

std::vector<std::string> environmentWith(const Process::Environment& added) {
  std::vector<std::string> result;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    if (added.count(text.substr(0, text.find('='))) == 0) result.push_back(text);
  }
  for (const auto& [name, value] : added) result.push_back(name + "=" + value);
  return result;
}

std::array<int, 2> makePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0)
    throw std::runtime_error(std::string("no pipe: ") + std::strerror(errno));
  return ends;
}

// Only what is allowed between fork() and exec().
[[noreturn]] void becomeProgram(const char* program, char** arguments, char** environment,
                                int output, int errors, int failure, pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  setpgid(0, 0);
  if (getppid() != parent) _exit(127);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  dup2(output, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  execvpe(program, arguments, environment);
  const int error = errno;
  while (write(failure, &error, sizeof error) < 0 && errno == EINTR) {
  }
  _exit(127);
}

// Reads what is there; false at the end.
bool readSome(int fd, std::string& text) {
  std::array<char, 65536> buffer{};
  const ssize_t count = read(fd, buffer.data(), buffer.size());
  if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && errno == EINTR);
}

}  // namespace

Process::Process(const std::string& program, const std::vector<std::string>& arguments,
                 const Environment& environment) {
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  auto variables = environmentWith(environment);
  auto argv = pointers(words);
  auto envp = pointers(variables);
  const auto output = makePipe(), errors = makePipe(), failure = makePipe();

  const pid_t parent = getpid();
  fPid = fork();
  if (fPid == 0)
    becomeProgram(program.c_str(), argv.data(), envp.data(), output[1], errors[1], failure[1],
                  parent);
  for (const auto& pipe : {output, errors, failure}) close(pipe[1]);
  fOutput.fd = output[0];
  fErrors.fd = errors[0];

  int error = fPid < 0 ? errno : 0;
  if (fPid > 0 && read(failure[0], &error, sizeof error) > 0) waitpid(fPid, nullptr, 0);
  close(failure[0]);
  if (error != 0) {
    close(fOutput.fd);
    close(fErrors.fd);
    throw std::runtime_error(program + " can't be started: " + std::strerror(error));
  }
  fCollector = std::thread([this] { collect(); });
}

Process::~Process() {
  {
    const std::lock_guard guard(fMutex);
    if (!fExitCode) killpg(fPid, SIGKILL);
  }
  fCollector.join();
  close(fOutput.fd);
  close(fErrors.fd);
}

void Process::signal(int number) const {
  const std::lock_guard guard(fMutex);
  if (!fExitCode) kill(fPid, number);
}

void Process::collect() {
  while (!fOutput.ended || !fErrors.ended) {
    std::array<pollfd, 2> both = {{{fOutput.ended ? -1 : fOutput.fd, POLLIN, 0},
                                   {fErrors.ended ? -1 : fErrors.fd, POLLIN, 0}}};
    if (poll(both.data(), both.size(), -1) < 0) continue;
    const std::lock_guard guard(fMutex);
    if (both[0].revents != 0) fOutput.ended = !readSome(fOutput.fd, fOutput.text);
    if (both[1].revents != 0) fErrors.ended = !readSome(fErrors.fd, fErrors.text);
    fChanged.notify_all();
  }
  // Leaves it to be reaped under the lock, so that no signal goes to another process of its number.
  siginfo_t info{};
  while (waitid(P_PID, static_cast<id_t>(fPid), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
  }
  const std::lock_guard guard(fMutex);
  int status = 0;
  waitpid(fPid, &status, 0);
  fExitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  fChanged.notify_all();
}

std::optional<std::string> Process::waitForLineOf(const Stream& stream, const std::string& text,
                                                  std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  std::unique_lock lock(fMutex);
  std::size_t begin = 0;
  while (true) {
    for (std::size_t stop; (stop = stream.text.find('\n', begin)) != std::string::npos;) {
      std::string line = stream.text.substr(begin, stop - begin);
      if (line.find(text) != std::string::npos) return line;
      begin = stop + 1;
    }
    if (stream.ended) return std::nullopt;
    if (fChanged.wait_until(lock, end) == std::cv_status::timeout) return std::nullopt;
  }
}

std::optional<std::string> Process::waitForLine(const std::string& text,
                                                std::chrono::milliseconds limit) {
  return waitForLineOf(fOutput, text, limit);
}

std::optional<std::string> Process::waitForErrorLine(const std::string& text,
                                                     std::chrono::milliseconds limit) {
  return waitForLineOf(fErrors, text, limit);
}

std::string Process::output() const {
  const std::lock_guard guard(fMutex);
  return fOutput.text;
}

std::string Process::errors() const {
  const std::lock_guard guard(fMutex);
  return fErrors.text;
}

std::optional<int> Process::waitForExit(std::chrono::milliseconds limit) {
  std::unique_lock lock(fMutex);
  fChanged.wait_for(lock, limit, [&] { return fExitCode.has_value(); });
  return fExitCode;
}
