#ifndef QUILTRA_MODULES_DICTIONARY_STANDARDDICTIONARY_H_
#define QUILTRA_MODULES_DICTIONARY_STANDARDDICTIONARY_H_

#include <string>

#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/TransferSyntax.h>
#include <quiltra/dataset/Dict.h>

namespace Quiltra {

/// The standard DICOM data dictionary: every public attribute with its keyword, value
/// representation and multiplicity, from the generated DictionaryTable.h.
///
/// What it describes, in this order:
/// - each attribute of the table, retired ones under their keyword without "RETIRED_";
/// - the even groups of the repeating ranges 5000-50FF, 6000-60FF and 7F00-7FFF as their
///   first group, so (6002,3000) is OverlayData, and element ranges such as (0020,31xx);
/// - any other (gggg,0000) as "GroupLength", UL, (1, 1);
/// - (gggg,0010)-(gggg,00FF) of every odd (private) group as "PrivateCreator", LO, (1, 1).
/// By name, a range answers its lowest tag: "OverlayData" is (6000,3000), "GroupLength"
/// (0001,0000), "PrivateCreator" (0001,0010).
///
/// Multiplicities are (minimum, maximum) with "n" as 4294967295; "2-2n" and "3-3n" give
/// (2, 4294967295) and (3, 4294967295), the step being beyond what a pair says.
///
/// Representations: where the standard allows several, the first it lists (US or SS gives
/// US, OB or OW gives OB, US or OW gives US); item delimiters, which have none, give UN.
/// Those the library does not have map to the nearest one that keeps the bytes and the
/// text behaviour:
///   OD, OV, SV, UV -> OB   binary words kept as raw bytes; no text form, never split
///   UC             -> LO   text in the data set's character set, split at backslashes
///   UR             -> UT   one text, never split (URIs are plain ASCII)
///
/// syntaxName gives each transfer syntax's UID ("1.2.840.10008.1.2" for implicit little
/// endian); syntaxes without one (implicit big endian, invalid codes) give the library's
/// own text for them.
///
/// Lookups cost one binary search of the table (two for a repeating group) and allocate
/// nothing beyond the returned TagInfo. Unknown tags and names make tagInfo throw
/// Exception("StandardDictionary::tagInfo", "unknown tag (gggg,eeee)" / "unknown name N");
/// knowsTagId and knowsTagName answer false. Holds no state: threads may share it freely.
class StandardDictionary : public Dict {
 public:
  std::string syntaxName(TransferSyntax syntax) const override;
  TagInfo tagInfo(const std::string& name) const override;
  TagInfo tagInfo(const TagId& id) const override;
  bool knowsTagId(const TagId& id) const override;
  bool knowsTagName(const std::string& name) const override;

  /// Makes a StandardDictionary the current dictionary.
  static void install();
};

}  // namespace Quiltra

#endif  // QUILTRA_MODULES_DICTIONARY_STANDARDDICTIONARY_H_
