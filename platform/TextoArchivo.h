#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// How a text stands in a file. UTF-16 is little-endian with a byte-order mark.
enum class Codificacion : std::uint8_t { Windows1252, Utf8, Utf8ConMarca, Utf16 };

/// A file's text, without its byte-order mark, and what it takes to write it back in the same way.
struct TextoArchivo {
  /// The text, without mark.
  UnicodeString texto;
  /// How it stands in the file.
  Codificacion codificacion = Codificacion::Windows1252;
  /// Half a character at the end of a damaged UTF-16 file.
  std::string resto;
};

/// The text of a file's bytes: what its byte-order mark says, else UTF-8 where they are well-formed, else
/// Windows-1252, which is also what ASCII alone counts as.
UTILVEL90_EXPORT TextoArchivo DecodificaArchivo(std::string_view bytes);

/// What those bytes are, and the text of a part of them that begins and ends beside ASCII characters or at
/// their ends, the byte-order mark left out; not for UTF-16.
UTILVEL90_EXPORT Codificacion ReconoceCodificacion(std::string_view bytes) noexcept;
UTILVEL90_EXPORT std::string_view SinMarca(std::string_view bytes, Codificacion codificacion) noexcept;
UTILVEL90_EXPORT UnicodeString DecodificaParte(std::string_view parte, Codificacion codificacion);

/// The bytes of a text, in its encoding; one that would not be read back from it becomes UTF-16.
UTILVEL90_EXPORT std::string CodificaArchivo(const TextoArchivo& archivo);

/// False when writing the file back would change what nobody asked for: it holds damaged text, or is UTF-16
/// of the other byte order, which is not read.
UTILVEL90_EXPORT bool SeReescribeIgual(std::string_view bytes, const TextoArchivo& leido);

}  // namespace vel
