// SPDX-License-Identifier: Apache-2.0
// A robot module for tests of what reaches the robot: it answers as it is told and keeps every
// call, in order, in a list that several modules may share.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <vector>

#include "ky/module.h"

// Thread-safe.
class CallList {
 public:
  void add(std::string call);
  // "Module.method(arg, arg)" with the arguments as JSON.
  std::vector<std::string> calls() const;
  std::vector<std::string> take();

 private:
  mutable std::mutex fMutex;
  std::vector<std::string> fCalls;
};

class ScriptedModule : public Ky::KyModule {
 public:
  using Answer = std::function<Ky::KyValue(const Ky::KyValue::Array& arguments)>;

  ScriptedModule(boost::shared_ptr<Ky::KyBroker> broker, const std::string& name,
                 std::shared_ptr<CallList> calls, const std::vector<std::string>& offers = {});

  // What a method answers from now on; methods without an answer are unknown. An answer may throw
  // KyError. Thread-safe.
  void answer(const std::string& method, Answer answer);
  template <class Value>
  requires std::is_constructible_v<Ky::KyValue, Value>
  void answer(const std::string& method, Value value) {
    answer(method,
           Answer([value = Ky::KyValue(value)](const Ky::KyValue::Array&) { return value; }));
  }
  void forget(const std::string& method);

  // "getMethodHelp" answers for the scripted methods only and is not kept in the list.
  Ky::KyValue invoke(const Ky::KyPeer& caller, const std::string& method,
                     const Ky::KyValue::Array& arguments) override;

 private:
  std::shared_ptr<CallList> fCallList;
  std::mutex fMutex;
  std::map<std::string, Answer> fAnswers;  // guarded by fMutex
};
