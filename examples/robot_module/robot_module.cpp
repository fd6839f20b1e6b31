// SPDX-License-Identifier: Apache-2.0
// A program that offers a module to a robot's runtime: connects, publishes one method and serves
// it until Ctrl-C.
//
//   robot_module 127.0.0.1:9559
//   ky call Greeter.greet '"you"'
#include <csignal>
#include <iostream>

#include "ky/module.h"

namespace {

class Greeter : public Ky::KyModule {
 public:
  explicit Greeter(boost::shared_ptr<Ky::KyBroker> broker) : KyModule(broker, "Greeter") {
    setModuleDescription("Greets.");
    functionName("greet", getName(), "Says hello.");
    addParam("name", "whom to greet");
    setReturn("greeting", "what was said");
    bindMethod(&Greeter::greet);
  }

 private:
  std::string greet(const std::string& name) { return "Hello " + name + "!"; }
};

}  // namespace

int main(int argc, char** argv) {
  // Blocked before there are threads, so that the signals wait for sigwait() below.
  sigset_t stopSignals;
  sigemptyset(&stopSignals);
  sigaddset(&stopSignals, SIGINT);
  sigaddset(&stopSignals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);
  try {
    Ky::KyBrokerOptions options;
    options.name = "GreeterBroker";
    options.parent = Ky::KyAddress::parse(argc > 1 ? argv[1] : "127.0.0.1");
    const auto broker = Ky::KyBroker::create(options);
    const auto greeter = Ky::KyModule::createModule<Greeter>(broker);
    std::cout << "serving " << greeter->getName() << " on " << broker->address().toString()
              << std::endl;
    int signal = 0;
    sigwait(&stopSignals, &signal);
    broker->shutdown();
  } catch (const Ky::KyError& error) {
    std::cerr << "robot_module: " << error.what() << '\n';
    return 1;
  }
}
