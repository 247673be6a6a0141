#ifndef QUILTRA_TESTS_SUPPORT_TEXTELEMENT_H_
#define QUILTRA_TESTS_SUPPORT_TEXTELEMENT_H_

#include <memory>
#include <string>

#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Vr.h>
#include <quiltra/element/Tag.h>

namespace QuiltraTest {

// An element of representation vr holding text, split at backslashes as addValue does.
inline std::shared_ptr<Quiltra::Tag> textElement(const Quiltra::TagId& id, Quiltra::Vr vr,
                                                 const std::string& text) {
  auto tag = std::make_shared<Quiltra::Tag>(Quiltra::TagInfo(id, "Name", vr, {1, 9}));
  tag->addValue(text);
  return tag;
}

}  // namespace QuiltraTest

#endif  // QUILTRA_TESTS_SUPPORT_TEXTELEMENT_H_
