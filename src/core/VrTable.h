#ifndef QUILTRA_SRC_CORE_VRTABLE_H_
#define QUILTRA_SRC_CORE_VRTABLE_H_

#include <optional>
#include <string_view>

#include <quiltra/core/Vr.h>

namespace Quiltra {

/// The representation whose two-letter text equals text (whole, case-sensitive); empty when
/// none does. Shared by the strict and the lenient text conversions, so the table of texts
/// exists once (in Vr.cpp).
std::optional<Vr> findVr(std::string_view text) noexcept;

}  // namespace Quiltra

#endif  // QUILTRA_SRC_CORE_VRTABLE_H_
