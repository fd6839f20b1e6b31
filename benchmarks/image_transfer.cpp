// SPDX-License-Identifier: Apache-2.0
// How long does one 1280 x 960 colour picture take through the runtime, against the same bytes
// through a plain blocking socket? The robot is another process; both go over 127.0.0.1.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <thread>
#include <vector>

#include "ky/module.h"
#include "ky/video_device_proxy.h"
#include "targets.h"
#include "zu/log.h"

namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 960;
constexpr std::size_t kBytes = kWidth * kHeight * 2;

// ---- the robot's process

class Camera : public Ky::KyModule {
 public:
  explicit Camera(boost::shared_ptr<Ky::KyBroker> broker) : KyModule(broker, "KyVideoDevice") {
    functionName("getImageRemote", getName(), "The newest image.");
    addParam("name", "of the subscriber");
    setReturn("image", "the image record");
    bindMethod(&Camera::getImageRemote);
  }
  Ky::KyValue getImageRemote(const std::string&) {
    return Ky::KyValue::array({kWidth, kHeight, 2, 9, 1, 2, fPixels, 0, 0.4F, 0.3F, -0.4F, -0.3F});
  }

 private:
  Ky::KyBinary fPixels{std::vector<std::uint8_t>(kBytes, 100)};
};

bool sendAll(int socket, const std::uint8_t* data, std::size_t size) {
  while (size > 0) {
    const ssize_t sent = ::send(socket, data, size, MSG_NOSIGNAL);
    if (sent <= 0) return false;
    data += sent;
    size -= static_cast<std::size_t>(sent);
  }
  return true;
}

// Answers every byte with a picture.
void serveSocket(int listener) {
  const int socket = ::accept(listener, nullptr, nullptr);
  const std::vector<std::uint8_t> pixels(kBytes, 100);
  std::uint8_t request = 0;
  while (::recv(socket, &request, 1, 0) == 1 && sendAll(socket, pixels.data(), pixels.size())) {
  }
  ::close(socket);
}

struct Ports {
  int broker = 0;
  int socket = 0;
};

int listenOnLoopback(int& port) {
  const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (::bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      ::listen(listener, 1) != 0)
    throw std::runtime_error("can't listen on 127.0.0.1");
  ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  port = ntohs(address.sin_port);
  return listener;
}

void serve(int answer) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  zu::log::setConsoleLevel(zu::log::Level::error);
  Ports ports;
  const int listener = listenOnLoopback(ports.socket);
  Ky::KyBrokerOptions options;
  options.name = "robot";
  options.listen = Ky::KyAddress{"127.0.0.1", 0};
  const auto broker = Ky::KyBroker::create(options);
  Ky::KyModule::createModule<Camera>(broker);
  ports.broker = broker->address().port;
  if (::write(answer, &ports, sizeof ports) != sizeof ports) return;
  serveSocket(listener);
  broker->shutdown();
}

// ---- the desktop's process

class RawConnection {
 public:
  explicit RawConnection(int port) : fSocket(::socket(AF_INET, SOCK_STREAM, 0)), fPixels(kBytes) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    if (::connect(fSocket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
      throw std::runtime_error("can't connect to 127.0.0.1");
    const int on = 1;
    ::setsockopt(fSocket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  }
  ~RawConnection() { ::close(fSocket); }
  RawConnection(const RawConnection&) = delete;
  RawConnection& operator=(const RawConnection&) = delete;

  bool fetch() {
    const std::uint8_t request = 1;
    if (!sendAll(fSocket, &request, 1)) return false;
    for (std::size_t have = 0; have < kBytes;) {
      const ssize_t got = ::recv(fSocket, fPixels.data() + have, kBytes - have, 0);
      if (got <= 0) return false;
      have += static_cast<std::size_t>(got);
    }
    return true;
  }

 private:
  int fSocket;
  std::vector<std::uint8_t> fPixels;
};

void measure(const Ports& ports, int argc, char** argv) {
  zu::log::setConsoleLevel(zu::log::Level::error);
  Ky::KyBrokerOptions options;
  options.name = "desktop";
  options.parent = Ky::KyAddress{"127.0.0.1", ports.broker};
  const auto broker = Ky::KyBroker::create(options);
  {
    Ky::KyVideoDeviceProxy camera(broker);
    RawConnection raw(ports.socket);
    benchmark::RegisterBenchmark("throughTheRuntime",
                                 [&](benchmark::State& state) {
                                   for (auto _ : state)
                                     benchmark::DoNotOptimize(camera.getImageRemote("bench"));
                                 })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark("rawSocket",
                                 [&](benchmark::State& state) {
                                   for (auto _ : state)
                                     if (!raw.fetch()) state.SkipWithError("the connection broke");
                                 })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    auto median = bench::medians(argc, argv);
    bench::atMost("getImageRemote of 1280 x 960 colour / the same bytes over a raw socket",
                  median["throughTheRuntime"] / median["rawSocket"], 1.5);
  }
  broker->shutdown();
}

}  // namespace

int main(int argc, char** argv) {
  int answer[2];
  if (::pipe(answer) != 0) return 1;
  const pid_t robot = ::fork();
  if (robot == 0) {
    try {
      serve(answer[1]);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "robot: %s\n", error.what());
      ::_exit(1);
    }
    ::_exit(0);
  }
  ::close(answer[1]);
  try {
    Ports ports;
    if (::read(answer[0], &ports, sizeof ports) != sizeof ports)
      throw std::runtime_error("the robot did not start");
    measure(ports, argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "image_transfer: %s\n", error.what());
    ::kill(robot, SIGKILL);
    return 1;
  }
  return ::waitpid(robot, nullptr, 0) == robot ? 0 : 1;
}
