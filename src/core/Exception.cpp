#include "quiltra/core/Exception.h"

#include <memory>
#include <string>

namespace Quiltra {

Exception::Exception(const std::string& method) : _method(method) {}

Exception::Exception(const std::string& method, const std::string& description)
    : _method(method), _description(description) {}

// The cause is copied now, into an object of its own, so that the caller may change or
// drop the exception it passed without touching this chain.
Exception::Exception(const Exception& cause, const std::string& method)
    : _method(method), _cause(std::make_shared<Exception>(cause)) {}

Exception::Exception(const Exception& cause, const std::string& method,
                     const std::string& description)
    : _method(method), _description(description), _cause(std::make_shared<Exception>(cause)) {}

Exception::Exception(const Exception& other) = default;

Exception& Exception::operator=(const Exception& other) = default;

Exception::Exception(Exception&& other) noexcept = default;

Exception& Exception::operator=(Exception&& other) noexcept = default;

Exception::~Exception() = default;

std::string Exception::toString() const {
  std::string text = "in " + _method + " because of " + _description + "\n";
  if (_cause) {
    text += "caused by " + _cause->toString();
  }
  return text;
}

}  // namespace Quiltra
