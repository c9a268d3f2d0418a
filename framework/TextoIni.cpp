#include "framework/TextoIni.h"

#include <algorithm>
#include <cstdint>

#include "framework/Excepciones.h"

namespace vel {
namespace {

enum class Clase : std::uint8_t { Nada, Seccion, Clave };

/// One line: what it is, its name and value, and where it stands.
struct Linea {
  Clase clase = Clase::Nada;
  std::u16string_view nombre;
  std::u16string_view valor;
  /// The value with its outer blanks: all from the "=" to the end of the line.
  std::u16string_view crudo;
  std::size_t inicio = 0;
  std::size_t siguiente = 0;
  bool enBlanco = false;
};

/// Goes through the lines of a text.
class Lineas {
 public:
  explicit Lineas(std::u16string_view texto) : texto_(texto) {}

  bool Lee(Linea& linea) {
    if (lugar_ == texto_.size()) return false;
    std::size_t fin = lugar_;
    while (fin < texto_.size() && texto_[fin] != u'\n' && texto_[fin] != u'\r') ++fin;
    linea = Linea{};
    linea.inicio = lugar_;
    linea.siguiente = fin + (texto_.substr(fin, 2) == u"\r\n" ? 2 : fin < texto_.size() ? 1 : 0);
    const std::u16string_view contenido = TrimView(texto_.substr(lugar_, fin - lugar_));
    lugar_ = linea.siguiente;
    linea.enBlanco = contenido.empty();
    if (contenido.empty() || contenido.front() == u';') return true;
    if (const std::size_t cierre = CierreDeSeccion(contenido); cierre != 0) {
      linea.clase = Clase::Seccion;
      linea.nombre = TrimView(contenido.substr(1, cierre - 1));
      return true;
    }
    const std::size_t igual = contenido.find(u'=');
    if (igual == std::u16string_view::npos) return true;
    linea.clase = Clase::Clave;
    linea.nombre = TrimRightView(contenido.substr(0, igual));
    linea.valor = TrimLeftView(contenido.substr(igual + 1));
    const std::size_t trasIgual = static_cast<std::size_t>(contenido.data() - texto_.data()) + igual + 1;
    linea.crudo = texto_.substr(trasIgual, fin - trasIgual);
    return true;
  }

 private:
  // Where the name of a section's line ends: at its last character or before a comment; 0 for other lines.
  static std::size_t CierreDeSeccion(std::u16string_view contenido) noexcept {
    if (contenido.size() < 2 || contenido.front() != u'[') return 0;
    const std::size_t cierre = contenido.find(u']');
    if (cierre == std::u16string_view::npos) return 0;
    if (TrimLeftView(contenido.substr(cierre + 1)).substr(0, 1) == u";") return cierre;
    return contenido.back() == u']' ? contenido.size() - 1 : 0;
  }

