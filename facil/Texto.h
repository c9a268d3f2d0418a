#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// A text argument, in UTF-16 or in UTF-8: what takes a `const Texto&` takes either, and the library's texts
/// stay UTF-16. It lasts for one call and keeps no copy of a UTF-16 text.
///
/// Bytes that are not UTF-8 raise EConvertError ("El texto no está en UTF-8"): a text in another encoding is
/// never taken for one with damaged letters. A null pointer, as getenv gives one, raises
/// EInvalidOperation ("Falta un texto: el puntero es nulo").
///
///     Consulta(u"CLIENTES")    Consulta("CLIENTES")    Consulta(nombreEnUtf8)
///
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT Texto {
 public:
  /// From a text in either encoding; see above what a wrong one raises.
  Texto(std::u16string_view texto) noexcept : vista_(texto) {}
  Texto(const UnicodeString& texto) noexcept : vista_(texto) {}
  Texto(const char16_t* texto) : vista_(Apuntado(texto)) {}
  Texto(std::string_view utf8);
  Texto(const std::string& utf8) : Texto(std::string_view(utf8)) {}
  Texto(const char* utf8) : Texto(std::string_view(Apuntado(utf8))) {}
  Texto(std::u8string_view utf8);
  Texto(const char8_t* utf8) : Texto(std::u8string_view(Apuntado(utf8))) {}
  Texto(std::nullptr_t) = delete;
  Texto(const Texto&) = delete;
  Texto& operator=(const Texto&) = delete;
  ~Texto() = default;

  /// The text in UTF-16, valid as long as this object and the text that it was made of.
  operator std::u16string_view() const noexcept { return vista_; }
  std::u16string_view Vista() const noexcept { return vista_; }

 private:
  template <typename Caracter>
  static const Caracter* Apuntado(const Caracter* texto) {
    if (texto == nullptr) FaltaTexto();
    return texto;
  }
  [[noreturn]] static void FaltaTexto();

  /// What was converted: short texts of ASCII, as names mostly are, need no memory for that.
  static constexpr std::size_t kCorto = 32;
  std::array<char16_t, kCorto> corto_;
  UnicodeString propio_;
  std::u16string_view vista_;
};

}  // namespace vel::facil
