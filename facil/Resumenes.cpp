#include "facil/Resumenes.h"

#include <utility>

#include "Uutilext/crypto/Base64.h"
#include "Uutilext/crypto/Resumenes.h"
#include "framework/Excepciones.h"

namespace vel::facil {

namespace {

// Lengths of Base64 are ints, and its text is a third longer than the bytes.
constexpr std::size_t kMaxBytes = std::size_t{1} << 30;

Resumen Exige(AnsiString bytes) {
  if (bytes.empty()) throw Exception(u"No se pudo calcular el resumen.");
  return Resumen(std::move(bytes));
}

// The result in a buffer of `tamano` bytes, cut to what was written.
std::string Convierte(std::string_view entrada, std::size_t tamano, bool codifica) {
  if (entrada.size() > kMaxBytes) throw EInvalidOperation(u"Los datos son demasiado largos para Base64");
  std::string salida(tamano, '\0');
  // A char may look at any byte.
  const int escritos =
      vel::Base64(reinterpret_cast<const unsigned char*>(entrada.data()), static_cast<int>(entrada.size()),
                  reinterpret_cast<unsigned char*>(salida.data()), static_cast<int>(tamano), codifica);
  salida.resize(static_cast<std::size_t>(escritos));
  return salida;
}

}  // namespace

std::string Resumen::Hex() const {
  constexpr std::string_view kDigitos = "0123456789abcdef";
  std::string texto;
  for (const char c : bytes_) {
    const auto byte = static_cast<unsigned char>(c);
    texto += kDigitos[byte / 16];
    texto += kDigitos[byte % 16];
  }
  return texto;
}

std::string Resumen::Base64() const { return ABase64(bytes_); }

Resumen Sha256(std::string_view datos) { return Exige(ResumeBytes(AlgoritmoResumen::SHA256, datos)); }
Resumen Sha1(std::string_view datos) { return Exige(ResumeBytes(AlgoritmoResumen::SHA1, datos)); }
Resumen Md5(std::string_view datos) { return Exige(ResumeBytes(AlgoritmoResumen::MD5, datos)); }
Resumen HmacSha256(std::string_view llave, std::string_view datos) {
  return Exige(HmacSha256DeBytes(llave, datos));
}

std::string ABase64(std::string_view bytes) {
  return Convierte(bytes, bytes.size() <= kMaxBytes ? (bytes.size() + 2) / 3 * 4 : 0, true);
}

std::string DeBase64(std::string_view texto) {
  const bool vacio = texto.find_first_not_of(" \t\r\n") == std::string_view::npos;
  std::string bytes = Convierte(texto, texto.size() / 4 * 3 + 3, false);
  // No such text of one character or more is of no bytes.
  if (bytes.empty() && !vacio) throw EConvertError(u"El texto no está en Base64");
  return bytes;
}

}  // namespace vel::facil
