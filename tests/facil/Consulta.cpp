// Queries in words against the same queries built by hand.

#include "facil/Consulta.h"

#include <array>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "Paramsql/ConsultaGuardada.h"
#include "Paramsql/TParametrosFiltro.h"
#include "facil/facil.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TRemotable.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"

namespace vel::facil {
namespace {

using namespace std::chrono;
using enum ENUM_OPERADOR;
using enum TFieldType;
constexpr auto Y = ENUM_CONECTOR::AND;
constexpr auto O = ENUM_CONECTOR::OR;
constexpr auto SIN = ENUM_GRUPO::NADA;

// The same definition, and the same statement and values in every style.
void ExigeIguales(Consulta& enPalabras, TParametrosFiltro& aMano) {
  for (std::uint8_t i = 0; i < 4; ++i) {
    const auto estilo = static_cast<ENUM_MARCADOR>(i);
    TParams parametros;
    const UnicodeString texto = aMano.DameSentenciaSQL(estilo, i, parametros);
    const Sentencia sentencia = enPalabras.sentencia(estilo, i);
    EXPECT_EQ(sentencia.utf8(), UTF8Encode(texto));
    EXPECT_TRUE(std::equal(sentencia.parametros.begin(), sentencia.parametros.end(), parametros.begin(),
                           parametros.end()))
        << sentencia.utf8();
  }
  EXPECT_EQ(EscribeRemotableXML(enPalabras.filtro(), u"F"), EscribeRemotableXML(aMano, u"F"));
}

TEST(Consulta, WritesEachConditionAsItIsByHand) {
  using C = Condicion<Grupo>;
  using enum ENUM_COINCIDENCIA;
  // In words, and as the arguments of AgregaFiltro or AgregaFiltroLIKE.
  struct Caso {
    std::function<void(C&)> enPalabras;
    TFieldType tipo;
    Variant valor;
    ENUM_OPERADOR op;
    bool sensitive = true;
    std::optional<ENUM_COINCIDENCIA> patron = {};
  };
  static constexpr std::int64_t kLargo = 7'000'000'000;
  const UnicodeString texto = u"Peña 50%_/ 😀";
  const std::string utf8 = UTF8Encode(texto);
  const TDateTime fecha(45425);
  const year_month_day dia = 2024y / May / 13;
  const Caso casos[] = {
      {[](C& c) { c.igual(-7); }, ftInteger, -7, IGUAL},
      {[](C& c) { c.diferente(kLargo); }, ftInteger, kLargo, DIFERENTE},
      {[](C& c) { c.mayor(0.125); }, ftFloat, 0.125, MAYOR},
      {[&](C& c) { c.menorIgual(texto); }, ftString, texto, MENOR_IGUAL},
      {[&](C& c) { c.igual(utf8.c_str()); }, ftString, texto, IGUAL},
      {[](C& c) { c.igual(true); }, ftBoolean, true, IGUAL},
      {[&](C& c) { c.menor(dia); }, ftDateTime, fecha, MENOR},
      {[&](C& c) { c.mayorIgual(Variant(fecha)); }, ftDateTime, fecha, MAYOR_IGUAL},
      {[](C& c) { c.igual(Sql("T.X")); }, ftDataSet, u"T.X", IGUAL},
      {[](C& c) { c.esNulo(); }, ftString, {}, ISNULL},
      {[](C& c) { c.noEsNulo(); }, ftString, {}, NOTNULL},
      {[&](C& c) { c.entre(dia, fecha); }, ftDateTime, VarArrayOf({fecha, fecha}), BETWEEN, false},
      {[](C& c) { c.entre(3, 4.5); }, ftFloat, VarArrayOf({3, 4.5}), BETWEEN, false},
      {[](C& c) { c.entre(std::optional<int>(), 3); }, ftInteger, 3, MENOR_IGUAL},
      {[&](C& c) {
         c.en({utf8, std::string("B")});
       },
       ftString, VarArrayOf({texto, u"B"}), INN, false},
      {[](C& c) {
         c.noEn(std::vector{7, 1});
       },
       ftInteger, VarArrayOf({7, 1}), NOTIN, false},
      {[](C& c) { c.en(Sql("SELECT 1")); }, ftDataSet, u"SELECT 1", INN},
      {[&](C& c) { c.contiene(utf8); }, ftString, texto, LIKE, false, CONTIENE},
      {[&](C& c) { c.empieza(texto, Letras::ComoEstan); }, ftString, texto, LIKE, true, EMPIEZA},
      {[&](C& c) { c.termina(std::optional(texto)); }, ftString, texto, LIKE, false, TERMINA},
  };
  for (const Caso& caso : casos) {
    Consulta c("T");
    TParametrosFiltro f(u"T");
    c.todas([&](Grupo& g) { caso.enPalabras(g.donde("C").si(true)); });
    c.havingAlguna([&](Grupo& g) { caso.enPalabras(g.donde("C").si(true)); });
    if (caso.patron.has_value()) {
      f.AgregaFiltroLIKE(u"C", *caso.valor.TextPtr(), *caso.patron, Y, SIN, caso.sensitive);
      f.AgregaHavingLIKE(u"C", *caso.valor.TextPtr(), *caso.patron, Y, SIN, caso.sensitive);
    } else {
      f.AgregaFiltro(u"C", caso.tipo, caso.valor, caso.op, Y, SIN, caso.sensitive);
      f.AgregaHaving(u"C", caso.tipo, caso.valor, caso.op, Y, SIN, caso.sensitive);
    }
    ExigeIguales(c, f);
    if (caso.patron.has_value() || caso.tipo == ftBoolean) continue;
    EXPECT_EQ(c.literal(), f.DameSentenciaSQL(false, 0));
  }
}

TEST(Consulta, JoinsItsPartsAsTheyAreByHand) {
  const pruebas::CarpetaTemporal carpeta;
  const UnicodeString archivo = carpeta.Archivo("consulta.ini");
  for (const bool conTres : {false, true}) {
    Consulta c("TABLA_Ñ T");
    c.filtro().FechaTrabajo = TDateTime(45425);
    c.campo("SUM(Á)", u"A", false).campo("B").join("JOIN D").join("JOIN E").distintos();
    c.donde("I").igual(1).existe(Sql("SELECT 2")).sql("U > 1").sql("V > 2");
    c.agrupa("A").agrupa("B").having("SUM(S)").mayor(0.5);
    Consulta otra("U");
    otra.donde("F").menor(TDateTime(45425));
    c.unionCon(std::move(otra)).ordena("A").ordenaDesc("B");
    TParametrosFiltro f(u"TABLA_Ñ T");
    f.FechaTrabajo = TDateTime(45425);
    f.AgregaCampoSelect(u"SUM(Á)", u"A", false);
    f.AgregaCampoSelect(u"B", u"", true);
    f.AgregaJoin(u"JOIN D");
    f.AgregaJoin(u"JOIN E");
    f.Distinct = true;
    f.AgregaFiltro(u"I", ftInteger, 1, IGUAL, Y, SIN, true);
    f.AgregaFiltro(u"", ftDataSet, u"SELECT 2", EXISTS, Y, SIN, true);
    f.FilterTextPers = u"(U > 1) AND (V > 2)";
    f.FiltroPActivo = 2;
    f.GroupBy = u"A, B";
    f.AgregaHaving(u"SUM(S)", ftFloat, 0.5, MAYOR, Y, SIN, true);
    f.AgregaUnion(u"U")->AgregaFiltro(u"F", ftDateTime, TDateTime(45425), MENOR, Y, SIN, true);
    f.OrderBy = u"A, B";
    f.OrdDesc = true;
    if (conTres) {
      c.ordena("C");
      f.OrderBy = u"A, B DESC, C";
      f.OrdDesc = false;
    }
    ExigeIguales(c, f);
    c.guarda(archivo);
    Consulta leida = Consulta::lee(archivo);
    EXPECT_EQ(leida.sentencia().texto, c.sentencia().texto);
    EXPECT_EQ(leida.sentencia().parametros[2].Value, Variant(TDateTime(45425)));
  }
}

// What a condition says in each of the 64 ways in which six columns hold or do not, a bit for each; nothing
// where all of it was left out.
using Verdades = std::optional<std::uint64_t>;
constexpr std::array<std::uint64_t, 6> kColumnas = {0xAAAA'AAAA'AAAA'AAAA, 0xCCCC'CCCC'CCCC'CCCC,
                                                    0xF0F0'F0F0'F0F0'F0F0, 0xFF00'FF00'FF00'FF00,
                                                    0xFFFF'0000'FFFF'0000, 0xFFFF'FFFF'0000'0000};

// Fills a group with whatever comes, and tells what it means.
Verdades Llena(Grupo& g, ENUM_CONECTOR conector, int nivel, std::mt19937& azar) {
  Verdades todas;
  for (auto n = azar() % 5; n > 0; --n) {
    Verdades una;
    if (nivel > 0 && azar() % 2 == 0) {
      const bool conO = azar() % 3 != 0;
      const auto llena = [&](Grupo& h) { una = Llena(h, conO ? O : Y, nivel - 1, azar); };
      conO ? g.alguna(llena) : g.todas(llena);
    } else {
      const int columna = static_cast<int>(azar() % kColumnas.size());
      const bool dentro = azar() % 5 != 0;
      g.donde(u"C" + IntToStr(columna)).si(dentro).igual(1);
      if (dentro) una = kColumnas.at(static_cast<std::size_t>(columna));
    }
    if (una.has_value()) todas = !todas.has_value() ? una : conector == Y ? *todas & *una : *todas | *una;
  }
  return todas;
}

bool Toma(std::u16string_view& texto, std::u16string_view parte) {
  const bool hay = texto.starts_with(parte);
  if (hay) texto.remove_prefix(parte.size());
  return hay;
}

// What stands at the front of a statement's text, of which it is taken. AND binds tighter than OR.
std::uint64_t Alternativas(std::u16string_view& texto) {
  const auto una = [&texto]() -> std::uint64_t {
    if (Toma(texto, u"1=0")) return 0;
    if (Toma(texto, u"(")) {
      const std::uint64_t grupo = Alternativas(texto);
      EXPECT_TRUE(Toma(texto, u")"));
      return grupo;
    }
    EXPECT_TRUE(Toma(texto, u"C"));
    const std::size_t columna = texto.at(0) - u'0';
    texto.remove_prefix(1);
    EXPECT_TRUE(Toma(texto, u"=1"));
    return kColumnas.at(columna);
  };
  std::uint64_t vale = 0;
  do {
    std::uint64_t juntas = una();
    while (Toma(texto, u" AND ")) juntas &= una();
    vale |= juntas;
  } while (Toma(texto, u" OR "));
  return vale;
}

TEST(Consulta, GroupsMeanWhatTheySayHoweverDeep) {
  std::mt19937 azar(7);
  int neutras = 0;
  for (int vez = 0; vez < 4'000; ++vez) {
    Consulta c(u"T");
    Verdades esperadas;
    c.alguna([&](Grupo& g) { esperadas = Llena(g, O, 6, azar); });
    int numero = 0;
    const UnicodeString texto = c.filtro().DameCondWhere(false, numero);
    ASSERT_EQ(texto.empty(), !esperadas.has_value());
    if (texto.empty()) continue;
    if (texto.find(u"1=0") != UnicodeString::npos) ++neutras;
    std::u16string_view resto = texto;
    ASSERT_EQ(Alternativas(resto), *esperadas) << UTF8Encode(texto);
    ASSERT_TRUE(resto.empty()) << UTF8Encode(texto);
  }
  EXPECT_GT(neutras, 100);
}

UnicodeString Donde(Consulta& c) {
  int numero = 0;
  return c.filtro().DameCondWhere(true, numero);
}

TEST(Consulta, LeavesOutWhatIsNotThere) {
  const std::optional<std::string> nada;
  const std::optional<year_month_day> hoy = 2024y / May / 13;
  Consulta c("T", TiposDeDriver::DEVARTSQLSERVER);
  c.donde("A").igual(nada).donde("A").contiene(nada).donde("A").en({nada, nada}).donde("A").entre(nada, nada);
  c.donde("A").si(false).entre(hoy, hoy).donde("A").si(false).en({1, 2}).donde("A").si(false).contiene("x");
  c.donde("A").si(false).esNulo().donde("A").si(true).si(false).entre(hoy, nada);
  c.alguna([&](auto& g) { g.todas([&](auto& h) { h.donde("A").igual(nada); }); });
  EXPECT_EQ(c.sentencia().texto, u"SELECT  *  from T ");
  c.donde("A").entre(hoy, std::optional<TDateTime>()).donde("B").en({nada, std::optional<std::string>("x")});
  EXPECT_EQ(Donde(c), u"A>=:var1 AND B IN  ( :var2) ");
  c.donde("C").contiene("[50]");
  EXPECT_EQ(c.sentencia().parametros[2].Value, Variant(u"%/[50]%"));
  EXPECT_EQ(c.sentencia().parametros[0].Value, Variant(TDateTime(45425)));
}

TEST(Consulta, RefusesWhatCouldNotBeMeant) {
  const auto lleno = [] {
    Consulta c("T");
    c.donde("A").igual(1).alguna([](auto& g) { g.donde("B").igual(2).donde("B").igual(3); });
    return c;
  };
  using Hace = std::function<void(Consulta&)>;
  const std::pair<Hace, const char*> casos[] = {
      {[](Consulta&) { Consulta(" "); }, "Falta la tabla de la consulta"},
      {[](Consulta& c) { c.campo(""); }, "Falta el campo de una consulta"},
      {[](Consulta& c) { c.donde("").igual(1); }, "Falta el campo de una condición"},
      {[](Consulta& c) { c.existe(Sql(" ")); }, "Falta el SQL de una condición"},
      {[](Consulta& c) { c.join(""); }, "Falta la cláusula de un join"},
      {[](Consulta& c) { c.sql(" "); }, "Falta el texto de una condición"},
      {[](Consulta& c) { c.agrupa(""); }, "Falta la columna de un grupo"},
      {[](Consulta& c) { c.ordenaDesc(""); }, "Falta la columna del orden"},
      {[](Consulta& c) { c.donde("X").en(std::vector<int>()); }, "La condición sobre 'X' no tiene valores"},
      {[](Consulta& c) {
         c.donde("X").en({1, "a"});
       },
       "Los valores de una condición son de tipos distintos"},
      {[](Consulta& c) { c.donde("X").entre(1, true); },
       "Los valores de una condición son de tipos distintos"},
      {[](Consulta& c) { c.donde("X").igual(Variant::Null()); },
       "Una condición necesita un valor: ni un nulo ni un arreglo lo son"},
      {[](Consulta& c) { c.donde("X").contiene("\xF1"); }, "El texto no está en UTF-8"},
      {[](Consulta& c) { c.alguna([&c](auto& g) { g.donde("X").igual(1), c.donde("X").igual(2); }); },
       "Mientras se llena un grupo, las condiciones se agregan a ese grupo"},
      {[](Consulta& c) {
         c.alguna([](auto& g) {
           g.donde("X").igual(1).todas([&g](auto& h) { h.donde("X").igual(1), g.donde("X").contiene("2"); });
         });
       },
       "Mientras se llena un grupo, las condiciones se agregan a ese grupo"},
      {[](Consulta& c) {
         Consulta otra("U");
         c.unionCon(std::move(otra.ordena("A")));
       },
       "Una consulta de la unión no lleva orden: ordene la principal"},
      {[](Consulta&) {
         Consulta una("U");
         const auto suelta = std::move(una).suelta();
         una.donde("A").igual(1);
       },
       "La consulta ya se entregó"},
      {[](Consulta&) { Consulta{std::unique_ptr<TParametrosFiltro>()}; }, "La consulta ya se entregó"},
  };
  for (const auto& caso : casos) {
    Consulta c = lleno();
    EXPECT_EQ(pruebas::MensajeDe([&] { caso.first(c); }), caso.second);
    EXPECT_EQ(Donde(c), u"A=:var1 AND (B=:var2 OR B=:var3)");
    c.donde("C").igual(4);
    EXPECT_EQ(Donde(c), u"A=:var1 AND (B=:var2 OR B=:var3) AND C=:var4");
  }

  const std::pair<Hace, const char*> sinLiteral[] = {
      {[](Consulta& c) { c.donde("X").contiene("a"); }, "un texto buscado"},
      {[](Consulta& c) { c.donde("X").igual(true); }, "un valor lógico"},
      {[](Consulta& c) { c.having("X").igual("O'Brien"); }, "un texto con apóstrofo"},
      {[](Consulta& c) {
         c.donde("X").en({"a", "'"});
       },
       "un texto con apóstrofo"},
      {[](Consulta& c) { c.donde("X").entre("a", "b"); }, "un texto en 'entre'"},
      {[](Consulta& c) { c.donde("X").igual(1e308 * 10); }, "un número que no es finito"},
      {[](Consulta& c) {
         Consulta otra("U");
         otra.donde("X").igual(Valor(ftDate, TDateTime(45425)));
         c.unionCon(std::move(otra));
       },
       "un valor de ese tipo de campo"},
  };
  for (const auto& [hace, razon] : sinLiteral) {
    Consulta c = lleno();
    hace(c);
    EXPECT_EQ(pruebas::MensajeDe([&] { c.literal(); }),
              "La condición sobre 'X' no se puede escribir con literales (" + std::string(razon) +
                  "): pida la sentencia con parámetros");
    EXPECT_NO_THROW(c.sentencia());
  }
  Consulta c = lleno();
  c.donde("F").entre(Valor(ftDate, TDateTime(45425)), Valor(ftDate, TDateTime(45426)));
  EXPECT_EQ(pruebas::MensajeDe([&] { c.literal(); }), "none");
}

// What others put into a definition stays together when a condition is added.
TEST(Consulta, GoesOnFromADefinition) {
  struct Caso {
    std::vector<std::pair<ENUM_CONECTOR, ENUM_GRUPO>> condiciones;
    const char16_t* esperada;
  };
  constexpr auto A = ENUM_GRUPO::INICIA;
  constexpr auto T = ENUM_GRUPO::TERMINA;
  const Caso casos[] = {
      {{{O, SIN}}, u"X=:var1 AND Y=:var2"},
      {{{O, A}, {O, T}, {Y, SIN}}, u"(1=0 OR (X=:var1 OR X=:var2) OR X=:var3 OR 1=0) AND Y=:var4"},
      {{{O, A}, {O, T}}, u"(X=:var1 OR X=:var2) AND Y=:var3"},
      {{{Y, SIN}, {O, SIN}, {Y, SIN}}, u"(1=0 OR X=:var1 AND X=:var2 OR X=:var3 OR 1=0) AND Y=:var4"},
      {{{Y, SIN}, {O, A}, {Y, SIN}}, u"X=:var1 AND (X=:var2 OR X=:var3 OR 1=0) AND Y=:var4"},
      {{{O, SIN}, {Y, T}}, u"(1=0 OR X=:var1 OR X=:var2) AND Y=:var3"},
  };
  for (const Caso& caso : casos) {
    auto f = std::make_unique<TParametrosFiltro>(u"T");
    f->ParamWhere.push_back(nullptr);
    for (const auto& [conector, grupo] : caso.condiciones)
      f->AgregaFiltro(u"X", ftInteger, 1, IGUAL, conector, grupo, true);
    Consulta c(std::move(f));
    EXPECT_EQ(UTF8Encode(Donde(c.donde("Y").igual(2))), UTF8Encode(caso.esperada));
  }
  auto f = std::make_unique<TParametrosFiltro>(u"T");
  f->FilterTextPers = u"P=1";
  Consulta c(std::move(f));
  EXPECT_THROW(c.sql("Q=1"), EInvalidOperation);
  c.filtro().FiltroPActivo = 1;
  EXPECT_THROW(c.donde("Y").igual(2), EInvalidOperation);
  EXPECT_EQ(c.sql("Q=1").sentencia().texto, u"SELECT  *  from T  WHERE (P=1) AND (Q=1)");
}

TEST(ConsultaGuardada, IsWholeOrRefused) {
  const pruebas::CarpetaTemporal carpeta;
  const UnicodeString archivo = carpeta.Archivo("consulta.ini");
  EXPECT_EQ(pruebas::MensajeDe([&] { LeeConsulta(archivo); }),
            "El archivo \"" + UTF8Encode(archivo) + "\" no tiene una consulta");
  TParametrosFiltro f(u"T");
  f.Distinct = true;
  f.OrdDesc = true;
  f.OrderBy = u"A, B";
  f.AgregaHaving(u"MIN(N)", ftInteger, Variant::Null(), IGUAL, Y, SIN, true);
  f.AgregaHaving(u"MAX(N)", ftString, u"a%", LIKE, Y, SIN, true);
  TParametrosFiltro& u = *f.AgregaUnion(u"U");
  u.Distinct = true;
  u.SetOrderBy(u"C");
  u.SetOrderBy(u"C");
  carpeta.Escribe("consulta.ini", "; mía\r\n[Vista1]\r\nAncho=7\r\nOrdenadoPor=Z\r\nDescendente=TRUE\r\n");
  GuardaConsulta(f, archivo);
  const UnicodeString texto = f.DameSentenciaSQL(true, 0);
  EXPECT_EQ(LeeConsulta(archivo)->DameSentenciaSQL(true, 0), texto);
  const std::string bytes = carpeta.Lee("consulta.ini");
  EXPECT_TRUE(bytes.starts_with("; mía\r\n[Vista1]\r\nAncho=7\r\nOrdenadoPor=A, B\r\nDescendente=TRUE\r\n"));
  EXPECT_NE(bytes.find("\r\n[SELECT]\r\nDistinct=TRUE\r\n\r\n[TABLAPIV]"), std::string::npos) << bytes;
  // What another program saves over it keeps neither DISTINCT nor a partner's order.
  f.SaveToIni(archivo, 0);
  EXPECT_EQ(LeeConsulta(archivo)->DameSentenciaSQL(true, 0),
            u"SELECT  *  from T  HAVING MIN(N)=:hav1 AND  UPPER( MAX(N))  LIKE  UPPER( :hav2)  UNION SELECT  "
            u"*  from U  ORDER "
            u"BY A, B DESC");
  GuardaConsulta(f, archivo);
  EXPECT_EQ(carpeta.Lee("consulta.ini"), bytes);

  const std::function<void(TParametrosFiltro&)> malas[] = {
      [](TParametrosFiltro& x) { x.NombreTabla = u" T"; },
      [](TParametrosFiltro& x) { x.NombreTabla.clear(); },
      [](TParametrosFiltro& x) { x.OrderBy = u"A\nB"; },
      [](TParametrosFiltro& x) { x.AgregaFiltro(u"N ", ftInteger, 1, IGUAL, Y, SIN, true); },
      [](TParametrosFiltro& x) { x.AgregaFiltro(u"N", ftInteger, 1, BETWEEN, Y, SIN, true); },
  };
  for (const auto& mala : malas) {
    TParametrosFiltro otra(u"T");
    mala(otra);
    EXPECT_THROW(GuardaConsulta(otra, archivo), EInvalidOperation);
    EXPECT_EQ(carpeta.Lee("consulta.ini"), bytes);
  }
  try {
    GuardaConsulta(f, carpeta.Archivo("nada/consulta.ini"));
    ADD_FAILURE() << "nothing thrown";
  } catch (const EStreamError& e) {
    EXPECT_TRUE(std::string_view(e.what()).ends_with("consulta.ini\": la carpeta no existe")) << e.what();
  }
  // Without an order what the view said is gone.
  Consulta("T").guarda(archivo);
  EXPECT_EQ(Consulta::lee(archivo).sentencia().texto, u"SELECT  *  from T ");
}

}  // namespace
}  // namespace vel::facil
