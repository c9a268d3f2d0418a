#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "framework/Texto.h"

// The settings of the user's file as a table: key, section, form and default. A new setting is a row here and
// its functions in the public header, of one line each.
namespace vel {

/// The company's section, "Empresa" and its number, or the system's. The latter is spelled in two ways: one
/// section all the same, which a new file gets as its first setting spells it.
enum class Seccion : std::uint8_t { Empresa, Sistema, SISTEMA };

/// How a switch is written. "true" in any case is on, anything else off; "-1" is read as the framework reads
/// a boolean, and raises EConvertError for what is none.
enum class Interruptor : std::uint8_t { TrueFalse, MenosUnoCero };

struct Ajuste {
  std::u16string_view clave;
  Seccion seccion;
};

struct AjusteTexto : Ajuste {
  /// What an empty text stands for.
  std::u16string_view omision = {};
};

struct AjusteEntero : Ajuste {
  /// What a text that is no integer stands for, and 0; without it such a text raises EConvertError.
  std::optional<int> omision = {};
};

struct AjusteInterruptor : Ajuste {
  Interruptor forma;
};

namespace ajustes {

inline constexpr AjusteTexto kDriver{{u"Driver", Seccion::Empresa}, u"PARADOX"};
inline constexpr AjusteTexto kRutaDatos{{u"RutaDatos", Seccion::Empresa}};
inline constexpr AjusteTexto kRutaDatosLocal{{u"RutaDatosLocal", Seccion::Empresa}};
inline constexpr AjusteInterruptor kMultimoneda{{u"Multimoneda", Seccion::Empresa}, Interruptor::TrueFalse};
inline constexpr AjusteInterruptor kCxCContraDocto{{u"CxCContraDocto", Seccion::Empresa},
                                                   Interruptor::TrueFalse};
inline constexpr AjusteInterruptor kMultialmacen{{u"Multialmacen", Seccion::Empresa}, Interruptor::TrueFalse};
inline constexpr AjusteEntero kAlmacen{{u"AlmacenPredeterminado", Seccion::Empresa}};

inline constexpr AjusteTexto kAcceso{{u"Acceso", Seccion::Sistema}};
inline constexpr AjusteEntero kTamPaquete{{u"tamPaquete", Seccion::SISTEMA}, 50};
inline constexpr AjusteInterruptor kRegsXDemanda{{u"RegsXDemanda", Seccion::SISTEMA},
                                                 Interruptor::MenosUnoCero};
inline constexpr AjusteInterruptor kValEnLinea{{u"ValEnLinea", Seccion::Sistema}, Interruptor::TrueFalse};
inline constexpr AjusteInterruptor kModificaAlmacen{{u"ModificaAlmacen", Seccion::Sistema},
                                                    Interruptor::TrueFalse};
inline constexpr AjusteTexto kVersionVel{{u"VersionVel", Seccion::Sistema}, u"9.00"};

inline constexpr AjusteTexto kRutaServidorRemoto{{u"RutaServidorRemoto", Seccion::Sistema}};
inline constexpr AjusteTexto kNombreServicio{{u"NombreServicio", Seccion::Sistema}, u"SrvVEL90.dll/soap"};
inline constexpr AjusteTexto kNombreConexion{{u"NombreConexionRemoto", Seccion::Sistema}};
inline constexpr AjusteTexto kUsuarioReciente{{u"UsrRecent", Seccion::Sistema}, u"Administrador"};
/// Identifiers of web sessions stand under keys that the callers name.
constexpr AjusteTexto IdSesion(std::u16string_view clave) { return {{clave, Seccion::Sistema}}; }

}  // namespace ajustes

/// The value in DameArchivoConfig; `numEmp` is the company of a company's setting.
UnicodeString Lee(const AjusteTexto& ajuste, int numEmp = 0);
int Lee(const AjusteEntero& ajuste, int numEmp = 0);
bool Lee(const AjusteInterruptor& ajuste, int numEmp = 0);

void Escribe(const AjusteTexto& ajuste, std::u16string_view valor, int numEmp = 0);
void Escribe(const AjusteEntero& ajuste, int valor, int numEmp = 0);
void Escribe(const AjusteInterruptor& ajuste, bool valor, int numEmp = 0);
// A truth value and an integer would pass for each other, the company's number and the value for one swapped.
void Escribe(const AjusteEntero& ajuste, bool valor, int numEmp = 0) = delete;
void Escribe(const AjusteInterruptor& ajuste, int valor, int numEmp = 0) = delete;

}  // namespace vel
