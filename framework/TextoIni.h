#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// The text of an INI file, edited in place: sections in brackets, lines of key, "=" and value, comment lines
/// that begin with ";". Whatever a change does not name stays as it was, to the letter: order, comments,
/// blank lines, spacing, line ends, lines that mean nothing. Names match without regard to case, blanks
/// around names and values do not count, and of several equal keys the first counts, in whichever section of
/// that name it stands.
///
///     TextoIni ini(u"[A]\r\n; nota\r\nx = 1\r\n");
///     ini.Pon(u"a", u"X", u"2");
///     ini.Pon(u"A", u"y", u"3");   // "[A]\r\n; nota\r\nx = 2\r\ny=3\r\n"
class UTILVEL90_EXPORT TextoIni {
 public:
  TextoIni() = default;
  explicit TextoIni(UnicodeString texto) : texto_(std::move(texto)) {}
  const UnicodeString& Texto() const noexcept { return texto_; }

  /// The value as stored, quotes included; nothing when there is no such key. Valid until the text changes.
  std::optional<std::u16string_view> Valor(std::u16string_view seccion, std::u16string_view clave) const;
  /// Keys and values of a section, in the order of the text.
  std::vector<std::pair<UnicodeString, UnicodeString>> Seccion(std::u16string_view seccion) const;
  /// Names of the sections, each once, in the order of the text.
  std::vector<UnicodeString> Secciones() const;

  /// Raises EInvalidOperation for what would not be read back: a line break or NUL anywhere, a "]" in a
  /// section, a "=" in a key, or a key that begins like a comment or a section.
  static void Valida(std::u16string_view seccion, std::u16string_view clave, std::u16string_view valor);

  /// Sets a value, whose outer blanks are written but do not count; a new key goes to the end of its section,
  /// a new section to the end of the text. Raises as Valida does, and changes nothing.
  void Pon(std::u16string_view seccion, std::u16string_view clave, std::u16string_view valor);
  /// Appends a section with its keys at the end of the text, at once; nothing without keys. For a name that
  /// the text does not hold. Raises as Valida does, and changes nothing.
  void AgregaSeccion(std::u16string_view seccion,
                     const std::vector<std::pair<UnicodeString, UnicodeString>>& claves);
  /// Removes every section of that name with its keys; comments after its last key stay. Raises as Valida.
  void Borra(std::u16string_view seccion);

 private:
  std::u16string_view FinDeLinea() const noexcept;
  void AbreSeccion(std::u16string_view seccion, std::u16string_view finDeLinea);

  UnicodeString texto_;
};

/// A profile value without one pair of surrounding quotes, single or double, and without outer blanks.
///
///     QuitaComillas(u" \"a b\" ") == u"a b"    QuitaComillas(u"\"a") == u"\"a"
UTILVEL90_EXPORT std::u16string_view QuitaComillas(std::u16string_view valor) noexcept;

}  // namespace vel
