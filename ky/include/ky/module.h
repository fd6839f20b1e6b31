// SPDX-License-Identifier: Apache-2.0
// A named object whose methods can be called from anywhere in the robot's runtime.
//
//   class Greeter : public Ky::KyModule {
//    public:
//     explicit Greeter(boost::shared_ptr<Ky::KyBroker> broker) : KyModule(broker, "Greeter") {
//       setModuleDescription("Greets.");
//       functionName("greet", getName(), "Says hello.");
//       addParam("name", "whom to greet");
//       setReturn("greeting", "what was said");
//       bindMethod(&Greeter::greet);
//     }
//     std::string greet(const std::string& name) { return "Hello " + name; }
//   };
//   auto greeter = Ky::KyModule::createModule<Greeter>(broker);
#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "ky/broker.h"
#include "ky/convert.h"
#include "ky/peer.h"
#include "ky/value.h"

namespace Ky {

struct KyParameter {
  std::string name;
  std::string description;
  std::string type;  // "int", "float", "string", "bool", "binary", "array", "value"
};

struct KyMethod {
  std::string name;
  std::string description;
  std::vector<KyParameter> parameters;
  KyParameter result;  // type "nothing" when there is none
  std::function<KyValue(const KyPeer& caller, const KyValue::Array& arguments)> call;
};

// Base of all modules. Construct and describe on one thread; from registration on, the methods are
// called one at a time on the module's own call thread, so that slow calls of one module never
// hold up another.
//
// Every module answers, besides its own methods: getMethodList() [names], getMethodHelp(name)
// [name, description, [[parameter, type, description]..], [result, type, description]],
// getModuleHelp() [description, version], ping() true, version() string.
class KyModule : public boost::enable_shared_from_this<KyModule> {
 public:
  KyModule(boost::shared_ptr<KyBroker> broker, std::string name);
  virtual ~KyModule();
  KyModule(const KyModule&) = delete;
  KyModule& operator=(const KyModule&) = delete;

  // Builds a T(broker, arguments...), registers it and starts it with init(). When init() throws
  // KyError, exit() is called, the module is unregistered and the error thrown on.
  template <class T, class... Arguments>
  static boost::shared_ptr<T> createModule(boost::shared_ptr<KyBroker> broker,
                                           Arguments&&... arguments);

  const std::string& getName() const { return fName; }
  const boost::shared_ptr<KyBroker>& getParentBroker() const { return fBroker; }
  const std::string& getModuleDescription() const { return fDescription; }
  const std::vector<KyMethod>& methods() const { return fMethods; }
  const std::vector<std::string>& offered() const { return fOffered; }

  // Publishes the bound methods: registers the module with its broker.
  void initModule();
  // After registration. The default does nothing.
  virtual void init() {}
  // After init() failed. The default does nothing.
  virtual void exit() {}
  // The broker is about to release the module: no call is running or will come. The default does
  // nothing.
  virtual void stop() {}
  // A peer left or was lost; what it subscribed to can go. Called on the module's call thread, like
  // a method. The default does nothing.
  virtual void peerLeft(const KyPeer& peer);

  // Runs a published method. Throws KyError: unknown method, wrong number or type of arguments, or
  // what the method throws. Called by the runtime on the call thread. Overridden by modules that
  // answer methods of no fixed set.
  virtual KyValue invoke(const KyPeer& caller, const std::string& method,
                         const KyValue::Array& arguments);

 protected:
  void setModuleDescription(const std::string& description);
  // Says to every peer, by itself, that this module does `what`, a word of at most 64 letters,
  // which not every robot's module of this name does: callers ask for it where it is offered only;
  // see KyBroker::offers(). Before registration.
  void offer(const std::string& what);
  // Begins the description of a method; addParam() and setReturn() complete it, bindMethod()
  // publishes it.
  void functionName(const std::string& method, const std::string& module,
                    const std::string& description);
  void addParam(const std::string& name, const std::string& description);
  void setReturn(const std::string& name, const std::string& description);

