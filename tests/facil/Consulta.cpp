// Queries in words against the same queries built by hand.

#include "facil/Consulta.h"

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

// A condition in words and as the arguments of AgregaFiltro, or a group.
struct Nodo {
  bool fuera = false;
  UnicodeString campo;
  std::function<void(Condicion<Grupo>&)> enPalabras;
  TFieldType tipo = ftString;
  Variant valor;
  ENUM_OPERADOR op = IGUAL;
  bool sensitive = true;
  std::optional<ENUM_COINCIDENCIA> patron;

  std::vector<Nodo> hijos;
  ENUM_CONECTOR conector = Y;
  bool EsGrupo() const { return !enPalabras; }
};

class Azar {
 public:
  explicit Azar(std::uint32_t semilla) : motor_(semilla) {}
  int De(int cuantos) { return static_cast<int>(motor_() % static_cast<unsigned>(cuantos)); }

  Nodo Hoja() {
    const int n = De(2000) - 1000;
    const std::int64_t largo = n * 10'000'000'000;
    const double real = n / 8.0;
    const UnicodeString texto = u"Peña 50%_/ 😀" + IntToStr(n);
    const std::string utf8 = UTF8Encode(texto);
    const TDateTime fecha = TDateTime(45000 + n);
    const year_month_day dia = ADia(fecha);
    using C = Condicion<Grupo>;
    const auto hoja = [&](auto dice, TFieldType tipo, Variant valor, ENUM_OPERADOR op,
                          bool sensitive = true) {
      return Nodo{De(5) == 0, u"T.C" + IntToStr(De(9)), dice, tipo, std::move(valor), op, sensitive, {}, {}};
    };
    const auto lista = [&](auto dice, TFieldType tipo, std::vector<Variant> valores, ENUM_OPERADOR op) {
      return hoja(dice, tipo, VarArrayOf(std::move(valores)), op, false);
    };
    const auto patron = [&](auto dice, ENUM_COINCIDENCIA donde, bool sensitive) {
      Nodo nodo = hoja(dice, ftString, Variant(texto), LIKE, sensitive);
      nodo.patron = donde;
      return nodo;
    };
    using enum ENUM_COINCIDENCIA;
    // clang-format off
    switch (De(20)) {
      case 0:  return hoja([=](C& c) { c.igual(n); }, ftInteger, n, IGUAL);
      case 1:  return hoja([=](C& c) { c.diferente(largo); }, ftInteger, largo, DIFERENTE);
      case 2:  return hoja([=](C& c) { c.mayor(real); }, ftFloat, real, MAYOR);
      case 3:  return hoja([=](C& c) { c.menorIgual(texto); }, ftString, Variant(texto), MENOR_IGUAL);
      case 4:  return hoja([=](C& c) { c.igual(utf8.c_str()); }, ftString, Variant(texto), IGUAL);
      case 5:  return hoja([=](C& c) { c.igual(n > 0); }, ftBoolean, n > 0, IGUAL);
      case 6:  return hoja([=](C& c) { c.menor(dia); }, ftDateTime, fecha, MENOR);
      case 7:  return hoja([=](C& c) { c.mayorIgual(Variant(fecha)); }, ftDateTime, fecha, MAYOR_IGUAL);
      case 8:  return hoja([=](C& c) { c.igual(Sql("T.X")); }, ftDataSet, u"T.X", IGUAL);
      case 9:  return hoja([=](C& c) { c.esNulo(); }, ftString, {}, ISNULL);
      case 10: return hoja([=](C& c) { c.noEsNulo(); }, ftString, {}, NOTNULL);
      case 11: return lista([=](C& c) { c.entre(dia, fecha); }, ftDateTime, {fecha, fecha}, BETWEEN);
      case 12: return lista([=](C& c) { c.entre(n, real); }, ftFloat, {n, real}, BETWEEN);
      case 13: return hoja([=](C& c) { c.entre(std::optional<int>(), n); }, ftInteger, n, MENOR_IGUAL);
      case 14: return lista([=](C& c) { c.en({utf8, std::string("B")}); }, ftString, {texto, u"B"}, INN);
      case 15: return lista([=](C& c) { c.noEn(std::vector{n, 1}); }, ftInteger, {n, 1}, NOTIN);
      case 16: return hoja([=](C& c) { c.en(Sql("SELECT 1")); }, ftDataSet, u"SELECT 1", INN);
      case 17: return patron([=](C& c) { c.contiene(utf8); }, CONTIENE, false);
      case 18: return patron([=](C& c) { c.empieza(texto, Letras::ComoEstan); }, EMPIEZA, true);
      default: return patron([=](C& c) { c.termina(std::optional(texto)); }, TERMINA, false);
    }
    // clang-format on
  }

