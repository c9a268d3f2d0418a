#include "Uutilext/config/Configuracion.h"

#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

#include "Uutilext/config/NombreSistema.h"
#include "Uutilext/config/Rutas.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Archivos.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tests/apoyo/Tarea.h"

namespace vel {
namespace {

using pruebas::MensajeDe;

constexpr const char* kIni = "casa/.local/share/Tavex/VEL9.00/VELWIN90.INI";

TEST(Configuracion, GivesItsDefaultsOnABareMachine) {
  const pruebas::CarpetaTemporal c;
  EXPECT_EQ(DameArchivoConfig(), c.Archivo("casa/.local/share") + u"\\Tavex\\VEL9.00\\VELWIN90.INI");
  EXPECT_TRUE(std::filesystem::is_directory(c.Ruta() / "casa/.local/share/Tavex/VEL9.00"));
  EXPECT_FALSE(c.Existe(kIni));
  EXPECT_EQ(DameDriver(3), u"PARADOX");
  EXPECT_EQ(DameTamPaquete(), 50);
  EXPECT_EQ((std::array{DameTipoAcceso(), DameMultimoneda(1), DameValEnLinea(), DameModificaAlmacen(),
                        DameCxCContraDocto(1), DameMultiAlmacen(1)}),
            (std::array<bool, 6>{}));
  const std::string donde = "(archivo \"" + UTF8Encode(DameArchivoConfig()) + "\", sección '";
  EXPECT_EQ(MensajeDe(DameRegsXDemanda),
            "'' no es un valor booleano válido " + donde + "SISTEMA', clave 'RegsXDemanda')");
  EXPECT_EQ(MensajeDe([] { DameAlmacenPredeter(3); }),
            "'' no es un valor entero válido " + donde + "Empresa3', clave 'AlmacenPredeterminado')");
  EXPECT_THROW(DameRegsXDemanda(), EConvertError);
  EXPECT_EQ(DameDriverDefault(), u"");
  c.Instala();
  c.Escribe("C/Sistemas Tavex/VEL9.00/Alias.ini", "[ESTANDAR]\r\nDriverName=DEVARTSQLSERVER\r\n");
  EXPECT_EQ(DameDriverDefault(), u"DEVARTSQLSERVER");
  c.VaciaRegistro();
  EXPECT_EQ(DameValorSinComillas(u"", u"a", u"b"), u"");
  EXPECT_EQ(GetNombreSistema(), u"VEL");
  // The files that name the system stand beside the library.
  const UnicodeString ini = DameRutaDll() + u"AlsConfig.ini";
  const UnicodeString nombre = DameRutaDll() + u"nombre del sistema.txt";
  ReemplazaArchivo(ini, "[General]\nVerfile=nombre del sistema.txt\n");
  EXPECT_EQ(GetNombreSistema(), u"VEL") << "a file that is missing";
  ReemplazaArchivo(nombre, "  Peña \r\notra\r\n");
  EXPECT_EQ(GetNombreSistema(), u"PEÑA");
  ReemplazaArchivo(nombre, " \n");
  EXPECT_EQ(GetNombreSistema(), u"VEL");
  for (const UnicodeString& archivo : {ini, nombre}) EXPECT_FALSE(BorraArchivo(archivo).Hubo());
  EXPECT_EQ(DameRutaVersionVel(), u"Sistemas Tavex\\VEL9.00\\");
}

TEST(Configuracion, KeepsEachSettingsOwnEncoding) {
  const pruebas::CarpetaTemporal c;
  EscribeDriver(3, u"DEVARTSQLSERVER");
  EscribeDirDatos(3, u"C:\\Datos");
  EscribeTamPaquete(-7);
  EscribeTipoAcceso(ENUM_TIP_ACCESO::REMOTO);
  EscribeRegsXDemanda(true);
  EscribeMultimoneda(3, true);
  EscribeValEnLinea(false);
  EscribeModificaAlmacen(true);
  EscribeCxCContraDocto(3, true);
  EscribeMultiAlmacen(3, false);
  EscribeAlmacenPredeter(3, 12);
  EXPECT_EQ(
      c.Lee(kIni),
      "[Empresa3]\r\nDriver=DEVARTSQLSERVER\r\nRutaDatos=C:\\Datos\r\nMultimoneda=true\r\nCxCContraDocto="
      "true\r\n"
      "Multialmacen=false\r\nAlmacenPredeterminado=12\r\n\r\n[SISTEMA]\r\ntamPaquete=-7\r\nAcceso=REMOTO\r\n"
      "RegsXDemanda=-1\r\nValEnLinea=false\r\nModificaAlmacen=true\r\n");
  EXPECT_EQ(DameDriver(3), u"DEVARTSQLSERVER");
  EXPECT_EQ((std::array{DameTipoAcceso(), DameRegsXDemanda(), DameMultimoneda(3), DameModificaAlmacen(),
                        DameCxCContraDocto(3), DameMultiAlmacen(3)}),
            (std::array{true, true, true, true, true, false}));
  EXPECT_EQ(DameTamPaquete(), -7);
  EXPECT_EQ(DameAlmacenPredeter(3), 12);
  for (const auto& [valor, paquete] : {std::pair(u"abc", 50), {u"0", 50}, {u"99999999999", 50}, {u"8", 8}}) {
    EscribeValor(u"Sistema", u"TAMPAQUETE", valor);
    EXPECT_EQ(DameTamPaquete(), paquete);
  }
  EscribeValor(u"Empresa3", u"Multimoneda", u"TRUE");
  EXPECT_TRUE(DameMultimoneda(3));
  EscribeValor(u"Empresa3", u"Multimoneda", u"1");
  EXPECT_FALSE(DameMultimoneda(3));
  EXPECT_EQ(MensajeDe([] { EscribeTipoAcceso(static_cast<ENUM_TIP_ACCESO>(2)); }), "Tipo de Acceso Inválido");
  EXPECT_EQ(DameTipoDriverEnum(u"devartsqlserver"), TiposDeDriver::DEVARTSQLSERVER);
  EXPECT_EQ(DameTipoDriverEnum(u"otro"), TiposDeDriver::DEVARTINTERBASE);
  EXPECT_EQ(DameTipoDriverStr(TiposDeDriver::DEVARTSQLSERVERCOMPACT), u"DEVARTSQLSERVERCOMPACT");
  EXPECT_EQ(DameTipoDriverStr(static_cast<TiposDeDriver>(1)), u"");
  for (const char16_t* texto : {u"t", u"True"}) EXPECT_TRUE(DameValorBooleano(texto)) << UTF8Encode(texto);
  for (const char16_t* texto : {u"1", u""}) EXPECT_FALSE(DameValorBooleano(texto)) << UTF8Encode(texto);
  EXPECT_EQ(DameCadena(true) + DameCadena(false), u"TF");
}

TEST(Configuracion, ReadsInTwoStyles) {
  const pruebas::CarpetaTemporal c;
  c.Escribe("a.ini", "[S]\nA=\"uno\"\nB='dos'\nC = tres \n;D=4\n");
  const UnicodeString archivo = c.Archivo("a.ini");
  EXPECT_EQ(DameValor(archivo, u"s", u"a"), u"\"uno\"");
  EXPECT_EQ(GetProfileStringW(archivo, u"S", u"B"), u"'dos'");
  EXPECT_EQ(DameValorSinComillas(archivo, u"S", u"A"), u"uno");
  TStringList lista;
  DameValoresSeccion(archivo, u"S", lista);
  EXPECT_EQ(lista.Text(), u"A=uno\r\nB=dos\r\nC=tres\r\n");
  DameDatosDeSeccion(archivo, u"S", lista);
  EXPECT_EQ(lista.Text(), u"A\r\nB\r\nC\r\n");
  BorraSeccion(archivo, u"s");
  EXPECT_EQ(c.Lee("a.ini"), ";D=4\n");
}

TEST(Configuracion, KeepsTheEncodingOnDisk) {
  const pruebas::CarpetaTemporal c;
  const UnicodeString archivo = c.Archivo("a.ini");
  const auto bytes = [](const std::string& caso) {
    std::string texto = pruebas::Descifra(caso);
    if (texto.ends_with('%')) texto.replace(texto.size() - 1, 1, ";" + std::string(100'000, 'x'));
    if (!texto.starts_with("utf16:")) return texto;
    const std::size_t fin = std::min(texto.find('+'), texto.size());
    std::string ancho = "\xFF\xFE";
    for (const char16_t ch : UTF8ToString(texto.substr(6, fin - 6)))
      ancho += {static_cast<char>(ch & 0xFF), static_cast<char>(ch >> 8)};
    return ancho + (fin < texto.size() ? texto.substr(fin + 1) : "");
  };
  for (const auto& caso : pruebas::Casos("textos/codificaciones.txt", "|")) {
    c.Escribe("a.ini", bytes(caso.at(0)));
    EscribeValor(archivo, u"S", u"k", UTF8ToString(caso.at(1)));
    EXPECT_EQ(c.Lee("a.ini"), bytes(caso.at(2)));
    EXPECT_EQ(UTF8Encode(DameValor(archivo, u"S", u"k")), caso[1]);
  }
}

TEST(Configuracion, SaysWhichFileItCannotWriteAndLeavesIt) {
  const pruebas::CarpetaTemporal c;
  c.Escribe("archivo", "x");
  for (const char* nombre : {"archivo/a.ini", "nada/a.ini", ""}) {
    const UnicodeString archivo = *nombre != '\0' ? c.Archivo(nombre) : c.Ruta().u16string();
    const std::string fin = "\"" + UTF8Encode(archivo) + "\"\nCompruebe que tenga los permisos necesarios.";
    EXPECT_EQ(MensajeDe([&] { EscribeValor(archivo, u"a", u"b", u"c"); }),
              "No se puede escribir en el archivo " + fin);
    if (nombre == std::string("nada/a.ini")) continue;
    EXPECT_EQ(MensajeDe([&] { BorraSeccion(archivo, u"a"); }),
              "No se puede actualizar la información del archivo " + fin);
  }
  // What cannot be written back as it was stays.
  for (const std::string danado : {"\xEF\xBB\xBF[S]\nn=\xF1\nk=1\n", "\xFE\xFFx"}) {
    c.Escribe("d.ini", danado);
    EXPECT_NE(MensajeDe([&] { EscribeValor(c.Archivo("d.ini"), u"S", u"k", u"2"); }), "none");
    EXPECT_EQ(c.Lee("d.ini"), danado);
  }
  c.Escribe("a.ini", "[S]\nk=1\n");
  EXPECT_THROW(EscribeValor(c.Archivo("a.ini"), u"S", u"k", u"a\nb"), EInvalidOperation);
  EXPECT_EQ(c.Lee("a.ini"), "[S]\nk=1\n");
  EXPECT_EQ(c.Cuenta(), 3) << "no temporary file stays";
}

const pruebas::Tarea kEsperaCandado("espera un candado", [](const pruebas::Argumentos& a) {
  const auto antes = std::chrono::steady_clock::now();
  const CandadoArchivo segundo(a.at(0));
  const auto espera = std::chrono::steady_clock::now() - antes;
  EXPECT_TRUE(espera >= std::chrono::seconds(10) && espera < std::chrono::seconds(15));
  EXPECT_EQ(Descripcion(segundo.Falla()), u"lo está usando otro programa");
});

TEST(Configuracion, GivesUpALockThatNobodyGivesBack) {
  const pruebas::CarpetaTemporal c;
  const CandadoArchivo candado(c.Archivo("a.ini"));
  EXPECT_EQ(kEsperaCandado.Empieza({c.Archivo("b.ini")}).Espera(), 0) << "ten seconds, then a fault";
}

const pruebas::Tarea kEscribeClaves("escribe claves", [](const pruebas::Argumentos& a) {
  for (int k = 0; k < 100; ++k) EscribeValor(a.at(0), a.at(1), u"k" + IntToStr(k), IntToStr(k));
});

TEST(Configuracion, FourProgramsLoseNoKey) {
  const pruebas::CarpetaTemporal c;
  const UnicodeString archivo = c.Archivo("a.ini");
  std::vector<pruebas::Proceso> programas;
  for (int p = 0; p < 4; ++p) programas.push_back(kEscribeClaves.Empieza({archivo, u"P" + IntToStr(p)}));
  for (pruebas::Proceso& programa : programas) EXPECT_EQ(programa.Espera(), 0);
  TStringList claves;
  for (int p = 0; p < 4; ++p) {
    DameDatosDeSeccion(archivo, u"P" + IntToStr(p), claves);
    EXPECT_EQ(claves.Count(), 100U);
  }
}

}  // namespace
}  // namespace vel
