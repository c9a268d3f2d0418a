#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>

// The lines of an INI text and the look-up of a key, in UTF-16 and in a file's bytes: what gives an INI its
// shape is ASCII, so the bytes of every encoding that keeps ASCII as it is have the same lines as their text.
namespace vel::ini {

enum class Clase : std::uint8_t { Nada, Seccion, Clave };

/// One line: what it is, its name and value, and where it stands.
template <typename Caracter>
struct Linea {
  using Vista = std::basic_string_view<Caracter>;
  Clase clase = Clase::Nada;
  Vista nombre;
  Vista valor;
  /// The value with its outer blanks: all from the "=" to the end of the line.
  Vista crudo;
  std::size_t inicio = 0;
  std::size_t siguiente = 0;
  bool enBlanco = false;
};

/// Blanks and control characters count for nothing at either end, as in TrimView.
template <typename Caracter>
constexpr bool EsBlanco(Caracter c) noexcept {
  return static_cast<std::make_unsigned_t<Caracter>>(c) <= 0x20;
}

template <typename Caracter>
std::basic_string_view<Caracter> SinBlancosAntes(std::basic_string_view<Caracter> texto) noexcept {
  while (!texto.empty() && EsBlanco(texto.front())) texto.remove_prefix(1);
  return texto;
}

template <typename Caracter>
std::basic_string_view<Caracter> SinBlancosTras(std::basic_string_view<Caracter> texto) noexcept {
  while (!texto.empty() && EsBlanco(texto.back())) texto.remove_suffix(1);
  return texto;
}

/// Goes through the lines of a text, all of them or from one section to the next.
template <typename Caracter>
class Lineas {
 public:
  using Vista = std::basic_string_view<Caracter>;

  explicit Lineas(Vista texto) : texto_(texto) {}

  bool Lee(Linea<Caracter>& linea) {
    if (lugar_ == texto_.size()) return false;
    const std::size_t fin = FinDeLinea();
    linea = {};
    linea.inicio = lugar_;
    linea.siguiente = fin;
    if (fin < texto_.size()) linea.siguiente += texto_[fin] == '\r' && EsLF(fin + 1) ? 2U : 1U;
    const Vista contenido = SinBlancosTras(SinBlancosAntes(texto_.substr(lugar_, fin - lugar_)));
    lugar_ = linea.siguiente;
    linea.enBlanco = contenido.empty();
    if (contenido.empty() || contenido.front() == ';') return true;
    if (const std::size_t cierre = CierreDeSeccion(contenido); cierre != 0) {
      linea.clase = Clase::Seccion;
      linea.nombre = SinBlancosTras(SinBlancosAntes(contenido.substr(1, cierre - 1)));
      return true;
    }
    const std::size_t igual = contenido.find('=');
    if (igual == Vista::npos) return true;
    linea.clase = Clase::Clave;
    linea.nombre = SinBlancosTras(contenido.substr(0, igual));
    linea.valor = SinBlancosAntes(contenido.substr(igual + 1));
    const std::size_t trasIgual = static_cast<std::size_t>(contenido.data() - texto_.data()) + igual + 1;
    linea.crudo = texto_.substr(trasIgual, fin - trasIgual);
    return true;
  }

  /// Reads on to the next section's line without looking at the lines between.
  bool LeeSeccion(Linea<Caracter>& linea) {
    for (;;) {
      const std::size_t corchete = texto_.find('[', lugar_);
      if (corchete == Vista::npos) return false;
      // The first of its line that is no blank?
      std::size_t inicio = corchete;
      while (inicio > lugar_ && EsBlanco(texto_[inicio - 1]) && !EsSalto(texto_[inicio - 1])) --inicio;
      const bool alInicio = inicio == lugar_ || EsSalto(texto_[inicio - 1]);
      lugar_ = alInicio ? inicio : FinDesde(corchete);
      if (alInicio && Lee(linea) && linea.clase == Clase::Seccion) return true;
    }
  }

 private:
  static bool EsSalto(Caracter c) noexcept { return c == '\n' || c == '\r'; }
  bool EsLF(std::size_t lugar) const noexcept { return lugar < texto_.size() && texto_[lugar] == '\n'; }

  std::size_t FinDesde(std::size_t lugar) const noexcept {
    while (lugar < texto_.size() && !EsSalto(texto_[lugar])) ++lugar;
    return lugar;
  }
  std::size_t FinDeLinea() const noexcept { return FinDesde(lugar_); }

  // Where the name of a section's line ends: at its last character or before a comment; 0 for other lines.
  static std::size_t CierreDeSeccion(Vista contenido) noexcept {
    if (contenido.size() < 2 || contenido.front() != '[') return 0;
    const std::size_t cierre = contenido.find(']');
    if (cierre == Vista::npos) return 0;
    const Vista resto = SinBlancosAntes(contenido.substr(cierre + 1));
    if (!resto.empty() && resto.front() == ';') return cierre;
    return contenido.back() == ']' ? contenido.size() - 1 : 0;
  }

  Vista texto_;
  std::size_t lugar_ = 0;
};

/// The line of a key: the first one, in whichever section of that name it stands. `igual(nombre, buscado)`
/// compares a name of the text with one that is looked for.
template <typename Caracter, typename Igual>
std::optional<Linea<Caracter>> Busca(std::basic_string_view<Caracter> texto, std::u16string_view seccion,
                                     std::u16string_view clave, const Igual& igual) {
  Lineas<Caracter> lineas(texto);
  Linea<Caracter> linea;
  bool hay = lineas.LeeSeccion(linea);
  while (hay) {
    if (!igual(linea.nombre, seccion)) {
      hay = lineas.LeeSeccion(linea);
      continue;
    }
    while ((hay = lineas.Lee(linea)) && linea.clase != Clase::Seccion) {
      if (linea.clase == Clase::Clave && igual(linea.nombre, clave)) return linea;
    }
  }
  return std::nullopt;
}

/// The characters that a new value takes the place of: the blanks around the old one stay, unless the new one
/// brings its own.
template <typename Caracter>
std::basic_string_view<Caracter> LugarDelValor(const Linea<Caracter>& linea,
                                               std::u16string_view valor) noexcept {
  const bool conBlancos = SinBlancosTras(SinBlancosAntes(valor)).size() != valor.size();
  return conBlancos ? linea.crudo : linea.valor;
}

}  // namespace vel::ini
