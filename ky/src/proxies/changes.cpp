// SPDX-License-Identifier: Apache-2.0
#include "ky/changes.h"

namespace Ky {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kModule = "KyMemory";
constexpr const char* kMethod = "openChanges";
// Items that wait for a reader who takes his time.
constexpr std::size_t kDepth = 16;

}  // namespace

bool KyChanges::areOffered(const KyBroker& broker) {
  return broker.offers(kModule, kMethod);
}

KyChanges::KyChanges(boost::shared_ptr<KyBroker> broker, std::vector<std::string> keys)
    : fBroker(std::move(broker)), fKeys(std::move(keys)) {
  if (!areOffered(*fBroker))
    throw KyError(kModule, kMethod, "this robot does not offer it; ask for the values instead");
  open();
}

void KyChanges::open() {
  auto stream = fBroker->receiveStream(kDepth);
  KyValue::Array keys(fKeys.begin(), fKeys.end());
  fBroker->call(kModule, kMethod, {stream->id(), std::move(keys)});
  fStream = std::move(stream);
  fNumber = 0;
}

std::optional<KyChanges::News> KyChanges::next(std::chrono::milliseconds patience) {
  const auto end = Clock::now() + patience;
  auto item = fStream->next(patience);
  if (item && item->number != fNumber + 1) {
    // Each item has only what its predecessors had not: where one is missing, begin anew.
    open();
    item = fStream->next(std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()));
  }
  if (item) return newsOf(*item);
  if (const std::string why = fStream->ended(); !why.empty())
    throw KyError(kModule, kMethod, "no more changes come: " + why);
  return std::nullopt;
}

KyChanges::News KyChanges::newsOf(const KyStreamReceiver::Item& item) {
  fNumber = item.number;
  News news;
  std::set<std::string> missing;
  if (item.number == 1) missing.swap(fKnown);
  for (const KyValue& change : item.value.asArray()) {
    const std::string& key = change[0].asString();
    const KyValue& value = change[1];
    missing.erase(key);
    if (value.isNothing())
      fKnown.erase(key);
    else
      fKnown.insert(key);
    news.emplace_back(key, value);
  }
  for (const std::string& key : missing) news.emplace_back(key, KyValue());
  return news;
}

}  // namespace Ky
