#include "tools/utilvel/cfdi/Elemento.h"

#include <algorithm>
#include <array>
#include <pugixml.hpp>

#include "tools/utilvel/cfdi/Comprobante.h"
#include "tools/utilvel/cfdi/ExploraXml.h"

namespace utilvel::cfdi {

void Rechaza(const Origen& origen, const pugi::xml_node& nodo, const std::string& razon) {
  Rechaza(origen.bytes, static_cast<std::size_t>(std::max<std::ptrdiff_t>(nodo.offset_debug(), 0)), razon);
}

void ExigeAtributosDistintos(const Origen& origen, const pugi::xml_node& nodo) {
  std::array<std::string_view, kMaxAtributos> nombres;
  std::size_t cuantos = 0;
  for (const pugi::xml_attribute& atributo : nodo.attributes()) {
    const std::string_view nombre = atributo.name();
    const auto fin = nombres.begin() + static_cast<std::ptrdiff_t>(cuantos);
    if (std::find(nombres.begin(), fin, nombre) != fin) {
      Rechaza(origen, nodo, std::string(nodo.name()) + " repite el atributo " + std::string(nombre));
    }
    if (cuantos == kMaxAtributos) {
      Rechaza(origen, nodo,
              std::string(nodo.name()) + " tiene más de " + std::to_string(kMaxAtributos) + " atributos");
    }
    nombres[cuantos++] = nombre;
  }
}

std::string Atributo(const pugi::xml_node& nodo, const char* nombre) {
  return nodo.attribute(nombre).value();
}

std::optional<TMontoFiscal> Monto(const Origen& origen, const pugi::xml_node& nodo, const char* nombre,
                                  int decimales) {
  const pugi::xml_attribute atributo = nodo.attribute(nombre);
  if (!atributo) return {};
  const Lectura lectura = LeeMonto(atributo.value(), decimales);
  if (lectura.falla != nullptr) {
    Rechaza(origen, nodo,
            std::string(nodo.name()) + " " + nombre + "=\"" + std::string(atributo.value()).substr(0, 40) +
                "\" " + lectura.falla);
  }
  return lectura.monto;
}

std::string ExigeAtributo(const Origen& origen, const pugi::xml_node& nodo, const char* nombre) {
  std::string texto = Atributo(nodo, nombre);
  if (texto.empty()) Rechaza(origen, nodo, "a " + std::string(nodo.name()) + " le falta " + nombre);
  return texto;
}

TMontoFiscal ExigeMonto(const Origen& origen, const pugi::xml_node& nodo, const char* nombre) {
  const std::optional<TMontoFiscal> monto = Monto(origen, nodo, nombre);
  if (!monto) Rechaza(origen, nodo, "a " + std::string(nodo.name()) + " le falta " + nombre);
  return *monto;
}

std::string_view Espacio(const pugi::xml_node& nodo) {
  const std::string_view nombre = nodo.name();
  const std::size_t corte = nombre.find(':');
  const std::string atributo =
      corte == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(nombre.substr(0, corte));
  for (pugi::xml_node n = nodo; n; n = n.parent()) {
    if (const pugi::xml_attribute a = n.attribute(atributo.c_str())) return a.value();
  }
  return {};
}

std::string_view NombreLocal(const pugi::xml_node& nodo) {
  const std::string_view nombre = nodo.name();
  const std::size_t corte = nombre.find(':');
  return corte == std::string_view::npos ? nombre : nombre.substr(corte + 1);
}

}  // namespace utilvel::cfdi
