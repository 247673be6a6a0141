#ifndef QUILTRA_IO_SINK_H_
#define QUILTRA_IO_SINK_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/core/TransferSyntax.h>
#include <quiltra/core/Vr.h>
#include <quiltra/io/TypeCode.h>

namespace Quiltra {
class NestingCheck;
}

namespace Quiltra_Serialization {

/// A byte channel that typed fields are written to: a 4-byte little-endian type code,
/// then the value, little-endian whatever the host. Derived classes supply writeX, which the
/// typed writes call once for the code and once for the value; a channel that collects its
/// bytes in a vector may hand it to the protected constructor instead, and the typed writes
/// then append whole fields to it directly.
/// Threads: one thread at a time.
class QUILTRA_EXPORT Sink {
 public:
  Sink() = default;
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;
  virtual ~Sink();

  /// Moves exactly size raw bytes; throws Exception when they cannot be written whole.
  virtual void writeX(const void* data, unsigned int size) = 0;

  void write(bool value);
  void write(int value);
  void write(unsigned int value);
  void write(short value);
  void write(unsigned short value);
  /// Four bytes on the wire whatever the width of the host's long.
  void write(long value);
  void write(unsigned long value);
  void write(float value);
  void write(double value);
  /// The length up to the first zero byte, then those bytes (no terminator).
  void write(const std::string& value);
  void write(Quiltra::Vr value);
  void write(Quiltra::TransferSyntax value);
  template <class First, class Second>
  void write(const std::pair<First, Second>& value) {
    writeType(kCodePair);
    write(value.first);
    write(value.second);
  }
  template <class Element>
  void write(const std::vector<Element>& value) {
    writeType(kCodeVector);
    writeRaw(static_cast<std::uint32_t>(value.size()));
    for (const Element& element : value) write(element);
  }

  /// A type code alone, for layouts that put a code before a structure.
  void writeType(unsigned int code);
  /// A 32-bit count or length without a type code.
  void writeRaw(std::uint32_t value);

 protected:
  /// For a channel whose writeX appends to memory, and does nothing else: the typed writes
  /// append there themselves, which gives the same bytes without a call per part. memory
  /// must outlive the Sink.
  explicit Sink(std::vector<unsigned char>& memory) noexcept : _memory(&memory) {}

 private:
  // Takes back what a failed write appended to memory.
  friend class Quiltra::NestingCheck;

  /// The code, then the low Width bytes of value.
  template <unsigned int Width>
  void writeField(unsigned int code, std::uint64_t value);
  /// size raw bytes, through memory or writeX.
  void put(const void* data, unsigned int size);

  std::vector<unsigned char>* _memory = nullptr;
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_SINK_H_