  // Publishes the method described last. Throws KyError when the described parameters are not as
  // many as the method takes. A first parameter of type `const KyPeer&` receives the caller and is
  // not published.
  template <class T, class Result, class... Parameters>
  void bindMethod(Result (T::*method)(Parameters...));
  template <class T, class Result, class... Parameters>
  void bindMethod(Result (T::*method)(Parameters...) const);

 private:
  template <class T, class Result, class... Parameters, class Method>
  void bind(Method method);
  void publish(std::vector<const char*> parameterTypes, const char* resultType,
               decltype(KyMethod::call) call);
  void publishOwnMethods();
  KyValue methodHelp(const std::string& name) const;

  boost::shared_ptr<KyBroker> fBroker;
  std::string fName;
  std::string fDescription;
  std::vector<KyMethod> fMethods;
  std::vector<std::string> fOffered;
  KyMethod fDescribed;  // between functionName() and bindMethod()
};

// ---- implementation of the templates

template <class T, class... Arguments>
boost::shared_ptr<T> KyModule::createModule(boost::shared_ptr<KyBroker> broker,
                                            Arguments&&... arguments) {
  boost::shared_ptr<T> module(new T(broker, std::forward<Arguments>(arguments)...));
  module->initModule();
  try {
    module->init();
  } catch (const KyError&) {
    module->exit();
    broker->unregisterModule(module->getName());
    throw;
  }
  return module;
}

namespace detail {

template <class Result, class Call, class... Parameters, std::size_t... Index>
KyValue callWith(Call&& call, const KyValue::Array& arguments, std::tuple<Parameters...>*,
                 std::index_sequence<Index...>) {
  if constexpr (std::is_void_v<Result>) {
    call(KyConvert<std::decay_t<Parameters>>::from(arguments[Index])...);
    return {};
  } else {
    return call(KyConvert<std::decay_t<Parameters>>::from(arguments[Index])...);
  }
}

template <class Result>
const char* resultTypeName() {
  if constexpr (std::is_void_v<Result>) {
    return "nothing";
  } else {
    return KyConvert<std::decay_t<Result>>::typeName;
  }
}

// Splits an optional leading `const KyPeer&` from the published parameters.
template <class... Parameters>
struct Published {
  static constexpr bool wantsCaller = false;
  using Tuple = std::tuple<Parameters...>;
};
template <class... Parameters>
struct Published<const KyPeer&, Parameters...> {
  static constexpr bool wantsCaller = true;
  using Tuple = std::tuple<Parameters...>;
};

template <class... Parameters>
std::vector<const char*> typeNames(std::tuple<Parameters...>*) {
  return {KyConvert<std::decay_t<Parameters>>::typeName...};
}

}  // namespace detail

template <class T, class Result, class... Parameters, class Method>
void KyModule::bind(Method method) {
  using Split = detail::Published<Parameters...>;
  using Tuple = typename Split::Tuple;
  T* self = static_cast<T*>(this);
  auto call = [self, method](const KyPeer& caller, const KyValue::Array& arguments) {
    auto invoke = [&](auto&&... values) -> Result {
      if constexpr (Split::wantsCaller) {
        return (self->*method)(caller, std::forward<decltype(values)>(values)...);
      } else {
        (void)caller;
        return (self->*method)(std::forward<decltype(values)>(values)...);
      }
    };
    return detail::callWith<Result>(invoke, arguments, static_cast<Tuple*>(nullptr),
                                    std::make_index_sequence<std::tuple_size_v<Tuple>>());
  };
  publish(detail::typeNames(static_cast<Tuple*>(nullptr)), detail::resultTypeName<Result>(),
          std::move(call));
}

template <class T, class Result, class... Parameters>
void KyModule::bindMethod(Result (T::*method)(Parameters...)) {
  bind<T, Result, Parameters...>(method);
}

template <class T, class Result, class... Parameters>
void KyModule::bindMethod(Result (T::*method)(Parameters...) const) {
  bind<T, Result, Parameters...>(method);
}

}  // namespace Ky
