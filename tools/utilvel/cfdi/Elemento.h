#pragma once

#include <optional>
#include <string>
#include <string_view>

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

/// Raises Rechazo when an element repeats an attribute, which the parser lets pass, or has too many.
void ExigeAtributosDistintos(const Origen& origen, const pugi::xml_node& nodo);

/// An attribute's text; empty when it is missing.
std::string Atributo(const pugi::xml_node& nodo, const char* nombre);
/// A figure; without a value when the attribute is missing. Raises Rechazo for one that is no number.
std::optional<TMontoFiscal> Monto(const Origen& origen, const pugi::xml_node& nodo, const char* nombre,
                                  int decimales = kDecimales);
/// These raise Rechazo for a missing attribute too.
std::string ExigeAtributo(const Origen& origen, const pugi::xml_node& nodo, const char* nombre);
TMontoFiscal ExigeMonto(const Origen& origen, const pugi::xml_node& nodo, const char* nombre);

/// The namespace that an element's prefix stands for there; empty without one.
std::string_view Espacio(const pugi::xml_node& nodo);
/// The element's name without its prefix.
std::string_view NombreLocal(const pugi::xml_node& nodo);

}  // namespace utilvel::cfdi
