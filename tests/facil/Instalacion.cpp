// A machine is set up whole, once, and goes on where it stopped.

#include <gtest/gtest.h>
#include <map>

#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Rutas.h"
#include "facil/facil.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"
#include "platform/Registro.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"

namespace vel::facil {
namespace {

using pruebas::MensajeDe;

constexpr const char* kAjustes = "casa/.local/share/Tavex/VEL9.00/VELWIN90.INI";
constexpr const char* kCatalogo = "C/Sistemas Tavex/VEL9.00/Empresas.xml";

/// Every file and folder, with the bytes of the files.
std::map<std::string, std::string> Arbol(const pruebas::CarpetaTemporal& c) {
  std::map<std::string, std::string> arbol;
  for (const auto& entrada : std::filesystem::recursive_directory_iterator(c.Ruta())) {
    const std::string nombre = UTF8Encode(entrada.path().lexically_relative(c.Ruta()).generic_u16string());
    arbol[nombre] = entrada.is_regular_file() ? c.Lee(nombre) : "carpeta";
  }
  return arbol;
}

TEST(Instalacion, MakesWhatTheGettersLeadTo) {
  const pruebas::CarpetaTemporal c;
  EscribeDirectorioArchComun(u"");
  const InformeInstalacion informe = Instala(c.Archivo("C/"));
  EXPECT_EQ(informe.carpetaComun, c.Archivo("C") + u"\\");
  EXPECT_EQ(informe.carpetaComun, DameDirectorioArchComun());
  EXPECT_EQ(informe.archivoAjustes, DameArchivoConfig());
  for (const ObraInstalacion& obra : informe.obras) EXPECT_TRUE(obra.nueva) << UTF8Encode(obra.nombre);
  const auto arbol = Arbol(c);
  EXPECT_EQ(Instala(UTF8Encode(c.Archivo("C"))).Lineas(),
            StringReplace(informe.Lineas(), u"Hecho: ", u"Ya estaba: "));
  EXPECT_EQ(Arbol(c), arbol) << "the second time nothing changes";

  for (const UnicodeString& carpeta :
       {DameRutaVELNG(), DameRutaDatos(), DameRutaPlantillasCorreo(), DameDirDatosLocal(1)}) {
    EXPECT_TRUE(ExisteCarpeta(carpeta)) << UTF8Encode(carpeta);
  }
  for (int clase = 0; clase <= 24; ++clase) DameRutaDatosEmpresa(7, static_cast<ENUM_RUTA>(clase));
  for (const auto& [nombre, contenido] : Arbol(c)) {
    const std::string motor = "C/Sistemas Tavex/VEL9.00/";
    EXPECT_TRUE(arbol.contains(nombre) || nombre.starts_with(motor + "Empresa07") ||
                nombre == motor + "Respaldos/Empresa07")
        << nombre << " is a getter's and should be there";
  }
  EXPECT_TRUE(ExisteCarpeta(DameRutaDatosEmpresa(0, ENUM_RUTA{17})));
  EXPECT_EQ(c.Lee(kAjustes),
            "[Sistema]\r\nAcceso=LOCAL\r\ntamPaquete=50\r\nRegsXDemanda=0\r\nValEnLinea=false\r\n"
            "ModificaAlmacen=false\r\n");
  EXPECT_FALSE(DameRegsXDemanda());
  EXPECT_TRUE(ListaEmpresas().empty());
}

TEST(Instalacion, KeepsWhatThereIs) {
  const pruebas::CarpetaTemporal c;
  Instala(c.Archivo("C"));
  EscribeTamPaquete(7);
  AgregaEmpresa({.numero = 1, .nombre = u"Uno"});
  const auto arbol = Arbol(c);
  EXPECT_FALSE(Instala(c.Archivo("C")).HuboCambios());
  EXPECT_EQ(Arbol(c), arbol);

  EXPECT_EQ(MensajeDe([&] { Instala(c.Archivo("D")); }),
            "La carpeta común de esta máquina ya es \"" + c.Utf8("C") +
                "\\\"; para nombrar otra hay que pedir el cambio.");
  for (const char16_t* mala : {u"", u"C", u"C:", u"C:datos", u"datos\\comunes", u"/srv/a\nb"})
    EXPECT_THROW(Instala(mala), EInvalidOperation) << UTF8Encode(mala);
  EXPECT_EQ(Arbol(c), arbol);
  Instala(c.Archivo("D"), ENUM_OTRA_COMUN::SE_CAMBIA);
  EXPECT_TRUE(ListaEmpresas().empty()) << "the other folder's";
  EXPECT_EQ(DameTamPaquete(), 7) << "the user's, wherever the companies are";
  EXPECT_TRUE(Instala(c.Archivo("C"), ENUM_OTRA_COMUN::SE_CAMBIA).HuboCambios());
  EXPECT_EQ(ListaEmpresas().size(), 1U);

  c.Escribe(kCatalogo, "<a");
  EXPECT_THROW(Instala(c.Archivo("C")), EDatabaseError);
  EXPECT_EQ(c.Lee(kCatalogo), "<a");
}

TEST(Instalacion, IsFinishedByASecondCall) {
  struct Obstaculo {
    const char* archivo;
    std::u16string_view mensaje;
  };
  // A file in the place of a folder, and a folder in the place of a file.
  for (const auto& [nombre, mensaje] : {Obstaculo{"C", u"No se puede crear la carpeta"},
                                        {"C/Sistemas Tavex/VEL9.00/LoNuevo", u"LoNuevo"},
                                        {"C/Comprobantes", u"Comprobantes"},
                                        {"casa/.local/share/Tavex", u"VELWIN90.INI"},
                                        {"C/Sistemas Tavex/VEL9.00/Empresas.xml/x", u"Empresas.xml"}}) {
    const pruebas::CarpetaTemporal c;
    c.Escribe(nombre, "");
    const std::string texto = MensajeDe([&] { Instala(c.Archivo("C")); });
    EXPECT_NE(texto.find(UTF8Encode(mensaje)), std::string::npos) << nombre << ": " << texto;
    EXPECT_TRUE(std::string_view(nombre) != "C" ||
                !LeeRegistro(u"Software\\Tavex", u"TAVEXComunDir").claveExiste)
        << "it would lead nowhere";
    const std::string primera = std::string(nombre).ends_with("/x")
                                    ? std::string(nombre).substr(0, std::string(nombre).size() - 2)
                                    : nombre;
    std::filesystem::remove_all(c.Ruta(primera));
    Instala(c.Archivo("C"));
    EXPECT_FALSE(Instala(c.Archivo("C")).HuboCambios()) << nombre;
  }
}

}  // namespace
}  // namespace vel::facil
