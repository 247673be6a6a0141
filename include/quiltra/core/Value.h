#ifndef QUILTRA_CORE_VALUE_H_
#define QUILTRA_CORE_VALUE_H_

#include <istream>
#include <ostream>
#include <string>

#include <quiltra/core/Export.h>
#include <quiltra/io/Serializable.h>

namespace Quiltra {

/// One raw value: an owned, zero-filled byte buffer with a size and a capacity.
/// Resizing within the capacity keeps the buffer and its old bytes; copies get a buffer of
/// exactly the source's size; assignment never shrinks a larger buffer. Null means size 0.
/// A buffer of up to kInlineCapacity bytes lives inside the object, so the numbers and short
/// texts most elements hold cost no allocation; a move then copies those bytes, and data()
/// of a value changes when the value is moved.
/// Every allocating operation may throw Exception("Value::allocate", "out of memory"),
/// after which the value is empty. Threads: a plain value, not shared by the library.
class QUILTRA_EXPORT Value : public Quiltra_Serialization::Serializable,
                             public Quiltra_Serialization::Deserializable {
 public:
  Value() = default;
  /// n zero bytes.
  explicit Value(const unsigned int& n);
  /// n bytes copied from bytes (zeros when bytes is null).
  Value(const unsigned int& n, const unsigned char* bytes);
  /// Deep copy with a buffer of exactly other.size() bytes.
  Value(const Value& other);
  /// Takes other's buffer; other becomes null.
  Value(Value&& other) noexcept;
  Value& operator=(const Value& other);
  Value& operator=(Value&& other) noexcept;
  ~Value() override;

  /// The largest buffer held inside the object instead of on the heap.
  static constexpr unsigned int kInlineCapacity = 16;

  unsigned int size() const noexcept { return _size; }
  unsigned int capacity() const noexcept { return _capacity; }
  /// Null when nothing is allocated.
  const unsigned char* data() const noexcept { return isInline() ? _inline : _heap; }
  unsigned char* data() noexcept { return isInline() ? _inline : _heap; }
  bool isNull() const noexcept { return _size == 0; }

  /// Grows beyond the capacity into a fresh zeroed buffer (old bytes lost); 0 releases;
  /// otherwise keeps the buffer and its bytes.
  void setSize(const unsigned int& n);
  /// setSize(n), then copies n bytes unless bytes is null.
  void setData(const unsigned int& n, const unsigned char* bytes);
  /// The characters and one terminating zero byte, counted in the size; cut at the text's
  /// first zero character.
  void setData(const std::string& text);
  /// Releases the buffer: size and capacity 0.
  void purge() noexcept;

  /// Same size and same bytes; capacity is ignored.
  bool operator==(const Value& other) const noexcept;
  bool operator!=(const Value& other) const noexcept { return !(*this == other); }

  void serializeX(Quiltra_Serialization::Sink& sink) const override;
  /// Size and capacity come out equal; the stored size is not trusted, so a forged one ends
  /// in the source's end-of-input failure, leaving the value null.
  void deserializeX(Quiltra_Serialization::Source& source) override;
  void toStream(std::ostream& out) const;
  /// Holds the bytes the stream delivers, at most the stored size; a short stream gives a
  /// shorter value, never an error.
  void fromStream(std::istream& in);

 private:
  void allocate(const unsigned int& n);
  /// As allocate, but leaves the bytes unset, for a caller that writes every one of them.
  void allocateForOverwrite(unsigned int n);
  /// A capacity of 1 to kInlineCapacity; one comparison, as 0 wraps to the largest number.
  /// Otherwise the buffer is _heap, which is null while nothing is allocated.
  bool isInline() const noexcept { return _capacity - 1u < kInlineCapacity; }
  /// Takes other's buffer (moving inline bytes), leaving other null. Requires a null value.
  void takeBuffer(Value& other) noexcept;

  // The capacity decides where the buffer is: none for 0 (then _heap is null), _inline up
  // to kInlineCapacity, else _heap (an array of _capacity bytes).
  union {
    unsigned char* _heap = nullptr;
    unsigned char _inline[kInlineCapacity];
  };
  unsigned int _size = 0;
  unsigned int _capacity = 0;
};

}  // namespace Quiltra

#endif  // QUILTRA_CORE_VALUE_H_