  Nodo Arbol(int nivel, ENUM_CONECTOR conector) {
    Nodo grupo;
    grupo.conector = conector;
    for (int i = De(5); i > 0; --i) {
      grupo.hijos.push_back(nivel > 0 && De(2) == 0 ? Arbol(nivel - 1, De(3) == 0 ? Y : O) : Hoja());
    }
    return grupo;
  }

 private:
  std::mt19937 motor_;
};

void Llena(Grupo& g, const Nodo& grupo) {
  for (const Nodo& n : grupo.hijos) {
    if (!n.EsGrupo()) {
      n.enPalabras(g.donde(n.campo).si(!n.fuera));
    } else if (n.conector == O) {
      g.alguna([&n](auto& h) { Llena(h, n); });
    } else {
      g.todas([&n](auto& h) { Llena(h, n); });
    }
  }
}

// A condition with the parentheses before and after it, as one would write them.
struct Pieza {
  const Nodo* nodo;
  int abren = 0;
  int cierran = 0;
  ENUM_CONECTOR conector = Y;
};

std::vector<Pieza> Piezas(const Nodo& n, ENUM_CONECTOR afuera, int& cuenta) {
  cuenta = n.EsGrupo() || n.fuera ? 0 : 1;
  if (!n.EsGrupo()) return n.fuera ? std::vector<Pieza>() : std::vector{Pieza{&n}};
  std::vector<Pieza> todas;
  for (const Nodo& hijo : n.hijos) {
    int suyas = 0;
    const std::vector<Pieza> otras = Piezas(hijo, n.conector, suyas);
    if (otras.empty()) continue;
    if (!todas.empty()) todas.back().conector = n.conector;
    todas.insert(todas.end(), otras.begin(), otras.end());
    cuenta += hijo.EsGrupo() && hijo.conector == n.conector ? suyas : 1;
  }
  if (n.conector == O && afuera == Y && cuenta > 1) {
    ++todas.front().abren;
    ++todas.back().cierran;
  }
  return todas;
}

void AMano(TParametrosFiltro& f, const Nodo& grupo, bool having) {
  const auto agrega = [&](const Nodo& n, ENUM_CONECTOR con, ENUM_GRUPO marca) {
    if (n.patron.has_value() && having) {
      f.AgregaHavingLIKE(n.campo, *n.valor.TextPtr(), *n.patron, con, marca, n.sensitive);
    } else if (n.patron.has_value()) {
      f.AgregaFiltroLIKE(n.campo, *n.valor.TextPtr(), *n.patron, con, marca, n.sensitive);
    } else if (having) {
      f.AgregaHaving(n.campo, n.tipo, n.valor, n.op, con, marca, n.sensitive);
    } else {
      f.AgregaFiltro(n.campo, n.tipo, n.valor, n.op, con, marca, n.sensitive);
    }
  };
  Nodo neutra;
  neutra.campo = u"1";
  neutra.tipo = ftDataSet;
  neutra.valor = u"0";
  int cuenta = 0;
  for (const Pieza& p : Piezas(grupo, Y, cuenta)) {
    for (int i = 1; i < p.abren; ++i) agrega(neutra, O, ENUM_GRUPO::INICIA);
    const Nodo& n = *p.nodo;
    const ENUM_GRUPO marca = p.abren > 0 ? ENUM_GRUPO::INICIA : p.cierran > 0 ? ENUM_GRUPO::TERMINA : SIN;
    const ENUM_CONECTOR con = p.cierran > 1 ? O : p.conector;
    agrega(n, con, marca);
    for (int i = 1; i < p.cierran; ++i)
      agrega(neutra, i + 1 < p.cierran ? O : p.conector, ENUM_GRUPO::TERMINA);
  }
}

struct Pareja {
  Consulta enPalabras;
  std::unique_ptr<TParametrosFiltro> aMano;
};

