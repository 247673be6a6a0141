#ifndef QUILTRA_CORE_NAMEPOOL_H_
#define QUILTRA_CORE_NAMEPOOL_H_

#include <memory>
#include <string>
#include <string_view>

namespace Quiltra {

/// The immutable text of an element name, shared by every description that carries it.
/// Empty for the empty name. Names of dictionary length are pooled: the pool holds each
/// such text once for the life of the process and hands out pointers that own nothing, so
/// copying a description costs neither an allocation nor a reference count. Longer names,
/// and every name once the pool is full, get a text of their own. The pool is bounded, so
/// names read from untrusted input cannot make it grow without limit.
/// Threads: may be called from several threads at once.
std::shared_ptr<const std::string> sharedName(std::string_view name);

/// The text of a shared name; the empty text for an empty pointer.
const std::string& nameText(const std::shared_ptr<const std::string>& name) noexcept;

}  // namespace Quiltra

#endif  // QUILTRA_CORE_NAMEPOOL_H_
