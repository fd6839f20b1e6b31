// SPDX-License-Identifier: Apache-2.0
#include "cli/memory_watch.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <ostream>
#include <thread>

#include "cli/json.h"

namespace cli {
namespace {

using Ky::KyValue;

constexpr double kEvery = 0.1;                // s
constexpr std::chrono::seconds kPatience{1};  // of one wait of many

class Printer {
 public:
  Printer(const WatchOptions& options, std::ostream& out) : fOptions(options), fOut(out) {}

  bool isDone() const { return !fOut || (fOptions.count != 0 && fPrinted >= fOptions.count); }
  void print(const std::string& key, const KyValue& value) {
    if (isDone()) return;
    if (fOptions.keys.size() == 1)
      fOut << toJson(value) << std::endl;
    else if (fOptions.json)
      fOut << toJson(KyValue::array({key, value})) << std::endl;
    else
      fOut << key << " " << toJson(value) << std::endl;
    ++fPrinted;
  }

 private:
  const WatchOptions& fOptions;
  std::ostream& fOut;
  int fPrinted = 0;
};

void listen(Ky::KyChanges& changes, Printer& printer) {
  while (!printer.isDone())
    if (const auto news = changes.next(kPatience))
      for (const auto& [key, value] : *news) printer.print(key, value);
}

// Nothing while nobody has written the key.
std::optional<KyValue> find(Ky::KyMemoryProxy& memory, const std::string& key) {
  try {
    return memory.getData(key);
  } catch (const Ky::KyError&) {
    const auto keys = memory.getDataList(key);
    if (std::binary_search(keys.begin(), keys.end(), key)) throw;
    return std::nullopt;
  }
}

void look(Ky::KyMemoryProxy& memory, const WatchOptions& options, Printer& printer) {
  const auto pause = std::chrono::milliseconds(
      std::max(1, static_cast<int>(options.every.value_or(kEvery) * 1000)));
  std::map<std::string, std::optional<KyValue>> last;
  while (!printer.isDone()) {
    bool isChanged = false;
    for (const std::string& key : options.keys) {
      auto value = find(memory, key);
      if (value == last[key]) continue;
      printer.print(key, value.value_or(KyValue()));
      last[key] = std::move(value);
      isChanged = true;
    }
    if (!isChanged) std::this_thread::sleep_for(pause);
  }
}

}  // namespace

void watchMemory(Ky::KyMemoryProxy& memory, const WatchOptions& options, std::ostream& out) {
  Printer printer(options, out);
  if (options.every || !memory.offersChanges()) return look(memory, options, printer);
  listen(*memory.changes(options.keys), printer);
}

}  // namespace cli
