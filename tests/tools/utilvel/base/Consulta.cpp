// utilvel consulta, run as a user runs it.

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "Paramsql/ConsultaGuardada.h"
#include "Paramsql/Paramsql.h"
#include "tests/Casos.h"
#include "tests/tools/utilvel/base/Bases.h"

namespace vel {
namespace {

using pruebas::EnBases;
using Op = ENUM_OPERADOR;
using enum ENUM_CONECTOR;
using enum ENUM_GRUPO;

INSTANTIATE_TEST_SUITE_P(Archivos, EnBases,
                         testing::Values(pruebas::Motor{"sqlite3", "TIMESTAMP", "TIME", 4},
                                         pruebas::Motor{"firebird", "TIMESTAMP", "TIME", 2}),
                         testing::PrintToStringParamName());
// Run by servidores.sh.
INSTANTIATE_TEST_SUITE_P(
    Servidores, EnBases,
    testing::Values(pruebas::Motor{"postgresql", "TIMESTAMP", "TIME", 1, "UTILVEL_PRUEBA_POSTGRESQL"},
                    pruebas::Motor{"mysql", "DATETIME(3)", "TIME(3)", 1, "UTILVEL_PRUEBA_MYSQL"}),
    testing::PrintToStringParamName());

struct Corrida {
  int codigo;
  std::string salida;
  std::string errores;
};

class Programa {
 public:
  explicit Programa(const pruebas::CarpetaTemporal& carpeta) : carpeta_(carpeta) {}

  // Runs a line of the shell, in which "utilvel" is the program.
  Corrida Corre(const std::string& linea) const {
    // Under the address checker the databases' libraries leak.
    const std::string orden = "export ASAN_OPTIONS=detect_leaks=0; cd '" + carpeta_.Ruta().string() +
                              "' && utilvel() { '" UTILVEL "' \"$@\"; } && { " + linea +
                              "; } >salida 2>errores";
    const int estado = std::system(("bash -c '" + Citada(orden) + "'").c_str());
    return {WEXITSTATUS(estado), carpeta_.Lee("salida"), carpeta_.Lee("errores")};
  }