Pareja Inventa(Azar& azar, bool conOrden) {
  Pareja p{Consulta("TABLA_Ñ T"), std::make_unique<TParametrosFiltro>(u"TABLA_Ñ T")};
  p.enPalabras.filtro().FechaTrabajo = p.aMano->FechaTrabajo = TDateTime(conOrden ? 45425 : 1);
  for (int i = azar.De(3); i > 0; --i) {
    p.enPalabras.campo("SUM(Á)", u"A", i > 1);
    p.aMano->AgregaCampoSelect(u"SUM(Á)", u"A", i > 1);
  }
  for (int i = azar.De(3); i > 0; --i) {
    p.enPalabras.join("JOIN D");
    p.aMano->AgregaJoin(u"JOIN D");
  }
  const Nodo where = azar.Arbol(4, Y);
  p.enPalabras.todas([&](Grupo& g) { Llena(g, where); });
  AMano(*p.aMano, where, false);
  if (azar.De(4) == 0) {
    p.enPalabras.existe(Sql("SELECT 2"));
    p.aMano->AgregaFiltro(u"", ftDataSet, u"SELECT 2", EXISTS, Y, SIN, true);
  }
  if (azar.De(3) == 0) {
    p.enPalabras.agrupa("A").agrupa("B");
    p.aMano->GroupBy = u"A, B";
    const Nodo having = azar.Arbol(2, O);
    p.enPalabras.havingAlguna([&](Grupo& g) { Llena(g, having); });
    AMano(*p.aMano, having, true);
  }
  if (azar.De(4) == 0) {
    p.enPalabras.sql("U > 1").sql("V > 2");
    p.aMano->FilterTextPers = u"(U > 1) AND (V > 2)";
    p.aMano->FiltroPActivo = 2;
  }
  p.aMano->Distinct = azar.De(2) == 0;
  p.enPalabras.distintos(p.aMano->Distinct);
  for (auto n = azar.De(3) == 0 ? 1 + azar.De(2) : 0; n > 0; --n) {
    Pareja otra = Inventa(azar, false);
    p.enPalabras.unionCon(std::move(otra.enPalabras));
    TParametrosFiltro* ultima = p.aMano.get();
    while (ultima->ParametrosUnion != nullptr) ultima = ultima->ParametrosUnion.get();
    ultima->ParametrosUnion = std::move(otra.aMano);
    for (TParametrosFiltro* f = p.aMano.get(); f != nullptr; f = f->ParametrosUnion.get())
      f->FechaTrabajo = p.aMano->FechaTrabajo;
  }
  if (conOrden && azar.De(2) == 0) {
    p.enPalabras.ordena("A").ordenaDesc("B");
    p.aMano->OrderBy = u"A, B";
    p.aMano->OrdDesc = true;
    if (azar.De(2) == 0) {
      p.enPalabras.ordena("C");
      p.aMano->OrderBy = u"A, B DESC, C";
      p.aMano->OrdDesc = false;
    }
  }
  return p;
}

bool ConLiterales(const TParametrosFiltro& f) {
  for (const auto* lista : {&f.ParamWhere, &f.ParamHaving}) {
    for (const auto& c : *lista) {
      if (c->Operador == LIKE || c->TipoCampo == ftBoolean) return false;
    }
  }
  return f.ParametrosUnion == nullptr || ConLiterales(*f.ParametrosUnion);
}

TEST(Consulta, IsToTheByteWhatIsBuiltByHand) {
  Azar azar(20240513);
  int literales = 0;
  const pruebas::CarpetaTemporal carpeta;
  const UnicodeString archivo = carpeta.Archivo("consulta.ini");
  for (int vez = 0; vez < 10'000; ++vez) {
    const auto estilo = static_cast<ENUM_MARCADOR>(vez % 4);
    Pareja p = Inventa(azar, true);
    TParams parametros;
    const UnicodeString texto = p.aMano->DameSentenciaSQL(estilo, vez, parametros);
    const Sentencia sentencia = p.enPalabras.sentencia(estilo, vez);
    ASSERT_EQ(sentencia.utf8(), UTF8Encode(texto)) << vez;
    ASSERT_TRUE(std::equal(sentencia.parametros.begin(), sentencia.parametros.end(), parametros.begin(),
                           parametros.end()));
    ASSERT_TRUE(EscribeRemotableXML(p.enPalabras.filtro(), u"F") == EscribeRemotableXML(*p.aMano, u"F"))
        << sentencia.utf8();
    if (ConLiterales(*p.aMano)) {
      ++literales;
      ASSERT_EQ(p.enPalabras.literal(), p.aMano->DameSentenciaSQL(false, 0));
    } else {
      ASSERT_THROW(p.enPalabras.literal(), EInvalidOperation);
    }
    if (vez % 200 != 0) continue;
    p.enPalabras.guarda(archivo);
    const Sentencia leida = Consulta::lee(archivo).sentencia(estilo, vez);
    ASSERT_EQ(leida.utf8(), sentencia.utf8());
    ASSERT_TRUE(
        std::equal(leida.parametros.begin(), leida.parametros.end(), parametros.begin(), parametros.end()));
    TParametrosFiltro comun(u"");
    comun.LoadFromIni(archivo, 0);
    for (TParametrosFiltro *c = &comun, *f = p.aMano.get(); f != nullptr;
         c = c->ParametrosUnion.get(), f = f->ParametrosUnion.get()) {
      c->Distinct = f->Distinct;
    }
    ASSERT_EQ(comun.DameSentenciaSQL(estilo, vez, parametros), texto);
  }
  EXPECT_GT(literales, 500);
}

