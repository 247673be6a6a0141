#ifndef QUILTRA_CORE_EXCEPTION_H_
#define QUILTRA_CORE_EXCEPTION_H_

#include <memory>
#include <string>

#include <quiltra/core/Export.h>

namespace Quiltra {

/// The one failure type of the library: the operation that failed, what went wrong and,
/// optionally, the failure that caused it.
/// Owns a heap copy of its cause; copies of an exception share that one cause object.
/// Threads: not shared by the library; copies sharing a cause only read it.
/// Its own operations fail only when memory runs out while copying texts or the cause.
class QUILTRA_EXPORT Exception {
 public:
  /// An exception with an operation name and an empty description.
  explicit Exception(const std::string& method);
  Exception(const std::string& method, const std::string& description);
  /// Wraps a copy of cause, taken now; later changes to cause do not reach the chain.
  Exception(const Exception& cause, const std::string& method);
  Exception(const Exception& cause, const std::string& method, const std::string& description);
  /// Copies the texts and shares other's cause object.
  Exception(const Exception& other);
  /// Copies the texts and shares other's cause object, releasing the previous cause.
  Exception& operator=(const Exception& other);
  /// Take over the texts and the cause; other is left without a cause.
  Exception(Exception&& other) noexcept;
  Exception& operator=(Exception&& other) noexcept;
  virtual ~Exception();

  const std::string& method() const noexcept { return _method; }
  const std::string& description() const noexcept { return _description; }
  /// Empty when there is no cause.
  const std::shared_ptr<Exception>& cause() const noexcept { return _cause; }

  /// "in <method> because of <description>\n", then "caused by " and the cause's own text.
  std::string toString() const;

 private:
  std::string _method;
  std::string _description;
  std::shared_ptr<Exception> _cause;
};

}  // namespace Quiltra

#endif  // QUILTRA_CORE_EXCEPTION_H_
