#ifndef QUILTRA_SERVICES_QUILTRA_UNICODE_H_
#define QUILTRA_SERVICES_QUILTRA_UNICODE_H_

#include <string>

#include <quiltra/core/Export.h>

/// The three character sets of text values, named by their defined terms: the default
/// repertoire "ISO_IR 6" (converted exactly like Latin-1), Latin-1 "ISO_IR 100" and UTF-8
/// "ISO_IR 192". Names are compared as whole byte strings, case-sensitively.
/// Every conversion returns a new string and leaves its arguments alone, except
/// convertCharacterSet, which changes its text in place. Each conversion walks the text
/// once, copies a pure-ASCII text in one block, and allocates once.
/// Threads: pure and reentrant; the names are built once, thread-safely.
/// Failures: UTF8toLatin1 throws Exception("UTF8toLatin1", "source exhausted") for a text
/// that ends inside a multi-byte sequence, and returns nothing partial.
namespace Quiltra_Unicode {

/// "ISO_IR 6".
QUILTRA_EXPORT const std::string& defaultCharacterSet();
/// "ISO_IR 100".
QUILTRA_EXPORT const std::string& isoLatin1CharacterSet();
/// "ISO_IR 192".
QUILTRA_EXPORT const std::string& UTF8CharacterSet();

/// Each byte from 0x80 up becomes two bytes; the others are kept.
QUILTRA_EXPORT std::string latin1ToUTF8(const std::string& latin1);
/// One byte per sequence: the code point when it is at most 0xFF, else "?". Bytes that
/// cannot lead a sequence are copied; continuation bytes are not checked.
QUILTRA_EXPORT std::string UTF8toLatin1(const std::string& utf8);
/// The same as latin1ToUTF8.
QUILTRA_EXPORT std::string defaultToUTF8(const std::string& text);

/// The text, held in characterSet, in Latin-1. Throws Exception("toLatin1",
/// "UNSUPPORTED CHARACTERSET " + characterSet) for a set other than the three.
QUILTRA_EXPORT std::string toLatin1(const std::string& characterSet, const std::string& text);
/// The text, held in characterSet, in UTF-8. Throws Exception("toUTF8",
/// "UNSUPPORTED CHARACTERSET " + characterSet) for a set other than the three.
QUILTRA_EXPORT std::string toUTF8(const std::string& characterSet, const std::string& text);
/// Exactly what toLatin1 gives, failures included.
QUILTRA_EXPORT std::string toDefault(const std::string& characterSet, const std::string& text);

/// Converts text in place from one set to the other and answers true; answers false and
/// leaves text alone when no bytes would change (the same set, the default repertoire and
/// Latin-1) or when a set is unknown. Unknown names never throw. On "source exhausted"
/// text stays as it was.
QUILTRA_EXPORT bool convertCharacterSet(const std::string& from, const std::string& to,
                                        std::string& text);

}  // namespace Quiltra_Unicode

#endif  // QUILTRA_SERVICES_QUILTRA_UNICODE_H_
