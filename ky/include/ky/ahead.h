// SPDX-License-Identifier: Apache-2.0
// Asks a robot for several answers at once instead of for one after the other, where it offers
// that: over a slow link thirty questions take the time of one.
//
//   const Ky::KyAhead ahead(broker, {Ky::KyRead::presenceOf("KyVideoDevice"),
//                                    {"KyVideoDevice", "getParam", {0, 1}}});
//   device = std::make_unique<Ky::KyVideoDeviceProxy>(broker);  // waits for its answer
//   device->getParam(0, 1);                                     // was answered meanwhile
#pragma once

#include <boost/shared_ptr.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ky/broker.h"
#include "ky/error.h"
#include "ky/value.h"

namespace Ky {

class CallsAhead;

// A call that changes nothing.
struct KyRead {
  std::string module;
  std::string method;
  KyValue::Array arguments = {};

  // What KyBroker::isModulePresent() and getProxy() ask.
  static KyRead presenceOf(const std::string& module);
  bool operator==(const KyRead& other) const = default;
};
using KyReads = std::vector<KyRead>;

// A method that answers nothing.
struct KyWrite {
  std::string module;
  std::string method;
  // Which read a call with these arguments changes the answer of; may be empty.
  std::function<KyRead(const KyValue::Array& arguments)> changes = {};

  // What a module's registration is: KyModule::createModule() then returns before it is known
  // whether the robot takes the name.
  static KyWrite registration();
};
using KyWrites = std::vector<KyWrite>;

// While it lives, its thread calls over its broker as ever, but
//
// - all of `reads` are sent at the beginning, together. A call that equals one of them gets its
//   answer, value or error, however often it is made: what was so when the scope began.
// - a call of one of `writes` is sent, and returns nothing at once instead of waiting. Whether it
//   failed is known at the end. The read that it changes is asked again right behind it.
//
// Everything arrives in the order in which it was sent. To a robot that does not offer "pipelining"
// for the module KyBroker nothing is sent ahead: it gets the calls that are made, one by one.
//
// A robot or module that does not answer costs no more than it does without: each call still ends
// at its deadline, which is the broker's (KyPatience::call) and begins when it is sent.
//
// Thread-bound: lives and dies on one thread, the one that calls. Scopes may nest; the inner one
// comes first.
class KyAhead {
 public:
  KyAhead(const boost::shared_ptr<KyBroker>& broker, const KyReads& reads, KyWrites writes = {});
  // As finish(), but the errors are logged.
  ~KyAhead();
  KyAhead(const KyAhead&) = delete;
  KyAhead& operator=(const KyAhead&) = delete;

  // Waits until all that was written is there, and returns what failed, in its order.
  std::vector<KyError> finish();

 private:
  boost::shared_ptr<KyBroker> fBroker;
  std::unique_ptr<CallsAhead> fCalls;  // null where nothing is sent ahead
};

}  // namespace Ky
