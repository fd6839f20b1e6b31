// SPDX-License-Identifier: Apache-2.0
#include "ky/module.h"

#include <algorithm>

namespace Ky {

KyModule::KyModule(boost::shared_ptr<KyBroker> broker, std::string name)
    : fBroker(std::move(broker)), fName(std::move(name)) {
  publishOwnMethods();
}

KyModule::~KyModule() = default;

void KyModule::initModule() {
  fBroker->registerModule(shared_from_this());
}

void KyModule::peerLeft(const KyPeer&) {
}

void KyModule::setModuleDescription(const std::string& description) {
  fDescription = description;
}

void KyModule::offer(const std::string& what) {
  fOffered.push_back(what);
}

void KyModule::functionName(const std::string& method, const std::string& module,
                            const std::string& description) {
  if (module != fName) throw KyError(fName, method, "described under the module name " + module);
  fDescribed = KyMethod{method, description, {}, {}, {}};
}

void KyModule::addParam(const std::string& name, const std::string& description) {
  fDescribed.parameters.push_back({name, description, {}});
}

void KyModule::setReturn(const std::string& name, const std::string& description) {
  fDescribed.result = {name, description, {}};
}

void KyModule::publish(std::vector<const char*> parameterTypes, const char* resultType,
                       decltype(KyMethod::call) call) {
  if (fDescribed.name.empty()) throw KyError(fName, "", "a method was bound without a description");
  if (fDescribed.parameters.size() != parameterTypes.size())
    throw KyError(fName, fDescribed.name,
                  "described with " + std::to_string(fDescribed.parameters.size()) +
                      " parameters, but it takes " + std::to_string(parameterTypes.size()));
  for (std::size_t i = 0; i < parameterTypes.size(); ++i)
    fDescribed.parameters[i].type = parameterTypes[i];
  fDescribed.result.type = resultType;
  fDescribed.call = std::move(call);
  fMethods.push_back(std::exchange(fDescribed, {}));
}

KyValue KyModule::methodHelp(const std::string& name) const {
  const auto found = std::find_if(fMethods.begin(), fMethods.end(),
                                  [&](const KyMethod& method) { return method.name == name; });
  if (found == fMethods.end()) throw KyError(fName, name, "there is no such method");
  const auto describe = [](const KyParameter& parameter) {
    return KyValue::array({parameter.name, parameter.type, parameter.description});
  };
  KyValue parameters = KyValue::array();
  for (const KyParameter& parameter : found->parameters) parameters.push(describe(parameter));
  return KyValue::array({found->name, found->description, parameters, describe(found->result)});
}

void KyModule::publishOwnMethods() {
  const auto add = [this](KyMethod method) { fMethods.push_back(std::move(method)); };
  add({"getMethodList",
       "The names of all methods.",
       {},
       {"names", "in the order of publication", "array"},
       [this](const KyPeer&, const KyValue::Array&) {
         KyValue names = KyValue::array();
         for (const KyMethod& method : fMethods) names.push(method.name);
         return names;
       }});
  add({"getMethodHelp",
       "Describes one method.",
       {{"name", "of the method", "string"}},
       {"help",
        "[name, description, [[parameter, type, description], ..], [result, type, description]]",
        "array"},
       [this](const KyPeer&, const KyValue::Array& arguments) {
         return methodHelp(arguments[0].asString());
       }});
  add({"getModuleHelp",
       "Describes the module.",
       {},
       {"help", "[description, version]", "array"},
       [this](const KyPeer&, const KyValue::Array&) {
         return KyValue::array({fDescription, KY_VERSION});
       }});
  add({"ping",
       "Answers true.",
       {},
       {"alive", "always true", "bool"},
       [](const KyPeer&, const KyValue::Array&) { return KyValue(true); }});
  add({"version",
       "The version of the runtime that the module was built with.",
       {},
       {"version", "three numbers", "string"},
       [](const KyPeer&, const KyValue::Array&) { return KyValue(KY_VERSION); }});
}

KyValue KyModule::invoke(const KyPeer& caller, const std::string& method,
                         const KyValue::Array& arguments) {
  // Methods of one name differ in their number of parameters.
  const KyMethod* sameName = nullptr;
  for (const KyMethod& candidate : fMethods) {
    if (candidate.name != method) continue;
    sameName = &candidate;
    if (candidate.parameters.size() != arguments.size()) continue;
    try {
      return candidate.call(caller, arguments);
    } catch (const KyError& error) {
      if (!error.module().empty()) throw;
      throw KyError(fName, method, error.what());
    }
  }
  if (sameName == nullptr)
    throw KyError(fName, method, "there is no such method; getMethodList() names all");
  throw KyError(fName, method,
                "called with " + std::to_string(arguments.size()) + " arguments, but it takes " +
                    std::to_string(sameName->parameters.size()));
}

}  // namespace Ky
