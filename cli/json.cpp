// SPDX-License-Identifier: Apache-2.0
#include "cli/json.h"

#include <limits>
#include <nlohmann/json.hpp>

#include "cli/ky_command.h"

namespace cli {
namespace {

using Json = nlohmann::json;

// Arrays inside arrays; the runtime takes no more than this either.
constexpr int kMaxDepth = 32;

Ky::KyValue fromJson(const Json& json, int depth) {
  switch (json.type()) {
    case Json::value_t::null:
      return {};
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_unsigned:
      if (json.get<std::uint64_t>() > std::numeric_limits<std::int64_t>::max())
        throw WrongUse("the number " + json.dump() + " does not fit 64 bits");
      [[fallthrough]];
    case Json::value_t::number_integer:
      return json.get<std::int64_t>();
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::string:
      return json.get<std::string>();
    case Json::value_t::array: {
      if (depth == kMaxDepth) throw WrongUse("there are too many arrays inside arrays");
      Ky::KyValue::Array elements;
      elements.reserve(json.size());
      for (const Json& element : json) elements.push_back(fromJson(element, depth + 1));
      return elements;
    }
    default:
      throw WrongUse("there are no objects, {..}, among the robot's values; use arrays");
  }
}

Json asJson(const Ky::KyValue& value) {
  switch (value.type()) {
    case Ky::KyType::Nothing:
      return nullptr;
    case Ky::KyType::Bool:
      return value.asBool();
    case Ky::KyType::Int:
      return value.asInt64();
    case Ky::KyType::Float:
      return value.asDouble();
    case Ky::KyType::String:
      return value.asString();
    case Ky::KyType::Binary:
      return value.toString();
    case Ky::KyType::Array:
      break;
  }
  Json elements = Json::array();
  for (const Ky::KyValue& element : value.asArray()) elements.push_back(asJson(element));
  return elements;
}

}  // namespace

std::string toJson(const Ky::KyValue& value) {
  return asJson(value).dump(-1, ' ', false, Json::error_handler_t::replace);
}

Ky::KyValue parseJson(const std::string& text) {
  const Json json = Json::parse(text, nullptr, false);
  if (json.is_discarded())
    throw WrongUse("'" + text + "' is not JSON; a string needs quotes of its own: '\"text\"'");
  try {
    return fromJson(json, 0);
  } catch (const WrongUse& error) {
    throw WrongUse("'" + text + "': " + error.what());
  }
}

}  // namespace cli
