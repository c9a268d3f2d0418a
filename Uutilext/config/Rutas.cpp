#include "Uutilext/config/Rutas.h"

#include <iterator>

#include "Uutilext/config/Ajustes.h"
#include "Uutilext/process/Proceso.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Archivos.h"
#include "platform/Registro.h"
#include "version/Version.h"

namespace vel {
namespace {

constexpr std::u16string_view kValorComun = u"TAVEXComunDir";

/// Where a folder stands: in the engine folder, in the company's, or in the engine folder with the company's
/// number at its end.
enum class Base : std::uint8_t { Motor, Empresa, MotorConNumero };

struct Carpeta {
  std::u16string_view ruta;
  Base base;
  bool seCrea;
};

// By kind.
constexpr Carpeta kCarpetas[] = {
    {u"", Base::Empresa, true},
    {u"", Base::Empresa, true},
    {u"Consultas\\", Base::Empresa, true},
    {u"Consultas personalizadas\\", Base::Empresa, true},
    {u"Estadisticas\\", Base::Empresa, true},
    {u"AyudasF2\\", Base::Empresa, true},
    {u"Reportes\\", Base::Empresa, true},
    {u"Datos\\", Base::Empresa, false},
    {u"Exportacion\\", Base::Empresa, true},
    {u"Interfaz Kolo\\", Base::Empresa, true},
    {u"Interfaz Caudal\\", Base::Empresa, true},
    {u"Imagenes\\", Base::Empresa, true},
    {u"Documentos modelo\\", Base::Empresa, true},
    {u"Reportes SAT\\", Base::Empresa, true},
    {u"Plantillas\\", Base::Motor, false},
    {u"Plantillas\\Reportes\\", Base::Motor, false},
    {u"Plantillas\\Estadisticas\\", Base::Motor, false},
    {u"Plantillas\\Consultas personalizadas\\", Base::Motor, false},
    {u"Respaldos\\", Base::Motor, true},
    {u"Respaldos\\Empresa", Base::MotorConNumero, true},
    {u"Plantillas\\Comprobantes\\", Base::Motor, true},
    {u"Comprobantes\\", Base::Empresa, true},
    {u"LoNuevo\\", Base::Motor, true},
    {u"Comprobantes\\Plantillas\\", Base::Empresa, true},
    {u"Analisis datos\\", Base::Empresa, true},
};

UnicodeString CarpetaEmpresa(int numEmp) {
  return DameRutaVELNG() + u"Empresa" + DameNumEmpFormat(numEmp) + u"\\";
}

UnicodeString Ruta(const Carpeta& carpeta, int numEmp) {
  switch (carpeta.base) {
    case Base::Motor:
      return DameRutaVELNG().append(carpeta.ruta);
    case Base::Empresa:
      return CarpetaEmpresa(numEmp).append(carpeta.ruta);
    case Base::MotorConNumero:
      break;
  }
  return DameRutaVELNG().append(carpeta.ruta).append(DameNumEmpFormat(numEmp)).append(u"\\");
}

}  // namespace

UnicodeString DameRutaDll() { return CarpetaBiblioteca(); }

UnicodeString DameDirectorioArchComun() {
  FallaArchivo falla;
  const ValorRegistro valor = LeeRegistro(u"Software\\Tavex", kValorComun, falla);
  // Without its folder files would go astray, below wherever the process stands.
  ExigeSinFalla(falla, u"No se puede leer del registro el valor", kValorComun);
  if (!valor.claveExiste) return {};
  UnicodeString carpeta = valor.texto.value_or(u"c:\\sistemas\\tavex\\comunes");
  if (!carpeta.empty() && carpeta.back() != u'\\') carpeta += u'\\';
  return carpeta;
}

void EscribeDirectorioArchComun(std::u16string_view carpeta) {
  const FallaArchivo falla = EscribeRegistro(u"SOFTWARE\\TAVEX\\", kValorComun, carpeta);
  if (falla.Hubo()) throw Exception(u"No se puede escribir en el registro: " + Descripcion(falla));
}

UnicodeString DameValorRegistro(std::u16string_view nombre) {
  return LeeRegistro(u"SOFTWARE\\WOW6432Node\\TAVEX\\Tavex-VEL 9.0\\", nombre)
      .texto.value_or(UnicodeString());
}

UnicodeString DameDirArchComunLibrerias() { return DameDirectorioArchComun(); }

UnicodeString DameRutaVELNG() {
  return DameDirectorioArchComun() + u"Sistemas Tavex\\" + DameVerVEL() + u"\\";
}

UnicodeString DameRutaDatos() { return DameRutaVELNG() + u"Datos\\"; }

UnicodeString DameDirectorioReportes() { return DameRutaVELNG() + u"Datos\\"; }

UnicodeString DameRutaArchEmpresas() { return DameRutaVELNG() + u"Empresas.xml"; }

UnicodeString DameRutaPlantillasCorreo() { return DameRutaVELNG() + u"Plantillas\\Correo\\"; }

UnicodeString DameDirDatosLocal(int numEmp) {
  const UnicodeString carpeta = Lee(ajustes::kRutaDatosLocal, numEmp);
  return carpeta.empty() ? DameRutaVELNG() + u"Ejemplos" : carpeta;
}

void EscribeDirDatosLocal(int numEmp, std::u16string_view carpeta) {
  Escribe(ajustes::kRutaDatosLocal, carpeta, numEmp);
}

UnicodeString DameNumEmpFormat(int numEmp) {
  return UnicodeString(numEmp >= 1 && numEmp <= 9 ? u"0" : u"") + IntToStr(numEmp);
}

UnicodeString DameRutaDatosEmpresa(int numEmp, ENUM_RUTA ruta) {
  const auto indice = static_cast<std::size_t>(ruta);
  if (indice >= std::size(kCarpetas)) return {};
  UnicodeString carpeta = Ruta(kCarpetas[indice], numEmp);
  // One that cannot be made shows when something is put into it.
  if (kCarpetas[indice].seCrea && !ExisteCarpeta(carpeta)) CreaCarpeta(carpeta);
  return carpeta;
}

UnicodeString DameRutaRespaldosEmpresa(int numEmp) {
  return DameRutaVELNG() + u"Respaldos\\Empresa" + DameNumEmpFormat(numEmp) + u"\\";
}

UnicodeString DameRutaCertificados(int numEmp) {
  // "Cerficados": existing installations use this spelling.
  return DameDirectorioArchComun() + u"Comprobantes\\VEL\\Empresa " + DameNumEmpFormat(numEmp) +
         u"\\Cerficados\\";
}

UnicodeString DameRutaAddendas(int numEmp) { return CarpetaEmpresa(numEmp) + u"Comprobantes\\Addendas\\"; }

UnicodeString DameRutaNamespaces(int numEmp) {
  return CarpetaEmpresa(numEmp) + u"Comprobantes\\Namespaces\\";
}

}  // namespace vel
