// SPDX-License-Identifier: Apache-2.0
// Makes modules of a robot hang or dawdle on command. Linked with kyrobot's main(): every call of a
// module comes by here first (ld --wrap), on the module's own call thread.
//
//   KyVideoDevice.hold(2000)         the module does nothing else for 2 s
//   KyVideoDevice.dawdle(300, 2000)  for 2 s each of its calls takes 0.3 s longer
#include <chrono>
#include <map>
#include <thread>

#include "ky/module.h"
#include "zu/mutex.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct Dawdling {
  milliseconds delay{0};
  Clock::time_point end;
};

zu::Mutex mutex;
std::map<std::string, Dawdling> dawdlers ZU_GUARDED_BY(mutex);

void dawdle(const std::string& module, milliseconds delay, milliseconds duration) {
  const zu::MutexLock guard(mutex);
  dawdlers[module] = {delay, Clock::now() + duration};
}

milliseconds delayOf(const std::string& module) {
  const zu::MutexLock guard(mutex);
  const auto found = dawdlers.find(module);
  const bool dawdles = found != dawdlers.end() && Clock::now() < found->second.end;
  return dawdles ? found->second.delay : milliseconds(0);
}

milliseconds duration(const Ky::KyValue& value) {
  return milliseconds(value.asInt());
}

}  // namespace

// What the linker calls in the place of KyModule::invoke(), and what it then calls the original.
// KY_MODULE_INVOKE is that function's name for the linker.
Ky::KyValue originalInvoke(Ky::KyModule* module, const Ky::KyPeer& caller,
                           const std::string& method,
                           const Ky::KyValue::Array& arguments) __asm__("__real_" KY_MODULE_INVOKE);
Ky::KyValue invokeOrWait(Ky::KyModule* module, const Ky::KyPeer& caller, const std::string& method,
                         const Ky::KyValue::Array& arguments) __asm__("__wrap_" KY_MODULE_INVOKE);

Ky::KyValue invokeOrWait(Ky::KyModule* module, const Ky::KyPeer& caller, const std::string& method,
                         const Ky::KyValue::Array& arguments) {
  if (method == "hold") {
    std::this_thread::sleep_for(duration(arguments.at(0)));
    return {};
  }
  if (method == "dawdle") {
    dawdle(module->getName(), duration(arguments.at(0)), duration(arguments.at(1)));
    return {};
  }
  std::this_thread::sleep_for(delayOf(module->getName()));
  return originalInvoke(module, caller, method, arguments);
}
