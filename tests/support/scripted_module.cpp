// SPDX-License-Identifier: Apache-2.0
#include "support/scripted_module.h"

void CallList::add(std::string call) {
  const std::lock_guard guard(fMutex);
  fCalls.push_back(std::move(call));
}

std::vector<std::string> CallList::calls() const {
  const std::lock_guard guard(fMutex);
  return fCalls;
}

std::vector<std::string> CallList::take() {
  const std::lock_guard guard(fMutex);
  return std::exchange(fCalls, {});
}

ScriptedModule::ScriptedModule(boost::shared_ptr<Ky::KyBroker> broker, const std::string& name,
                               std::shared_ptr<CallList> calls,
                               const std::vector<std::string>& offers)
    : KyModule(std::move(broker), name), fCallList(std::move(calls)) {
  for (const std::string& what : offers) offer(what);
}

void ScriptedModule::answer(const std::string& method, Answer answer) {
  const std::lock_guard guard(fMutex);
  fAnswers[method] = std::move(answer);
}

void ScriptedModule::forget(const std::string& method) {
  const std::lock_guard guard(fMutex);
  fAnswers.erase(method);
}

Ky::KyValue ScriptedModule::invoke(const Ky::KyPeer&, const std::string& method,
                                   const Ky::KyValue::Array& arguments) {
  const bool help = method == "getMethodHelp" && arguments.size() == 1;
  const std::string wanted = help ? arguments[0].asString() : method;
  Answer answer;
  {
    const std::lock_guard guard(fMutex);
    const auto found = fAnswers.find(wanted);
    if (found != fAnswers.end()) answer = found->second;
  }
  if (!help) {
    std::string call = getName() + "." + method + "(";
    for (std::size_t i = 0; i < arguments.size(); ++i)
      call += (i > 0 ? ", " : "") + arguments[i].toString();
    fCallList->add(call + ")");
  }
  if (!answer) throw Ky::KyError(getName(), wanted, "there is no such method");
  return help ? Ky::KyValue::array({wanted}) : answer(arguments);
}
