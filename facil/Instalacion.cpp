#include "facil/Instalacion.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Rutas.h"
#include "facil/Catalogo.h"
#include "framework/Excepciones.h"
#include "framework/TextoIni.h"
#include "platform/Archivos.h"
#include "platform/Registro.h"
#include "platform/Rutas.h"
#include "platform/TextoArchivo.h"

namespace vel::facil {
namespace {

// In the engine folder, parents first.
constexpr std::u16string_view kCarpetasMotor[] = {
    u"",
    u"Datos\\",
    u"Ejemplos\\",
    u"LoNuevo\\",
    u"Plantillas\\",
    u"Plantillas\\Comprobantes\\",
    u"Plantillas\\Consultas personalizadas\\",
    u"Plantillas\\Correo\\",
    u"Plantillas\\Estadisticas\\",
    u"Plantillas\\Reportes\\",
    u"Respaldos\\",
};
constexpr std::u16string_view kCarpetaComprobantes = u"Comprobantes\\VEL\\";

struct AjusteInicial {
  std::u16string_view clave;
  std::u16string_view valor;
};

// What reading gives for a setting that is missing; RegsXDemanda alone would not be read without a value.
constexpr std::u16string_view kSistema = u"Sistema";
constexpr AjusteInicial kAjustes[] = {
    {u"Acceso", u"LOCAL"},     {u"tamPaquete", u"50"},         {u"RegsXDemanda", u"0"},
    {u"ValEnLinea", u"false"}, {u"ModificaAlmacen", u"false"},
};

constexpr std::u16string_view kRemedio =
    u"\nHágalo un administrador o, en Linux, nombre un archivo propio en la variable UTILVEL_REGISTRO.";

bool EsDiagonal(char16_t c) noexcept { return c == u'\\' || c == u'/'; }

/// The folder without separators at its end, but for those of a root.
std::u16string_view SinDiagonalFinal(std::u16string_view carpeta) noexcept {
  while (carpeta.size() > 1 && EsDiagonal(carpeta.back()) && carpeta[carpeta.size() - 2] != u':')
    carpeta.remove_suffix(1);
  return carpeta;
}

void ExigeRutaCompleta(std::u16string_view carpeta) {
  const bool unidad = carpeta.size() >= 3 && FoldCase(carpeta[0]) >= u'a' && FoldCase(carpeta[0]) <= u'z' &&
                      carpeta[1] == u':' && EsDiagonal(carpeta[2]);
  if (!unidad && (carpeta.empty() || !EsDiagonal(carpeta.front()))) {
    throw EInvalidOperation(
        UnicodeString(u"La carpeta común debe ser una ruta completa: \"").append(carpeta).append(u"\"."));
  }
  if (std::any_of(carpeta.begin(), carpeta.end(), [](char16_t c) { return c < u' '; })) {
    throw EInvalidOperation(u"La carpeta común no puede tener caracteres de control.");
  }
}

/// Does the work piece by piece and notes what there was to do.
class Obra {
 public:
  explicit Obra(InformeInstalacion& informe) : informe_(informe) {}

  void Carpeta(const UnicodeString& carpeta) {
    const bool falta = !ExisteCarpeta(carpeta);
    if (falta) ExigeSinFalla(CreaCarpeta(carpeta), u"No se puede crear la carpeta", carpeta);
    Anota(ENUM_OBRA::CARPETA, carpeta, falta);
  }

  void Registro(std::u16string_view carpeta, bool falta) {
    if (falta) {
      try {
        EscribeDirectorioArchComun(carpeta);
      } catch (const Exception& e) {
        throw Exception(UnicodeString(e.Message()).append(kRemedio));
      }
    }
    Anota(ENUM_OBRA::REGISTRO, u"TAVEXComunDir=" + UnicodeString(carpeta), falta);
  }

