// SPDX-License-Identifier: Apache-2.0
// A module that points at things in the picture of the robot's viewer, for other programs.
//
//   pointer_module 127.0.0.1:9559
//   ky call Pointer.pointAt 0.5 0.7 '"look here"'
//   ky call Pointer.rest
#include <csignal>
#include <iostream>

#include "ky/memory_proxy.h"
#include "ky/module.h"

namespace {

using Ky::KyValue;

class Pointer : public Ky::KyModule {
 public:
  explicit Pointer(boost::shared_ptr<Ky::KyBroker> broker) : KyModule(broker, "Pointer") {
    setModuleDescription("Points at things in the viewer's picture.");
    functionName("pointAt", getName(), "Draws a square with a text.");
    addParam("x", "0 left to 1 right");
    addParam("y", "0 top to 1 bottom");
    addParam("text", "beside the square");
    bindMethod(&Pointer::pointAt);
    functionName("rest", getName(), "Removes the square.");
    bindMethod(&Pointer::rest);
  }

 private:
  void pointAt(float x, float y, const std::string& text) {
    const KyValue figure = KyValue::array({x, y, 30.0, 2, 2, 0, 255, 170, text});
    write(KyValue::array({figure}));
    // Again each time: a viewer that came later, or that forgot, has to be told.
    getParentBroker()->call("Periscope", "subscribeLog", {kKey});
  }

  void rest() { write(KyValue::array({})); }

  void write(const KyValue& figures) {
    Ky::KyMemoryProxy(getParentBroker()).insertData(kKey, figures);
  }

  static constexpr const char* kKey = "Pointer";
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
    options.name = "PointerBroker";
    options.parent = Ky::KyAddress::parse(argc > 1 ? argv[1] : "127.0.0.1");
    const auto broker = Ky::KyBroker::create(options);
    const auto pointer = Ky::KyModule::createModule<Pointer>(broker);
    std::cout << "serving " << pointer->getName() << " on " << broker->address().toString()
              << std::endl;
    int signal = 0;
    sigwait(&stopSignals, &signal);
    broker->shutdown();
  } catch (const Ky::KyError& error) {
    std::cerr << "pointer_module: " << error.what() << '\n';
    return 1;
  }
}
