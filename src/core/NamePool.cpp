#include "NamePool.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string_view>
#include <unordered_map>

namespace Quiltra {

namespace {

// Dictionary names are a few dozen characters and a dictionary holds a few thousand, so
// these bounds leave room for every real one while capping what forged input can add.
constexpr std::size_t kMaxPooledLength = 128;
constexpr std::size_t kMaxPooledNames = 16384;
// Names each thread finds without the lock: room for a data set's worth of distinct names.
constexpr std::size_t kRecentNames = 1024;

class NamePool {
 public:
  // The pooled text equal to name, added when there is room; null when there is none.
  // Pooled texts live as long as the process, so each thread remembers the ones it met last
  // in a small table indexed by hash, and asks the shared index, under its lock, only when
  // the table does not hold the name.
  const std::string* find(std::string_view name) {
    const std::size_t hash = std::hash<std::string_view>()(name);
    thread_local const std::string* recent[kRecentNames] = {};
    const std::string*& slot = recent[hash % kRecentNames];
    if (slot != nullptr && *slot == name) return slot;
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto found = _index.find(name);
    if (found != _index.end()) return slot = found->second;
    if (_texts.size() >= kMaxPooledNames) return nullptr;
    const std::string& text = _texts.emplace_back(name);
    _index.emplace(text, &text);
    return slot = &text;
  }

 private:
  std::mutex _mutex;
  std::deque<std::string> _texts;  // a deque never moves what it holds
  std::unordered_map<std::string_view, const std::string*> _index;  // views into _texts
};

// Never destroyed: descriptions in static objects may outlive every other static.
NamePool& pool() {
  static NamePool* const kPool = new NamePool();
  return *kPool;
}

}  // namespace

std::shared_ptr<const std::string> sharedName(std::string_view name) {
  if (name.empty()) return nullptr;
  if (name.size() <= kMaxPooledLength) {
    if (const std::string* pooled = pool().find(name)) {
      // Aliasing an empty owner: the pointer shares no ownership and counts no references.
      return std::shared_ptr<const std::string>(std::shared_ptr<const std::string>(), pooled);
    }
  }
  return std::make_shared<const std::string>(name);
}

const std::string& nameText(const std::shared_ptr<const std::string>& name) noexcept {
  static const std::string kEmpty;
  return name ? *name : kEmpty;
}

}  // namespace Quiltra
