#include "framework/TextoIni.h"

#include <algorithm>

#include "framework/Excepciones.h"
#include "framework/LineasIni.h"

namespace vel {
namespace {

using ini::Clase;
using Linea = ini::Linea<char16_t>;
using Lineas = ini::Lineas<char16_t>;

std::optional<Linea> Busca(std::u16string_view texto, std::u16string_view seccion,
                           std::u16string_view clave) {
  return ini::Busca(texto, TrimView(seccion), TrimView(clave), SameText);
}

bool TieneSalto(std::u16string_view texto) noexcept {
  return texto.find_first_of(std::u16string_view(u"\r\n\0", 3)) != std::u16string_view::npos;
}

}  // namespace

void TextoIni::Valida(std::u16string_view seccion, std::u16string_view clave, std::u16string_view valor) {
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
    const std::u16string_view actual = ini::LugarDelValor(*linea, valor);
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
  texto_ += LineaDeSeccion(seccion, finDeLinea).append(nueva);
}

// The line of a new section as it is added at the end, with a blank line before it.
UnicodeString TextoIni::LineaDeSeccion(std::u16string_view seccion, std::u16string_view finDeLinea) const {
  UnicodeString linea;
  if (!texto_.empty()) {
    if (texto_.back() != u'\n' && texto_.back() != u'\r') linea += finDeLinea;
    const UnicodeString enBlanco = UnicodeString(finDeLinea).append(finDeLinea);
    if (!linea.empty() || !texto_.ends_with(enBlanco)) linea += finDeLinea;
  }
  return linea.append(u"[").append(TrimView(seccion)).append(u"]").append(finDeLinea);
}

void TextoIni::AgregaSeccion(std::u16string_view seccion,
                             const std::vector<std::pair<UnicodeString, UnicodeString>>& claves) {
  for (const auto& [clave, valor] : claves) Valida(seccion, clave, valor);
  if (claves.empty()) return;
  const UnicodeString finDeLinea(FinDeLinea());
  UnicodeString nuevas = LineaDeSeccion(seccion, finDeLinea);
  for (const auto& [clave, valor] : claves) {
    nuevas.append(TrimView(clave)).append(u"=").append(valor).append(finDeLinea);
  }
  texto_ += nuevas;
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
