#ifndef QUILTRA_IO_NESTINGGUARD_H_
#define QUILTRA_IO_NESTINGGUARD_H_

#include <cstddef>
#include <exception>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/io/Sink.h>

namespace Quiltra {

class Tag;
class Tree;

/// How many levels of sequence items may lie below the object being read or written: the
/// items of a Tag read or written on its own, or of the elements of a top-level Tree, are
/// level 1. Readers refuse deeper input, so a forged stream cannot exhaust the stack, and
/// writers refuse to write what the readers would refuse.
inline constexpr std::size_t kMaxNestingDepth = 256;

/// Counts, per thread, the item levels being read or written (one counter per Direction): a
/// Tag holds one while it reads or writes its items, so their Trees lie one level below it.
template <class Direction>
class ItemLevelOf {
 public:
  ItemLevelOf() noexcept { ++current(); }
  ~ItemLevelOf() { --current(); }
  ItemLevelOf(const ItemLevelOf&) = delete;
  ItemLevelOf& operator=(const ItemLevelOf&) = delete;

  /// True for a Tree read or written now, lying more than kMaxNestingDepth item levels down.
  static bool tooDeep() noexcept { return current() > kMaxNestingDepth; }

 private:
  static std::size_t& current() noexcept {
    thread_local std::size_t level = 0;
    return level;
  }
};

using ItemLevel = ItemLevelOf<struct Reading>;
using WrittenItemLevel = ItemLevelOf<struct Writing>;

/// The check the writers run before they write anything.
class NestingCheck {
 public:
  /// What a form writes of a Tree: the flat AllLayers view, or the own layer as stored.
  enum class Form { Binary, Text };

  /// Open while an object is written. The outermost scope on a thread first measures the
  /// whole object and throws Exception(writer, "nesting too deep") when its items nest
  /// deeper than the readers accept; the scopes of nested writers (item Trees, their Tags)
  /// do not measure again.
  ///
  /// In the binary form, a sink that collects its bytes in memory is not measured first: the
  /// binary writers count item levels as they write (WrittenItemLevel) and refuse the first
  /// Tree too deep, and the outermost scope takes back whatever the failed write appended,
  /// so the sink ends as it began, as if nothing had been written. That spares a second
  /// walk over every element.
  class Scope {
   public:
    template <class Object>
    Scope(const Object& object, Form form, const char* writer) {
      if (++depth() == 1 && tooDeep(object, form)) {
        --depth();
        throw Exception(writer, "nesting too deep");
      }
    }
    template <class Object>
    Scope(const Object& object, const char* writer, Quiltra_Serialization::Sink& sink) {
      if (++depth() != 1) return;
      _memory = memoryOf(sink);
      if (_memory != nullptr) {
        _mark = _memory->size();
        _uncaught = std::uncaught_exceptions();
      } else if (tooDeep(object, Form::Binary)) {
        --depth();
        throw Exception(writer, "nesting too deep");
      }
    }
    ~Scope() {
      --depth();
      if (_memory != nullptr && std::uncaught_exceptions() > _uncaught) _memory->resize(_mark);
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    static std::size_t& depth() noexcept {
      thread_local std::size_t open = 0;
      return open;
    }

    std::vector<unsigned char>* _memory = nullptr;  // set in the outermost scope only
    std::size_t _mark = 0;
    int _uncaught = 0;
  };

  /// Whether writing tag or tree in form would write items more than kMaxNestingDepth
  /// levels below it. Stops at the first such item: the walk never goes deeper than the
  /// limit, and costs at most what the writer itself would visit.
  static bool tooDeep(const Tag& tag, Form form);
  static bool tooDeep(const Tree& tree, Form form);

 private:
  static std::vector<unsigned char>* memoryOf(Quiltra_Serialization::Sink& sink) noexcept {
    return sink._memory;
  }
  static bool itemsTooDeep(const Tag& tag, Form form, std::size_t levelsLeft);
  static bool elementsTooDeep(const Tree& tree, Form form, std::size_t levelsLeft);
};

}  // namespace Quiltra

#endif  // QUILTRA_IO_NESTINGGUARD_H_
