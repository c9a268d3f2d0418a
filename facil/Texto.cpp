#include "facil/Texto.h"

#include <algorithm>

#include "framework/Excepciones.h"

namespace vel::facil {

namespace {

UnicodeString DeUtf8(std::string_view bytes) {
  if (!IsUTF8(bytes)) throw EConvertError(u"El texto no está en UTF-8");
  return UTF8ToString(bytes);
}

}  // namespace

void Texto::FaltaTexto() { throw EInvalidOperation(u"Falta un texto: el puntero es nulo"); }

Texto::Texto(std::string_view utf8) {
  if (utf8.size() <= kCorto && IsASCII(utf8)) {
    std::transform(utf8.begin(), utf8.end(), corto_.begin(),
                   [](char c) { return static_cast<unsigned char>(c); });
    vista_ = {corto_.data(), utf8.size()};
  } else {
    propio_ = DeUtf8(utf8);
    vista_ = propio_;
  }
}

// A char8_t is a byte of UTF-8 by definition, and char may look at any byte.
Texto::Texto(std::u8string_view utf8)
    : Texto(std::string_view(reinterpret_cast<const char*>(utf8.data()), utf8.size())) {}

}  // namespace vel::facil
