#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "framework/Texto.h"

// Texts in UTF-8, which is what the program reads and prints.
namespace utilvel {

/// Text of a user in UTF-8; bytes that are not UTF-8 are taken as Windows-1252, as the suite's files have
/// them.
std::string AUtf8(std::string_view bytes);
/// The same in the library's texts.
vel::UnicodeString ATexto(std::string_view bytes);

/// Characters of a text in UTF-8 (code points).
std::size_t Largo(std::string_view texto) noexcept;

/// The text with each control character as its picture ("␊" for a line break), so that it neither breaks a
/// table nor commands a terminal.
std::string Visible(std::string_view texto);

/// An amount as it is printed: FloatToStr, filled with zeros to at least two decimals. Nothing is rounded.
///
///     Importe(1234.5) == "1234.50"    Importe(0.125) == "0.125"
std::string Importe(double valor);

/// The text as a JSON string, quotes included.
std::string Json(std::string_view texto);

/// The text as a field of a CSV file (RFC 4180): between quotes when it holds a comma, a quote or a line
/// break.
std::string Csv(std::string_view texto);

}  // namespace utilvel