 private:
  static std::string Citada(const std::string& texto) {
    std::string salida;
    for (const char c : texto) salida += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return salida;
  }
  const pruebas::CarpetaTemporal& carpeta_;
};

// What stands in a column of amounts, dates or nothing.
TEST_P(EnBases, PrintWhatTheyHold) {
  const Programa programa(carpeta_);
  TParametrosFiltro filtro(u"T");
  for (const char16_t* const campo : {u"I", u"N", u"S", u"M", u"D", u"F", u"DIA", u"H"}) {
    filtro.AgregaCampoSelect(campo, u"\"" + UnicodeString(campo) + u"\"", true);
  }
  filtro.AgregaFiltro(u"I", TFieldType::ftInteger, Variant(3), Op::IGUAL, OR, NADA, true);
  filtro.AgregaFiltro(u"M", TFieldType::ftFloat, Variant(7.25), Op::IGUAL, AND, NADA, true);
  filtro.SetOrderBy(u"1");
  GuardaConsulta(filtro, carpeta_.Archivo("c.ini"));
  const bool sinTipos = std::string(GetParam().nombre) == "sqlite3";
  const std::string esperado = R"({"I": "1", "N": "O'Brien; \"S.A.\"", "S": "10.5", "M": "7.25", "D": null, )"
                               R"("F": "2024-05-13 14:30:00", "DIA": "2024-05-13", "H": "14:30:00"})"
                               "\n"
                               R"({"I": "3", "N": "50x yy[x]", "S": "30", "M": ")" +
                               std::string(sinTipos ? "0.1" : "0.10") +
                               R"(", "D": "a", "F": "2024-05-14 08:00:00.25)" + (sinTipos ? "0" : "") +
                               R"(", "DIA": "2024-05-14", "H": "08:00:00.25)" + (sinTipos ? "0" : "") +
                               "\"}\n";
  for (const char* const como : {"", " --literales"}) {
    const Corrida c = programa.Corre("utilvel consulta c.ini --json --base " + direccion_ + como);
    EXPECT_EQ(c.salida, esperado) << como << c.errores;
    EXPECT_EQ(c.codigo, 0);
  }
  EXPECT_EQ(programa.Corre("utilvel consulta c.ini --csv --base " + direccion_ + " | cut -d, -f1,5").salida,
            "I,D\n1,\n3,a\n");
  EXPECT_EQ(programa.Corre("utilvel consulta c.ini --base " + direccion_ + " | head -1").salida.substr(0, 4),
            "I  N");
  if (GetParam().servidor != nullptr) return;
  // The name of a file is in UTF-8 whatever the locale.
  const Corrida c = programa.Corre("cp base 'año 1'; LC_ALL=C utilvel consulta c.ini --json --base '" +
                                   std::string(GetParam().nombre) + "://año 1'");
  EXPECT_EQ(c.salida, esperado) << c.errores;
}

// Values of the command line, by the type of their field.
TEST_P(EnBases, TakeOtherValues) {
  const Programa programa(carpeta_);
  TParametrosFiltro filtro(u"T");
  filtro.AgregaCampoSelect(u"D", u"", true);
  filtro.GroupBy = u"D";
  filtro.AgregaFiltro(u"I", TFieldType::ftInteger, Op::INN, AND, NADA, Variant(1), Variant(2));
  filtro.AgregaFiltro(u"F", TFieldType::ftDateTime, Op::BETWEEN, AND, NADA, Variant(TDateTime(45000)),
                      Variant(TDateTime(46000)));
  filtro.AgregaFiltro(u"N", TFieldType::ftString, Variant(u"%"), Op::LIKE, AND, NADA, false);
  filtro.AgregaHaving(u"SUM(S)", TFieldType::ftFloat, Variant(1.0), Op::MAYOR, AND, NADA, true);
  GuardaConsulta(filtro, carpeta_.Archivo("c.ini"));
  const std::string base = "utilvel consulta c.ini --csv --base " + direccion_;
  for (const auto& caso : pruebas::Casos("sentencias/opciones.txt", " | ")) {
    const Corrida c = programa.Corre(base + caso.at(0) + " | tail -n +2 | sort; exit ${PIPESTATUS[0]}");
    EXPECT_EQ(c.salida, pruebas::Descifra(caso.at(1))) << caso[0] << c.errores;
    EXPECT_EQ(c.codigo, std::stoi(caso.at(2))) << caso[0];
  }
}

TEST_P(EnBases, SayWhereTheyFail) {
  // Many rows of which one cannot be computed, and what comes before the fault. PostgreSQL sends a thousand
  // at a time, MariaDB all, and Firebird counts 1,024 deep.
  const struct {
    const char* tabla;
    const char* columna;
    const char* dice;
  } kCasos[] = {
      {"(WITH RECURSIVE R(N) AS (SELECT 1 UNION ALL SELECT N+1 FROM R WHERE N<5000) SELECT N FROM R) X",
       "abs(-9223372036854775807-(N=4000))", "falló después de 3999 renglones: integer overflow"},
      {"(WITH RECURSIVE R(N) AS (SELECT 1 FROM RDB$DATABASE UNION ALL SELECT N+1 FROM R WHERE N<1000) "
       "SELECT N FROM R) X",
       "1/(N-900)", "falló después de 899 renglones"},
      {"generate_series(1,5000) X(N)", "1/(N-2500)", "falló después de 2000 renglones: division by zero"},
      {"T", "(SELECT I FROM T)", "rechaza la consulta: Subquery returns more than 1 row"}};
  const auto& caso = kCasos[static_cast<std::size_t>(utilvel::LeeDireccion(direccion_).clase)];
  const Programa programa(carpeta_);
  TParametrosFiltro filtro(UTF8ToString(caso.tabla));
  filtro.AgregaCampoSelect(u"N", u"", true);
  filtro.AgregaCampoSelect(UTF8ToString(caso.columna), u"X", true);
  GuardaConsulta(filtro, carpeta_.Archivo("c.ini"));
  const Corrida c = programa.Corre("utilvel consulta c.ini --csv --base " + direccion_);
  EXPECT_EQ(c.codigo, 6);
  EXPECT_NE(c.errores.find(caso.dice), std::string::npos) << c.errores;
  EXPECT_EQ(std::count(c.errores.begin(), c.errores.end(), '\n'), 1) << c.errores;
  EXPECT_EQ(programa.Corre("utilvel consulta c.ini --csv --salida r.csv --base " + direccion_).codigo, 6);
  EXPECT_FALSE(carpeta_.Existe("r.csv"));
  if (std::string(GetParam().nombre) != "postgresql") return;
  TParametrosFiltro larga(u"generate_series(1,1000000) X(N)");
  GuardaConsulta(larga, carpeta_.Archivo("c.ini"));
  const Corrida cortada = programa.Corre("utilvel consulta c.ini --csv --base " + direccion_ +
                                         " | { head -3; PGPASSWORD=$UTILVEL_CLAVE psql -qAt " + direccion_ +
                                         " -c \"SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE "
                                         "application_name = 'utilvel'\"; tail -1; }; "
                                         "exit ${PIPESTATUS[0]}");
  EXPECT_EQ(cortada.codigo, 6);
  EXPECT_EQ(cortada.salida.substr(0, 8), "n\n1\n2\nt\n");
  // What came before the cut is whole.
  const std::string ultimo = cortada.salida.substr(8, cortada.salida.size() - 9);
  EXPECT_NE(cortada.errores.find("falló después de " + ultimo + " renglones: "), std::string::npos)
      << cortada.errores;
}

TEST_P(EnBases, EndWithTheirReaderAndOnCtrlC) {
  const std::string motor = GetParam().nombre;
  const Programa programa(carpeta_);
  TParametrosFiltro filtro(u"T A");
  UnicodeString suma = u"A.I";
  for (const char16_t* const otra : {u"B", u"C", u"E", u"G", u"J", u"K", u"L"}) {
    // MariaDB's server works on without a client, and the next test waits for it.
    if (motor == "mysql" && *otra == u'L') break;
    filtro.AgregaJoin(u"CROSS JOIN T " + UnicodeString(otra));
    suma.append(u"+").append(otra).append(u".I");
  }
  filtro.AgregaCampoSelect(u"A.I", u"", true);
  const std::string orden = " consulta c.ini --csv --base " + direccion_;
  GuardaConsulta(filtro, carpeta_.Archivo("c.ini"));
  // MariaDB's library would read all of them first.
  if (motor != "mysql") {
    const Corrida c = programa.Corre("utilvel" + orden + " | head -1; exit ${PIPESTATUS[0]}");
    EXPECT_EQ(c.codigo, 141);
    EXPECT_EQ(c.errores, "");
    // Where the reader stays and does not read, one signal waits for it and a second one does not.
    const Corrida parada = programa.Corre("'" UTILVEL "'" + orden + " > >(exec sleep 5 >/dev/null 2>&1) & " +
                                          "sleep 0.3; kill $!; sleep 0.2; kill $!; wait $!");
    EXPECT_EQ(parada.codigo, 143);
  }
  // After one row no other comes: the engine itself is at work when the signal does.
  filtro.AgregaFiltro(suma, TFieldType::ftInteger, Variant(motor == "mysql" ? 8 : 9), Op::MENOR, AND, NADA,
                      true);
  GuardaConsulta(filtro, carpeta_.Archivo("c.ini"));
  const Corrida c = programa.Corre("timeout -s INT --preserve-status -k 20 0.5 '" UTILVEL "'" + orden +
                                   " --salida r.csv; codigo=$?; ls r.csv*; exit $codigo");
  EXPECT_EQ(c.codigo, 130);
  EXPECT_EQ(c.salida, "");
}

TEST_P(EnBases, KeepPasswordsOutOfSight) {
  const Programa programa(carpeta_);
  TParametrosFiltro filtro(u"T");
  filtro.AgregaCampoSelect(u"COUNT(*)", u"", true);
  GuardaConsulta(filtro, carpeta_.Archivo("c.ini"));
  carpeta_.Escribe("clave", pruebas::Clave() + "\n");
  const std::string orden = "utilvel consulta c.ini --csv --base " + direccion_;
  const std::string cuenta = "| tail -1; exit ${PIPESTATUS[0]}";
  for (const std::string& como :
       {orden + cuenta,
        "clave=$UTILVEL_CLAVE; unset UTILVEL_CLAVE; " + orden + " --clave-archivo clave" + cuenta,
        "unset UTILVEL_CLAVE; " + orden + " --pide-clave <clave " + cuenta}) {
    const Corrida c = programa.Corre(como);
    EXPECT_EQ(c.salida, "9\n") << como << c.errores;
  }
  if (GetParam().servidor == nullptr) return;
  const Corrida mala = programa.Corre("UTILVEL_CLAVE=equivocada " + orden);
  EXPECT_EQ(mala.codigo, 6);
  EXPECT_EQ(mala.salida + mala.errores.substr(0, mala.errores.find(':', 9)),
            "utilvel: No se puede abrir la base");
  EXPECT_EQ(mala.errores.find("equivocada"), std::string::npos);
}

TEST(Direcciones, AreRefusedWithoutRepeatingThem) {
  pruebas::CarpetaTemporal carpeta;
  const Programa programa(carpeta);
  TParametrosFiltro filtro(u"T");
  GuardaConsulta(filtro, carpeta.Archivo("c.ini"));
  carpeta.Escribe("texto.db", std::string(5000, 'x'));
  for (const auto& caso : pruebas::Casos("sentencias/direcciones.txt", " | ")) {
    const Corrida c = programa.Corre("utilvel consulta c.ini --base '" + caso.at(0) + "'");
    EXPECT_EQ(c.codigo, std::stoi(caso.at(1))) << caso[0];
    EXPECT_NE(c.errores.find(caso.at(2)), std::string::npos) << caso[0] << c.errores;
    EXPECT_EQ(c.errores.find("xyzzy"), std::string::npos) << c.errores;
    EXPECT_EQ(std::count(c.errores.begin(), c.errores.end(), '\n'), 1) << c.errores;
  }
}

}  // namespace
}  // namespace vel
