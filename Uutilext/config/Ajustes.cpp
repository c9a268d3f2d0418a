#include "Uutilext/config/Ajustes.h"

#include "Uutilext/config/Configuracion.h"
#include "Uutilext/diagnostics/Traza.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Caracteres.h"

// What its header forgets would be exported by nobody.
#pragma GCC diagnostic error "-Wmissing-declarations"

namespace vel {
namespace {

UnicodeString Nombre(Seccion seccion, int numEmp) {
  switch (seccion) {
    case Seccion::Empresa:
      return u"Empresa" + IntToStr(numEmp);
    case Seccion::Sistema:
      return u"Sistema";
    case Seccion::SISTEMA:
      break;
  }
  return u"SISTEMA";
}

// How a switch is read and written. They have no default: a form added to the enumeration does not compile
// before it is here, whatever else the build takes for an error.
#pragma GCC diagnostic error "-Wswitch"
bool ValorDe(Interruptor forma, std::u16string_view texto) {
  switch (forma) {
    case Interruptor::TrueFalse:
      return Minusculas(texto) == u"true";
    case Interruptor::MenosUnoCero:
      break;
  }
  return StrToBool(texto);
}

std::u16string_view TextoDe(Interruptor forma, bool valor) noexcept {
  switch (forma) {
    case Interruptor::TrueFalse:
      return valor ? u"true" : u"false";
    case Interruptor::MenosUnoCero:
      break;
  }
  return valor ? u"-1" : u"0";
}

UnicodeString LeeValor(const Ajuste& ajuste, int numEmp) {
  return DameValor(Nombre(ajuste.seccion, numEmp), ajuste.clave);
}

// The value converted; an error says where it stands, since whoever reads it did not name the place.
template <typename Conversion>
auto Convierte(const Ajuste& ajuste, int numEmp, const Conversion& conversion) {
  const UnicodeString valor = LeeValor(ajuste, numEmp);
  try {
    return conversion(valor);
  } catch (const EConvertError& e) {
    throw EConvertError(e.Message() + u" (archivo \"" + DameArchivoConfig() + u"\", sección '" +
                        Nombre(ajuste.seccion, numEmp) + u"', clave '" + UnicodeString(ajuste.clave) + u"')");
  }
}

void EscribeValorDe(const Ajuste& ajuste, std::u16string_view valor, int numEmp) {
  EscribeValor(Nombre(ajuste.seccion, numEmp), ajuste.clave, valor);
}

}  // namespace

UnicodeString Lee(const AjusteTexto& ajuste, int numEmp) {
  UnicodeString valor = LeeValor(ajuste, numEmp);
  return valor.empty() ? UnicodeString(ajuste.omision) : valor;
}

int Lee(const AjusteEntero& ajuste, int numEmp) {
  return Convierte(ajuste, numEmp, [&](std::u16string_view valor) {
    if (!ajuste.omision.has_value()) return StrToInt(valor);
    std::int32_t entero = 0;
    return TryStrToInt(valor, entero) && entero != 0 ? entero : *ajuste.omision;
  });
}

bool Lee(const AjusteInterruptor& ajuste, int numEmp) {
  return Convierte(ajuste, numEmp, [&](std::u16string_view valor) { return ValorDe(ajuste.forma, valor); });
}

void Escribe(const AjusteTexto& ajuste, std::u16string_view valor, int numEmp) {
  EscribeValorDe(ajuste, valor, numEmp);
}

void Escribe(const AjusteEntero& ajuste, int valor, int numEmp) {
  EscribeValorDe(ajuste, IntToStr(valor), numEmp);
}

void Escribe(const AjusteInterruptor& ajuste, bool valor, int numEmp) {
  EscribeValorDe(ajuste, TextoDe(ajuste.forma, valor), numEmp);
}

// The settings of Configuracion.h.

UnicodeString DameDriver(int numEmp) { return Lee(ajustes::kDriver, numEmp); }
void EscribeDriver(int numEmp, std::u16string_view driver) { Escribe(ajustes::kDriver, driver, numEmp); }

void EscribeDirDatos(int numEmp, std::u16string_view carpeta) {
  Escribe(ajustes::kRutaDatos, carpeta, numEmp);
}

bool DameTipoAcceso() {
  logInter(u"uUtil::DameTipoAcceso...Inicio");
  const UnicodeString tipo = Lee(ajustes::kAcceso);
  logInter(u"uUtil::DameTipoAcceso...strTipoAcceso " + tipo);
  const bool remoto = Mayusculas(tipo) == u"REMOTO";
  logInter(u"uUtil::DameTipoAcceso...Fin");
  return remoto;
}

void EscribeTipoAcceso(ENUM_TIP_ACCESO tipo) {
  switch (tipo) {
    case ENUM_TIP_ACCESO::LOCAL:
      return Escribe(ajustes::kAcceso, u"LOCAL");
    case ENUM_TIP_ACCESO::REMOTO:
      return Escribe(ajustes::kAcceso, u"REMOTO");
  }
  throw Exception(u"Tipo de Acceso Inválido");
}

int DameTamPaquete() { return Lee(ajustes::kTamPaquete); }
void EscribeTamPaquete(int registros) { Escribe(ajustes::kTamPaquete, registros); }

bool DameRegsXDemanda() { return Lee(ajustes::kRegsXDemanda); }
void EscribeRegsXDemanda(bool valor) { Escribe(ajustes::kRegsXDemanda, valor); }

bool DameMultimoneda(int numEmp) { return Lee(ajustes::kMultimoneda, numEmp); }
void EscribeMultimoneda(int numEmp, bool valor) { Escribe(ajustes::kMultimoneda, valor, numEmp); }

bool DameValEnLinea() { return Lee(ajustes::kValEnLinea); }
void EscribeValEnLinea(bool valor) { Escribe(ajustes::kValEnLinea, valor); }

bool DameModificaAlmacen() { return Lee(ajustes::kModificaAlmacen); }
void EscribeModificaAlmacen(bool valor) { Escribe(ajustes::kModificaAlmacen, valor); }

bool DameCxCContraDocto(int numEmp) { return Lee(ajustes::kCxCContraDocto, numEmp); }
void EscribeCxCContraDocto(int numEmp, bool valor) { Escribe(ajustes::kCxCContraDocto, valor, numEmp); }

bool DameMultiAlmacen(int numEmp) { return Lee(ajustes::kMultialmacen, numEmp); }
void EscribeMultiAlmacen(int numEmp, bool valor) { Escribe(ajustes::kMultialmacen, valor, numEmp); }

int DameAlmacenPredeter(int numEmp) { return Lee(ajustes::kAlmacen, numEmp); }
void EscribeAlmacenPredeter(int numEmp, int almacen) { Escribe(ajustes::kAlmacen, almacen, numEmp); }

}  // namespace vel
