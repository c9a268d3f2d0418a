#pragma once

#include <string>
#include <string_view>

#include "utilvel90_export.h"

namespace vel {

/// Text of the suite: UTF-16 code units. Parameters that are only read are std::u16string_view.
/// Lengths and positions count code units; positions in this library's interfaces are 1-based.
using UnicodeString = std::u16string;

/// 8-bit text in the system code page (Windows-1252 in this suite).
using AnsiString = std::string;

/// UTF-16 to UTF-8. A surrogate without its partner becomes U+FFFD.
UTILVEL90_EXPORT std::string UTF8Encode(std::u16string_view texto);

/// UTF-8 to UTF-16. Each maximal ill-formed part becomes one U+FFFD (Unicode 15, section 3.9, "best
/// practice" of U+FFFD substitution).
UTILVEL90_EXPORT UnicodeString UTF8ToString(std::string_view utf8);

/// True when the bytes are well-formed UTF-8.
UTILVEL90_EXPORT bool IsUTF8(std::string_view bytes) noexcept;

/// True when every byte is ASCII.
UTILVEL90_EXPORT bool IsASCII(std::string_view bytes) noexcept;

/// The text without leading and trailing blanks and control characters (U+0000 to U+0020). The view
/// points into the text given.
UTILVEL90_EXPORT std::u16string_view TrimView(std::u16string_view texto) noexcept;
UTILVEL90_EXPORT std::u16string_view TrimLeftView(std::u16string_view texto) noexcept;
UTILVEL90_EXPORT std::u16string_view TrimRightView(std::u16string_view texto) noexcept;
UTILVEL90_EXPORT UnicodeString Trim(std::u16string_view texto);

/// 1-based position of the first occurrence of `buscado`; 0 when there is none or `buscado` is empty.
///
///     Pos(u"da", u"Mérida") == 5
UTILVEL90_EXPORT std::size_t Pos(std::u16string_view buscado, std::u16string_view texto) noexcept;

/// Up to `cuenta` characters from the 1-based position `inicio`. A start before 1 counts as 1; a start
/// past the end or a count below 1 gives the empty text.
///
///     Copy(u"Mérida", 2, 3) == u"éri"    Copy(u"Mérida", -4, 2) == u"Mé"    Copy(u"Mérida", 9, 2) == u""
UTILVEL90_EXPORT std::u16string_view Copy(std::u16string_view texto, long long inicio,
                                          long long cuenta) noexcept;

/// The text with every occurrence of `viejo`, left to right and not overlapping, replaced by `nuevo`.
///
///     StringReplace(u"aaa", u"aa", u"b") == u"ba"
UTILVEL90_EXPORT UnicodeString StringReplace(std::u16string_view texto, std::u16string_view viejo,
                                             std::u16string_view nuevo);

/// Folds the capitals of the Latin letters (Basic Latin, Latin-1 and Latin Extended-A) to small letters,
/// so that names match without regard to case. A name test, not linguistic case conversion: other
/// letters compare as they stand.
UTILVEL90_EXPORT char16_t FoldCase(char16_t c) noexcept;

/// Ordinal comparison after FoldCase: negative, zero or positive.
UTILVEL90_EXPORT int CompareText(std::u16string_view a, std::u16string_view b) noexcept;

/// True when both names are equal without regard to case.
UTILVEL90_EXPORT bool SameText(std::u16string_view a, std::u16string_view b) noexcept;

/// Order for containers keyed by names without regard to case.
struct LessText {
  /// Look-ups need no copy of the text.
  using is_transparent = void;
  /// Whether `a` comes before `b`.
  bool operator()(std::u16string_view a, std::u16string_view b) const noexcept {
    return CompareText(a, b) < 0;
  }
};

}  // namespace vel
