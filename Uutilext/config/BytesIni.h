#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "framework/LineasIni.h"
#include "framework/Texto.h"
#include "platform/TextoArchivo.h"

namespace vel {

/// An INI file's bytes, in which one key is looked up or changed: only its name and value become text, so
/// that a large file costs little more than reading it. What TextoIni does with the whole text is what holds;
/// this gives the same, or leaves it to that.
class BytesIni {
 public:
  /// The bytes must outlive the object.
  explicit BytesIni(std::string_view bytes);

  /// TextoIni::Valor of the file's text.
  std::optional<UnicodeString> Valor(std::u16string_view seccion, std::u16string_view clave) const;

  /// The file's bytes after TextoIni::Pon, whose errors it raises. Nothing when that is more than to replace
  /// a key's value by another in ASCII: a new key, a file in UTF-16 or with damaged text, a file that the
  /// change would make be read in another encoding.
  std::optional<std::string> ConValor(std::u16string_view seccion, std::u16string_view clave,
                                      std::u16string_view valor) const;

 private:
  std::optional<ini::Linea<char>> Linea(std::u16string_view seccion, std::u16string_view clave) const;
  bool EsNombre(std::string_view nombre, std::u16string_view buscado) const;

  std::string_view bytes_;
  Codificacion codificacion_;
};

}  // namespace vel
