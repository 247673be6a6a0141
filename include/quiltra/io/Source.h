#ifndef QUILTRA_IO_SOURCE_H_
#define QUILTRA_IO_SOURCE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/core/TransferSyntax.h>
#include <quiltra/core/Vr.h>
#include <quiltra/io/TypeCode.h>

namespace Quiltra_Serialization {

/// A byte channel that typed fields are read from, the counterpart of Sink.
/// Sizes and counts read from it are never trusted: strings grow with the bytes actually
/// read, so a forged length ends in the channel's end-of-input failure.
/// A channel that reads from a vector in memory may hand it to the protected constructor:
/// the typed reads then take whole fields from it directly while it holds them, and call
/// readX, which decides how the input ends, only when it runs short.
/// Threads: one thread at a time.
class QUILTRA_EXPORT Source {
 public:
  Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual ~Source();

  /// Reads exactly size raw bytes; throws Exception when fewer are left.
  virtual void readX(void* data, unsigned int size) = 0;
  /// Starts reading again from the first byte.
  virtual void rewind() = 0;

  /// Reads a 4-byte code; throws Exception("Source::readTypeX", "Wrong type code") when it
  /// differs from expected.
  void readTypeX(unsigned int expected);

  void read(bool& value);
  void read(int& value);
  void read(unsigned int& value);
  void read(short& value);
  void read(unsigned short& value);
  void read(long& value);
  void read(unsigned long& value);
  void read(float& value);
  void read(double& value);
  /// Keeps the bytes read up to the first zero byte.
  void read(std::string& value);
  /// The number is stored as read, not checked.
  void read(Quiltra::Vr& value);
  void read(Quiltra::TransferSyntax& value);
  template <class First, class Second>
  void read(std::pair<First, Second>& value) {
    readTypeX(kCodePair);
    read(value.first);
    read(value.second);
  }
  /// Appends element by element; the count read is never used to reserve memory.
  template <class Element>
  void read(std::vector<Element>& value) {
    readTypeX(kCodeVector);
    value.clear();
    for (std::uint32_t count = readRaw(); count > 0; --count) {
      value.emplace_back();
      read(value.back());
    }
  }

  /// A 32-bit count or length without a type code.
  std::uint32_t readRaw();
  /// How many bytes the channel is known to hold from the read position on, without reading
  /// them: what is left of the memory of a channel that reads from memory, 0 for any other.
  /// Lets a reader give a long field its buffer at once instead of growing it with the input.
  std::size_t bytesKnownAhead() const noexcept {
    return _memory != nullptr ? _memory->size() - _position : 0;
  }

 protected:
  /// For a channel whose readX reads from memory at memoryPosition() and advances it, and
  /// does nothing else. memory must stay unchanged, and alive, as long as the Source.
  explicit Source(const std::vector<unsigned char>& memory) noexcept : _memory(&memory) {}
  /// Where the next read from memory starts; the typed reads advance it as readX would.
  std::size_t& memoryPosition() noexcept { return _position; }

 private:
  /// Whether memory still holds size bytes from the current position.
  bool inMemory(std::size_t size) const noexcept {
    return _memory != nullptr && _memory->size() - _position >= size;
  }
  /// A code, checked against expected, then a value of Width bytes.
  template <unsigned int Width>
  std::uint64_t readField(unsigned int expected);

  const std::vector<unsigned char>* _memory = nullptr;
  std::size_t _position = 0;
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_SOURCE_H_
