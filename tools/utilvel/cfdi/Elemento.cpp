#include "tools/utilvel/cfdi/Elemento.h"

#include <algorithm>
#include <cstdint>
#include <pugixml.hpp>

#include "tools/utilvel/cfdi/ExploraXml.h"

namespace utilvel::cfdi {

void Rechaza(const Origen& origen, const pugi::xml_node& nodo, const std::string& razon) {
  Rechaza(origen.bytes, static_cast<std::size_t>(std::max<std::ptrdiff_t>(nodo.offset_debug(), 0)), razon);
}

Atributos::Atributos(const Origen& origen, const pugi::xml_node& nodo) : origen_(origen), nodo_(nodo) {
  // Most names differ in length, first or last letter, which one look at a mask tells.
  std::uint64_t vistos = 0;
  for (pugi::xml_attribute a = nodo.first_attribute(); a; a = a.next_attribute()) {
    const std::string_view nombre = a.name();
    const auto letra = [nombre](std::size_t i) { return std::size_t{static_cast<unsigned char>(nombre[i])}; };
    const std::size_t senas =
        nombre.empty() ? 0 : nombre.size() * 5 + letra(0) + letra(nombre.size() - 1) * 7;
    const std::uint64_t marca = std::uint64_t{1} << (senas % 64);
    if ((vistos & marca) != 0 && Busca(nombre) != nullptr)
      Rechaza(origen, nodo, std::string(nodo.name()) + " repite el atributo " + std::string(nombre));
    vistos |= marca;
    if (cuantos_ == kMaxAtributos) {
      Rechaza(origen, nodo,
              std::string(nodo.name()) + " tiene más de " + std::to_string(kMaxAtributos) + " atributos");
    }
    pares_[cuantos_++] = {nombre.data(), nombre.size(), a.value()};
  }
}

const Atributos::Par* Atributos::Busca(std::string_view nombre) const noexcept {
  const auto fin = pares_.begin() + static_cast<std::ptrdiff_t>(cuantos_);
  const auto par = std::find_if(pares_.begin(), fin, [nombre](const Par& p) { return p.Nombre() == nombre; });
  return par == fin ? nullptr : &*par;
}

std::string_view Atributos::Texto(std::string_view nombre) const noexcept {
  const Par* const par = Busca(nombre);
  return par == nullptr ? std::string_view() : par->valor;
}

std::optional<TMontoFiscal> Atributos::Monto(std::string_view nombre, int decimales) const {
  const Par* const par = Busca(nombre);
  if (par == nullptr) return {};
  const Lectura lectura = LeeMonto(par->valor, decimales);
  if (lectura.falla != nullptr) {
    Rechaza(origen_, nodo_,
            std::string(nodo_.name()) + " " + std::string(nombre) + "=\"" +
                std::string(par->valor).substr(0, 40) + "\" " + lectura.falla);
  }
  return lectura.monto;
}

void Atributos::Falta(std::string_view nombre) const {
  Rechaza(origen_, nodo_, "a " + std::string(nodo_.name()) + " le falta " + std::string(nombre));
}

std::string_view Atributos::ExigeTexto(std::string_view nombre) const {
  const std::string_view texto = Texto(nombre);
  if (texto.empty()) Falta(nombre);
  return texto;
}

TMontoFiscal Atributos::ExigeMonto(std::string_view nombre) const {
  const std::optional<TMontoFiscal> monto = Monto(nombre);
  if (!monto) Falta(nombre);
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