  std::u16string_view texto_;
  std::size_t lugar_ = 0;
};

std::optional<Linea> Busca(std::u16string_view texto, std::u16string_view seccion,
                           std::u16string_view clave) {
  const std::u16string_view buscada = TrimView(seccion);
  const std::u16string_view nombre = TrimView(clave);
  bool dentro = false;
  Linea linea;
  for (Lineas lineas(texto); lineas.Lee(linea);) {
    if (linea.clase == Clase::Seccion) dentro = SameText(linea.nombre, buscada);
    if (dentro && linea.clase == Clase::Clave && SameText(linea.nombre, nombre)) return linea;
  }
  return std::nullopt;
}

bool TieneSalto(std::u16string_view texto) noexcept {
  return texto.find_first_of(std::u16string_view(u"\r\n\0", 3)) != std::u16string_view::npos;
}

void Valida(std::u16string_view seccion, std::u16string_view clave, std::u16string_view valor) {
  if (TieneSalto(seccion) || TieneSalto(clave) || TieneSalto(valor)) {
    throw EInvalidOperation(
        u"Un archivo de configuración no puede guardar saltos de línea ni caracteres nulos");
  }
  if (seccion.find(u']') != std::u16string_view::npos) {
    throw EInvalidOperation(u"El nombre de la sección '" + UnicodeString(seccion) + u"' no puede tener ']'");
  }
  const std::u16string_view nombre = TrimView(clave);
  if (nombre.find(u'=') != std::u16string_view::npos || nombre.substr(0, 1) == u";" ||
      nombre.substr(0, 1) == u"[") {
    throw EInvalidOperation(u"El nombre de la clave '" + UnicodeString(clave) + u"' no es válido");
  }
}

}  // namespace

std::optional<std::u16string_view> TextoIni::Valor(std::u16string_view seccion,
                                                   std::u16string_view clave) const {
  const std::optional<Linea> linea = Busca(texto_, seccion, clave);
  return linea.has_value() ? std::optional(linea->valor) : std::nullopt;
}

std::vector<std::pair<UnicodeString, UnicodeString>> TextoIni::Seccion(std::u16string_view seccion) const {
  std::vector<std::pair<UnicodeString, UnicodeString>> claves;
  bool dentro = false;
  Linea linea;
  for (Lineas lineas(texto_); lineas.Lee(linea);) {
    if (linea.clase == Clase::Seccion) dentro = SameText(linea.nombre, TrimView(seccion));
    if (dentro && linea.clase == Clase::Clave) claves.emplace_back(linea.nombre, linea.valor);
  }
  return claves;
}

std::vector<UnicodeString> TextoIni::Secciones() const {
  std::vector<UnicodeString> nombres;
  Linea linea;
  for (Lineas lineas(texto_); lineas.Lee(linea);) {
    if (linea.clase != Clase::Seccion) continue;
    const bool esta = std::any_of(nombres.begin(), nombres.end(),
                                  [&linea](const UnicodeString& n) { return SameText(n, linea.nombre); });
    if (!esta) nombres.emplace_back(linea.nombre);
  }
  return nombres;
}

std::u16string_view TextoIni::FinDeLinea() const noexcept {
  const std::size_t fin = texto_.find_first_of(u"\r\n");
  if (fin == UnicodeString::npos) return u"\r\n";
  const std::u16string_view texto = texto_;
  return texto.substr(fin, texto.substr(fin, 2) == u"\r\n" ? 2 : 1);
}

void TextoIni::Pon(std::u16string_view seccion, std::u16string_view clave, std::u16string_view valor) {
  Valida(seccion, clave, valor);
  if (const std::optional<Linea> linea = Busca(texto_, seccion, clave)) {
    // The blanks around the old value stay, unless the new one brings its own.
    const bool conBlancos = TrimView(valor).size() != valor.size();
    const std::u16string_view actual = conBlancos ? linea->crudo : linea->valor;
    // The view lies in the text: its place is where the new value goes.
    texto_.replace(static_cast<std::size_t>(actual.data() - texto_.data()), actual.size(), valor);
    return;
  }
  const UnicodeString finDeLinea(FinDeLinea());
  const UnicodeString nueva = UnicodeString(TrimView(clave)).append(u"=").append(valor).append(finDeLinea);
  // The end of the first section of that name, before the blank lines that part it from the next.
  std::optional<std::size_t> lugar;
  bool dentro = false;
  bool hubo = false;
  Linea linea;
  for (Lineas lineas(texto_); lineas.Lee(linea);) {
    if (linea.clase == Clase::Seccion) {
      dentro = !hubo && SameText(linea.nombre, TrimView(seccion));
      hubo = hubo || dentro;
    }
    if (dentro && !linea.enBlanco) lugar = linea.siguiente;
  }
  const auto sinSalto = [this](std::size_t fin) {
    return fin > 0 && texto_[fin - 1] != u'\n' && texto_[fin - 1] != u'\r';
  };
  if (lugar.has_value()) {
    texto_.insert(*lugar, sinSalto(*lugar) ? finDeLinea + nueva : nueva);
    return;
  }
  AbreSeccion(seccion, finDeLinea);
  texto_ += nueva;
}

// Writes the line of a new section at the end, with a blank line before it.
void TextoIni::AbreSeccion(std::u16string_view seccion, std::u16string_view finDeLinea) {
  if (!texto_.empty()) {
    const bool enLinea = texto_.back() != u'\n' && texto_.back() != u'\r';
    if (enLinea) texto_ += finDeLinea;
    const UnicodeString enBlanco = UnicodeString(finDeLinea).append(finDeLinea);
    if (!texto_.ends_with(enBlanco)) texto_ += finDeLinea;
  }
  texto_.append(u"[").append(TrimView(seccion)).append(u"]").append(finDeLinea);
}

void TextoIni::AgregaSeccion(std::u16string_view seccion,
                             const std::vector<std::pair<UnicodeString, UnicodeString>>& claves) {
  for (const auto& [clave, valor] : claves) Valida(seccion, clave, valor);
  if (claves.empty()) return;
  const UnicodeString finDeLinea(FinDeLinea());
  AbreSeccion(seccion, finDeLinea);
  for (const auto& [clave, valor] : claves) {
    texto_.append(TrimView(clave)).append(u"=").append(valor).append(finDeLinea);
  }
}

void TextoIni::Borra(std::u16string_view seccion) {
  Valida(seccion, {}, {});
  UnicodeString queda;
  // What a section of that name holds is dropped up to its last key; what follows waits for that to be known.
  UnicodeString pendiente;
  bool dentro = false;
  Linea linea;
  for (Lineas lineas(texto_); lineas.Lee(linea);) {
    const std::u16string_view contenido =
        std::u16string_view(texto_).substr(linea.inicio, linea.siguiente - linea.inicio);
    if (linea.clase == Clase::Seccion) {
      queda.append(pendiente);
      pendiente.clear();
      dentro = SameText(linea.nombre, TrimView(seccion));
      if (dentro) continue;
    }
    if (!dentro) {
      queda.append(contenido);
    } else if (linea.clase == Clase::Clave) {
      pendiente.clear();
    } else if (!linea.enBlanco) {
      pendiente.append(contenido);
    }
  }
  texto_ = std::move(queda.append(pendiente));
}

std::u16string_view QuitaComillas(std::u16string_view valor) noexcept {
  valor = TrimView(valor);
  const bool pareja =
      valor.size() > 1 && valor.front() == valor.back() && (valor.front() == u'"' || valor.front() == u'\'');
  return pareja ? valor.substr(1, valor.size() - 2) : valor;
}

}  // namespace vel
