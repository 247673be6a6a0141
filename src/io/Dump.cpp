/*
 * The text dump. Every line is built in one reused buffer and handed to the stream with
 * one write: a header of two lines, then per attribute
 *
 *   <indent>(gggg,eeee) VR: <vr> VM: <min>-<max> <name>
 *   <indent>   <k>: <value>                      k = 1 .. number of values, or for SQ
 *   <indent>   <<< <k>                           k = 1 .. number of items
 *   <indent>      ... the item's attributes, two levels deeper
 *   <indent>   >>> <k>
 *
 * with three blanks per indentation level. A value prints as NULL, 'text', an unsigned or
 * signed decimal number, a double in default stream notation (six significant digits), or
 * "!", by the first class of the description's representation that applies.
 */
#include "quiltra/io/Dump.h"

#include <charconv>
#include <cstring>
#include <utility>

#include <quiltra/core/Exception.h>
#include <quiltra/core/Multiplicity.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/TransferSyntax.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/dataset/Message.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace Quiltra {

namespace {

constexpr unsigned int kIndentWidth = 3;

void emit(std::ostream& os, std::string& line) {
  line += '\n';
  os.write(line.data(), static_cast<std::streamsize>(line.size()));
  line.clear();
}

template <class Number>
void appendNumber(std::string& line, Number number) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  line.append(digits, end);
}

// As a default-formatted stream prints it (printf's %g with precision 6), with "." as the
// point whatever the locale.
void appendDouble(std::string& line, double number) {
  char digits[32];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, 6).ptr;
  line.append(digits, end);
}

// The text Tag::toString(index) gives, appended without a temporary where the element's
// own representation holds text: its bytes up to the first zero byte or the value's end.
void appendText(std::string& line, const Tag& tag, unsigned int index) {
  if (!isType(tag.info().vr(), VRC_STRING)) {
    line += tag.toString(index);  // converts, or throws for a binary representation
    return;
  }
  const Value& value = tag.getValue(index);
  const char* chars = reinterpret_cast<const char*>(value.data());
  const void* zero = std::memchr(chars, 0, value.size());
  line.append(chars, zero != nullptr ? static_cast<const char*>(zero) : chars + value.size());
}

void appendValue(std::string& line, const Tag& tag, Vr vr, unsigned int index) {
  if (tag.isNull(index)) {
    line += "NULL";
  } else if (isType(vr, VRC_STRING)) {
    line += '\'';
    appendText(line, tag, index);
    line += '\'';
  } else if (isType(vr, VRC_UINT)) {
    appendNumber(line, tag.toUInt(index));
  } else if (isType(vr, VRC_INT)) {
    appendNumber(line, tag.toInt(index));
  } else if (isType(vr, VRC_DOUBLE)) {
    appendDouble(line, tag.toDouble(index));
  } else {
    line += '!';
  }
}

// The description of a nameless tag: the dictionary's, or the tag's own named
// "- non std. tag -" when the dictionary throws.
TagInfo describeNameless(const TagInfo& own, const Dict& dict) {
  try {
    return dict.tagInfo(own.id());
  } catch (const Exception&) {
    TagInfo described = own;
    described.setName("- non std. tag -");
    return described;
  }
}

}  // namespace

Dump::Dump(std::shared_ptr<const Dict> dict, std::ostream& out)
    : Writer(std::move(dict)), _out(&out) {}

Dump::~Dump() = default;

void Dump::write(std::shared_ptr<IOParameter> /*selection*/, std::shared_ptr<Message> message) {
  print(*_out, message);
}

void Dump::print(std::ostream& out, const std::shared_ptr<Message>& message) const {
  if (!message) throw Exception("Dump::write", "no message");
  const std::shared_ptr<const Dict> dictionary = dict();
  std::string line = "Transfer Syntax: ";
  if (dictionary) line += dictionary->syntaxName(message->syntax());
  line += ' ';
  line += toString(message->syntax());
  emit(out, line);
  line = "Specific Character Set: ";
  line += message->specificCharacterSet();
  emit(out, line);
  const std::shared_ptr<const Tree>& tree = static_cast<const Message&>(*message).tags();
  if (tree) Write(out, *tree, 0, line);
}

void Dump::Write(std::ostream& os, const Tree& tree, unsigned int indent, std::string& line) const {
  const Dict* dictionary = dict().get();  // kept alive by this dump
  TagInfo described;
  const std::shared_ptr<Tree::TagIdList> ids = tree.tagIds(AllLayers);
  for (const TagId& id : *ids) {
    const std::shared_ptr<const Tag> tag = tree.getTag(id, AllLayers);
    const TagInfo* info = &tag->info();
    std::string name = info->name();
    if (name.empty() && dictionary != nullptr) {
      described = describeNameless(*info, *dictionary);
      info = &described;
      name = described.name();
    }
    indentstr(line, indent);
    line += id.toString();
    line += " VR: ";
    line += toString(info->vr());
    line += " VM: ";
    line += toString(info->multiplicity());
    line += ' ';
    line += name;
    emit(os, line);
    if (info->vr() == SQ) {
      writeItems(os, *tag, indent + 1, line);
    } else {
      writeValues(os, *tag, info->vr(), indent + 1, line);
    }
  }
}

void Dump::writeValues(std::ostream& os, const Tag& tag, Vr vr, unsigned int indent,
                       std::string& line) const {
  for (unsigned int index = 0; index < tag.numberOfValues(); ++index) {
    indentstr(line, indent);
    appendNumber(line, index + 1);
    line += ": ";
    appendValue(line, tag, vr, index);
    emit(os, line);
  }
}

// An empty item slot prints its brackets with nothing between them.
void Dump::writeItems(std::ostream& os, const Tag& tag, unsigned int indent,
                      std::string& line) const {
  for (unsigned int index = 0; index < tag.numberOfSequenceItems(); ++index) {
    indentstr(line, indent);
    line += "<<< ";
    appendNumber(line, index + 1);
    emit(os, line);
    const std::shared_ptr<Tree>& item = tag.sequenceItems()[index];
    if (item) Write(os, *item, indent + 1, line);
    indentstr(line, indent);
    line += ">>> ";
    appendNumber(line, index + 1);
    emit(os, line);
  }
}

void Dump::indentstr(std::string& line, unsigned int level) {
  line.append(static_cast<std::size_t>(level) * kIndentWidth, ' ');
}

}  // namespace Quiltra
