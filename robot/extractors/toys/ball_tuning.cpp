// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/ball_tuning.h"

#include <algorithm>

#include "ky/error.h"

namespace robot {
namespace {

using Ky::KyError;
using Ky::KyValue;

constexpr const char* kRange = "radiusRange";
constexpr int kLeastRadius = 8, kMostRadius = 359, kWidestRange = 360;

struct Number {
  const char* name;
  int BallTuning::*member;
  int least;
  int most;
};

constexpr Number kNumbers[] = {
    {"CY", &BallTuning::y, 0, 255},
    {"CU", &BallTuning::u, 0, 255},
    {"CV", &BallTuning::v, 0, 255},
    {"minRadius", &BallTuning::smallest, kLeastRadius, kMostRadius},
    {"sensitivity", &BallTuning::sensitivity, 1, 4},
    {"colorTolerance", &BallTuning::tolerance, 0, 255},
    {"maxShift", &BallTuning::maxShift, 0, 1000},
};

struct Switch {
  const char* name;
  bool BallTuning::*member;
};

constexpr Switch kSwitches[] = {
    {"useTracking", &BallTuning::tracks},
    {"multiBall", &BallTuning::several},
    {"Optimax", &BallTuning::optimized},
};

[[noreturn]] void refuse(const std::string& name, const std::string& wanted, const KyValue& value) {
  throw KyError("\"" + name + "\" takes " + wanted + ", not " + value.toString());
}

std::string between(int least, int most) {
  return std::to_string(least) + " to " + std::to_string(most);
}

bool isArrayOf(const KyValue& value, std::size_t size, Ky::KyType type) {
  return value.isArray() && value.size() == size &&
         std::all_of(value.asArray().begin(), value.asArray().end(),
                     [&](const KyValue& element) { return element.type() == type; });
}

// Whether it is, as wide as numbers travel.
bool isWithin(const KyValue& number, std::int64_t least, std::int64_t most) {
  return number.asInt64() >= least && number.asInt64() <= most;
}

void setNumber(BallTuning& tuning, const Number& number, const KyValue& value) {
  if (!isArrayOf(value, 1, Ky::KyType::Int) || !isWithin(value[0], number.least, number.most))
    refuse(number.name, "[a whole number from " + between(number.least, number.most) + "]", value);
  tuning.*number.member = value[0].asInt();
  tuning.largest = std::max(tuning.largest, tuning.smallest);
}

void setSwitch(BallTuning& tuning, const Switch& one, const KyValue& value) {
  if (!isArrayOf(value, 1, Ky::KyType::Bool)) refuse(one.name, "[true] or [false]", value);
  tuning.*one.member = value[0].asBool();
}

void setRange(BallTuning& tuning, const KyValue& value) {
  if (!isArrayOf(value, 2, Ky::KyType::Int) || !isWithin(value[0], kLeastRadius, kMostRadius) ||
      !isWithin(value[1], value[0].asInt64(), value[0].asInt64() + kWidestRange))
    refuse(kRange,
           "[smallest, largest radius], the smallest from " + between(kLeastRadius, kMostRadius) +
               " and the largest at most " + std::to_string(kWidestRange) + " more",
           value);
  tuning.smallest = value[0].asInt();
  tuning.largest = value[1].asInt();
}

[[noreturn]] void refuseName(const std::string& name) {
  std::string all;
  for (const std::string& one : SharedBallTuning::names()) all += (all.empty() ? "" : ", ") + one;
  throw KyError("there is no parameter \"" + name + "\"; there are " + all);
}

template <class Table>
auto* find(const Table& table, const std::string& name) {
  const auto found = std::find_if(std::begin(table), std::end(table),
                                  [&](const auto& one) { return one.name == name; });
  return found == std::end(table) ? nullptr : &*found;
}

}  // namespace

BallTuning SharedBallTuning::get() const {
  const zu::MutexLock guard(fMutex);
  return fTuning;
}

void SharedBallTuning::set(const std::string& name, const KyValue& value) {
  const zu::MutexLock guard(fMutex);
  if (const Number* number = find(kNumbers, name)) {
    setNumber(fTuning, *number, value);
  } else if (const Switch* one = find(kSwitches, name)) {
    setSwitch(fTuning, *one, value);
  } else if (name == kRange) {
    setRange(fTuning, value);
  } else {
    refuseName(name);
  }
}

KyValue SharedBallTuning::get(const std::string& name) const {
  const BallTuning tuning = get();
  if (const Number* number = find(kNumbers, name)) return KyValue::array({tuning.*number->member});
  if (const Switch* one = find(kSwitches, name)) return KyValue::array({tuning.*one->member});
  if (name == kRange) return KyValue::array({tuning.smallest, tuning.largest});
  refuseName(name);
}

std::vector<std::string> SharedBallTuning::names() {
  std::vector<std::string> names;
  for (const Number& number : kNumbers) names.emplace_back(number.name);
  for (const Switch& one : kSwitches) names.emplace_back(one.name);
  names.emplace_back(kRange);
  return names;
}

}  // namespace robot
