#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "tools/utilvel/cfdi/Comprobante.h"
#include "tools/utilvel/cfdi/Montos.h"

namespace pugi {
class xml_node;
}

namespace utilvel::cfdi {

/// The file that elements come from, and the prefix ("cfdi:", or empty) of the invoice's own elements.
struct Origen {
  std::string_view bytes;
  std::string prefijo;
};

/// Raises Rechazo at an element.
[[noreturn]] void Rechaza(const Origen& origen, const pugi::xml_node& nodo, const std::string& razon);

/// The attributes of an element, read in one pass. Lives no longer than the document.
class Atributos {
 public:
  /// Raises Rechazo when one is repeated, which the parser lets pass, or there are too many.
  Atributos(const Origen& origen, const pugi::xml_node& nodo);

  /// An attribute's text; empty when it is missing.
  std::string_view Texto(std::string_view nombre) const noexcept;
  /// A figure; without a value when the attribute is missing. Raises Rechazo for one that is no number.
  std::optional<TMontoFiscal> Monto(std::string_view nombre, int decimales = kDecimales) const;
  /// These raise Rechazo for a missing attribute too.
  std::string_view ExigeTexto(std::string_view nombre) const;
  TMontoFiscal ExigeMonto(std::string_view nombre) const;

 private:
  struct Par {
    const char* nombre;
    std::size_t largo;
    const char* valor;
    std::string_view Nombre() const noexcept { return {nombre, largo}; }
  };
  const Par* Busca(std::string_view nombre) const noexcept;
  [[noreturn]] void Falta(std::string_view nombre) const;

  const Origen& origen_;
  const pugi::xml_node& nodo_;
  std::size_t cuantos_ = 0;
  // Only the first ones are set.
  std::array<Par, kMaxAtributos> pares_;
};

/// The namespace that an element's prefix stands for there; empty without one.
std::string_view Espacio(const pugi::xml_node& nodo);
/// The element's name without its prefix.
std::string_view NombreLocal(const pugi::xml_node& nodo);

}  // namespace utilvel::cfdi