  // The file is read once, and a fault told: settings that could not be read for a moment would be written
  // over.
  void Ajustes() {
    const UnicodeString archivo = DameArchivoConfig();
    std::string bytes;
    const FallaArchivo falla = LeeArchivo(archivo, bytes);
    if (falla.clase != ClaseFalla::NoExiste) ExigeSinFalla(falla, u"No se puede leer el archivo", archivo);
    const TextoIni ini(DecodificaArchivo(bytes).texto);
    for (const AjusteInicial& ajuste : kAjustes) {
      UnicodeString valor(ini.Valor(kSistema, ajuste.clave).value_or(std::u16string_view()));
      const bool falta = valor.empty();
      if (falta) EscribeValor(kSistema, ajuste.clave, valor = ajuste.valor);
      Anota(
          ENUM_OBRA::AJUSTE,
          UnicodeString(u"[").append(kSistema).append(u"] ").append(ajuste.clave).append(u"=").append(valor),
          falta);
    }
  }

  void Catalogo() {
    const bool nuevo = CreaCatalogo();
    Anota(ENUM_OBRA::CATALOGO, DameRutaArchEmpresas(), nuevo);
  }

 private:
  void Anota(ENUM_OBRA clase, const UnicodeString& nombre, bool nueva) {
    informe_.obras.push_back({.clase = clase, .nombre = nombre, .nueva = nueva});
  }

  InformeInstalacion& informe_;
};

/// Whether the registry names a folder, and whether it is this one. What DameDirectorioArchComun gives for a
/// key without a value is nobody's choice.
enum class Nombrada : std::uint8_t { Ninguna, Esta, Otra };

Nombrada LaDelRegistro(std::u16string_view carpeta) {
  FallaArchivo falla;
  const ValorRegistro valor = LeeRegistro(u"Software\\Tavex", u"TAVEXComunDir", falla);
  // A folder that is named must not give way because the registry could not be read for a moment.
  if (falla.Hubo()) {
    throw Exception(
        UnicodeString(u"No se puede leer el registro: ").append(Descripcion(falla)).append(kRemedio));
  }
  if (!valor.texto.has_value() || valor.texto->empty()) return Nombrada::Ninguna;
  return RutaNativa(SinDiagonalFinal(*valor.texto)) == RutaNativa(carpeta) ? Nombrada::Esta : Nombrada::Otra;
}

}  // namespace

bool InformeInstalacion::HuboCambios() const noexcept {
  return std::any_of(obras.begin(), obras.end(), [](const ObraInstalacion& obra) { return obra.nueva; });
}

UnicodeString InformeInstalacion::Lineas() const {
  UnicodeString lineas;
  for (const ObraInstalacion& obra : obras)
    lineas.append(obra.nueva ? u"Hecho: " : u"Ya estaba: ").append(obra.nombre).append(u"\n");
  return lineas;
}

InformeInstalacion Instala(const Texto& carpetaComun, ENUM_OTRA_COMUN otra) {
  const std::u16string_view carpeta = SinDiagonalFinal(carpetaComun);
  ExigeRutaCompleta(carpeta);
  const Nombrada nombrada = LaDelRegistro(carpeta);
  if (nombrada == Nombrada::Otra && otra != ENUM_OTRA_COMUN::SE_CAMBIA) {
    throw EInvalidOperation(u"La carpeta común de esta máquina ya es \"" + DameDirectorioArchComun() +
                            u"\"; para nombrar otra hay que pedir el cambio.");
  }
  InformeInstalacion informe;
  Obra obra(informe);
  // The folder before its name: where it cannot be made the registry leads nobody to it.
  obra.Carpeta(UnicodeString(carpeta));
  obra.Registro(carpeta, nombrada != Nombrada::Esta);
  informe.carpetaComun = DameDirectorioArchComun();
  informe.carpetaMotor = DameRutaVELNG();
  informe.archivoEmpresas = DameRutaArchEmpresas();
  for (const std::u16string_view nombre : kCarpetasMotor)
    obra.Carpeta(UnicodeString(informe.carpetaMotor).append(nombre));
  obra.Carpeta(UnicodeString(informe.carpetaComun).append(kCarpetaComprobantes));
  informe.archivoAjustes = DameArchivoConfig();
  obra.Ajustes();
  obra.Catalogo();
  return informe;
}

}  // namespace vel::facil
