// SPDX-License-Identifier: Apache-2.0
// The runtime's exception. It crosses the wire: a method that throws on the robot throws the same
// error at the caller.
#pragma once

#include <stdexcept>
#include <string>

namespace Ky {

class KyError : public std::runtime_error {
 public:
  explicit KyError(const std::string& text);
  // `module` and `method` name where it happened.
  KyError(const std::string& module, const std::string& method, const std::string& text);

  // what() is the text alone: what was wrong and, where that helps, what to do.
  const std::string& module() const { return fModule; }
  const std::string& method() const { return fMethod; }
  // "module.method: text", without the parts that are empty.
  std::string toString() const;

 private:
  std::string fModule;
  std::string fMethod;
};

}  // namespace Ky