// Whether the statement's text holds, each column being true or not. AND binds tighter than OR.
class Lector {
 public:
  Lector(std::u16string_view texto, unsigned verdades) : resto_(texto), verdades_(verdades) {}
  bool Alternativas() {
    bool vale = Juntas();
    while (Toma(u" OR ")) vale = Juntas() || vale;
    return vale;
  }
  bool Acabo() const { return resto_.empty(); }

 private:
  bool Juntas() {
    bool vale = Una();
    while (Toma(u" AND ")) vale = Una() && vale;
    return vale;
  }
  bool Una() {
    if (Toma(u"(")) {
      const bool vale = Alternativas();
      EXPECT_TRUE(Toma(u")"));
      return vale;
    }
    if (Toma(u"1=0")) return false;
    EXPECT_TRUE(Toma(u"C"));
    const unsigned columna = resto_[0] - u'a';
    resto_.remove_prefix(1);
    EXPECT_TRUE(Toma(u"=1"));
    return (verdades_ >> columna & 1) != 0;
  }
  bool Toma(std::u16string_view texto) {
    if (resto_.substr(0, texto.size()) != texto) return false;
    resto_.remove_prefix(texto.size());
    return true;
  }

  std::u16string_view resto_;
  unsigned verdades_;
};

// What the groups mean; nothing for one whose conditions were all left out.
std::optional<bool> Vale(const Nodo& n, unsigned verdades) {
  if (!n.EsGrupo()) {
    return n.fuera ? std::nullopt : std::optional((verdades >> (n.campo[1] - u'a') & 1) != 0);
  }
  std::optional<bool> vale;
  for (const Nodo& hijo : n.hijos) {
    const std::optional<bool> suyo = Vale(hijo, verdades);
    if (!suyo.has_value()) continue;
    vale = !vale.has_value() ? suyo : n.conector == Y ? *vale && *suyo : *vale || *suyo;
  }
  return vale;
}

void PonColumnas(Nodo& n, Azar& azar) {
  if (n.EsGrupo()) {
    for (Nodo& hijo : n.hijos) PonColumnas(hijo, azar);
  } else {
    n.campo = u"C" + UnicodeString(1, static_cast<char16_t>(u'a' + azar.De(16)));
    n.enPalabras = [](Condicion<Grupo>& c) { c.igual(1); };
  }
}

TEST(Consulta, GroupsMeanWhatTheySayHoweverDeep) {
  Azar azar(7);
  int neutras = 0;
  for (int vez = 0; vez < 2'000; ++vez) {
    Nodo arbol;
    arbol.hijos.push_back(azar.Arbol(6, vez % 2 == 0 ? Y : O));
    PonColumnas(arbol, azar);
    Consulta c(u"T");
    c.todas([&](Grupo& g) { Llena(g, arbol); });
    int numero = 0;
    const UnicodeString texto = c.filtro().DameCondWhere(false, numero);
    if (texto.find(u"1=0") != UnicodeString::npos) ++neutras;
    for (int i = 0; i < 20; ++i) {
      const auto verdades = static_cast<unsigned>(azar.De(1 << 16));
      const std::optional<bool> vale = Vale(arbol, verdades);
      ASSERT_EQ(texto.empty(), !vale.has_value());
      if (texto.empty()) break;
      Lector lector(texto, verdades);
      ASSERT_EQ(lector.Alternativas(), *vale) << UTF8Encode(texto);
      ASSERT_TRUE(lector.Acabo()) << UTF8Encode(texto);
    }
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
  // Without an order what the view said is gone.
  Consulta("T").guarda(archivo);
  EXPECT_EQ(Consulta::lee(archivo).sentencia().texto, u"SELECT  *  from T ");
}

}  // namespace
}  // namespace vel::facil
