#ifndef QUILTRA_TESTS_SUPPORT_QUILTRATESTSUPPORT_H_
#define QUILTRA_TESTS_SUPPORT_QUILTRATESTSUPPORT_H_

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

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

// Bytes written as hexadecimal pairs separated by blanks: "09 00 00 00 41".
inline std::vector<unsigned char> hex(const std::string& text) {
  std::istringstream in(text);
  std::vector<unsigned char> bytes;
  for (unsigned int byte = 0; in >> std::hex >> byte;) bytes.push_back(byte & 0xFFu);
  return bytes;
}

}  // namespace QuiltraTest

#endif  // QUILTRA_TESTS_SUPPORT_QUILTRATESTSUPPORT_H_
