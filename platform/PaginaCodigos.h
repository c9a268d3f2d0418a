#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// UTF-16 to the system code page of this suite, Windows-1252. A character that it lacks becomes "?". The
/// five bytes that it leaves undefined stand for the control characters of the same number, so every byte
/// survives the way there and back.
///
///     ACp1252(u"ñ€Ω") == "\xF1\x80?"
UTILVEL90_EXPORT AnsiString ACp1252(std::u16string_view texto);

/// True when every character of the text is in Windows-1252.
UTILVEL90_EXPORT bool CabeEnCp1252(std::u16string_view texto);

/// Windows-1252 to UTF-16.
UTILVEL90_EXPORT UnicodeString DeCp1252(std::string_view texto);

}  // namespace vel
