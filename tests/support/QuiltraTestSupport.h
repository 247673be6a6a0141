#ifndef QUILTRA_TESTS_SUPPORT_QUILTRATESTSUPPORT_H_
#define QUILTRA_TESTS_SUPPORT_QUILTRATESTSUPPORT_H_

#include <gtest/gtest.h>
#include <string>

#include <quiltra/core/Exception.h>

namespace QuiltraTest {

// Checks both halves of a library failure: call must throw a Quiltra::Exception with
// exactly this operation name and description. Returns whether it did.
template <class Call>
bool expectQuiltraError(Call&& call, const std::string& method, const std::string& description) {
  try {
    call();
  } catch (const Quiltra::Exception& error) {
    EXPECT_EQ(error.method(), method);
    EXPECT_EQ(error.description(), description);
    return error.method() == method && error.description() == description;
  }
  ADD_FAILURE() << "expected Exception(\"" << method << "\", \"" << description << "\")";
  return false;
}

}  // namespace QuiltraTest

#endif  // QUILTRA_TESTS_SUPPORT_QUILTRATESTSUPPORT_H_
