#include "quiltra/io/IOParameter.h"

#include "Prototype.h"

#include <algorithm>
#include <utility>

namespace Quiltra {

namespace {

// The list rule shared by tags and representations: a non-empty process list decides
// alone; otherwise a non-empty ignore list excludes its members; otherwise everything.
template <class T>
bool listsAllow(const std::vector<T>& ignore, const std::vector<T>& process, const T& item) {
  if (!process.empty()) return std::find(process.begin(), process.end(), item) != process.end();
  if (!ignore.empty()) return std::find(ignore.begin(), ignore.end(), item) == ignore.end();
  return true;
}

std::shared_ptr<TagId> ownCopy(const std::shared_ptr<TagId>& bound) {
  return bound ? std::make_shared<TagId>(*bound) : nullptr;
}

}  // namespace

std::shared_ptr<const IOParameter> IOParameter::_prototype;

IOParameter::~IOParameter() = default;

IOParameter::IOParameter(const IOParameter& other)
    : _tagId_Interval(ownCopy(other._tagId_Interval.first), ownCopy(other._tagId_Interval.second)),
      _tag_Ids_ToIgnore(other._tag_Ids_ToIgnore),
      _tag_Ids_ToProcess(other._tag_Ids_ToProcess),
      _vrs_ToIgnore(other._vrs_ToIgnore),
      _vrs_ToProcess(other._vrs_ToProcess) {}

IOParameter& IOParameter::operator=(const IOParameter& other) {
  if (this == &other) return *this;
  _tagId_Interval = {ownCopy(other._tagId_Interval.first), ownCopy(other._tagId_Interval.second)};
  _tag_Ids_ToIgnore = other._tag_Ids_ToIgnore;
  _tag_Ids_ToProcess = other._tag_Ids_ToProcess;
  _vrs_ToIgnore = other._vrs_ToIgnore;
  _vrs_ToProcess = other._vrs_ToProcess;
  return *this;
}

bool IOParameter::processTagId(const std::vector<TagId>& ignore, const std::vector<TagId>& process,
                               const TagIdInterval& interval, const TagId& id) {
  if (interval.first && interval.first->rawId() > id.rawId()) return false;
  if (interval.second && interval.second->rawId() <= id.rawId()) return false;
  return listsAllow(ignore, process, id);
}

bool IOParameter::processTagId(const TagId& id) const {
  return processTagId(_tag_Ids_ToIgnore, _tag_Ids_ToProcess, _tagId_Interval, id);
}

bool IOParameter::processVR(const std::vector<Vr>& ignore, const std::vector<Vr>& process,
                            const Vr& vr) {
  return listsAllow(ignore, process, vr);
}

bool IOParameter::processVR(const Vr& vr) const {
  return processVR(_vrs_ToIgnore, _vrs_ToProcess, vr);
}

bool IOParameter::process(const TagInfo& info) const {
  return processVR(info.vr()) && processTagId(info.id());
}

std::shared_ptr<IOParameter> IOParameter::create(const std::string& text, bool first, bool second,
                                                 bool third) {
  return loadedPrototype(_prototype, "IOParameter::create")
      ->createInstance(text, first, second, third);
}

std::shared_ptr<const IOParameter> IOParameter::prototype() {
  return _prototype;
}

void IOParameter::setPrototype(std::shared_ptr<const IOParameter> prototype) {
  _prototype = std::move(prototype);
}

}  // namespace Quiltra
