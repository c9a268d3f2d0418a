#include "Fechas/TConfigVEL.h"

#include <gtest/gtest.h>

#include "tests/CarpetaTemporal.h"

namespace vel {
namespace {

const TDateTime kHoy = EncodeDate({2024, 5, 15});

TEST(Macros, MoveTheDate) {
  const pruebas::CarpetaTemporal c;
  const TConfigVEL config(c.Archivo("nada.ini"), kHoy);
  const struct {
    Fecha de;
    const char16_t* macro;
    Fecha a;
    bool valida;
  } casos[] = {
      {{15, 5, 2024}, u"1/0/0", {1, 5, 2024}, true},       {{15, 5, 2024}, u"31/0/0", {31, 5, 2024}, true},
      {{15, 5, 2024}, u"31/2/0", {29, 2, 2024}, true},     {{15, 5, 2024}, u"1/1/0", {1, 1, 2024}, true},
      {{15, 5, 2024}, u"1/-1/0", {1, 4, 2024}, true},      {{15, 5, 2024}, u"31/12/-1", {31, 12, 2023}, true},
      {{15, 5, 2024}, u"-7/0/0", {8, 5, 2024}, true},      {{15, 5, 2024}, u"?/?/?", {15, 5, 2024}, true},
      {{15, 3, 2024}, u"1/-5/0", {1, 10, 2023}, true},     {{31, 3, 2024}, u"31/-1/0", {29, 2, 2024}, true},
      {{5, 3, 2024}, u"-31/0/0", {3, 2, 2024}, true},      {{1, 12, 2024}, u"0/-12/0", {1, 12, 2023}, true},
      {{31, 3, 2024}, u"0/2/0", {31, 2, 2024}, true},      {{31, 3, 2024}, u"-1/2/0", {1, 3, 2024}, true},
      {{29, 2, 2024}, u"31/0/1900", {29, 2, 1900}, true},  {{15, 5, 2024}, u"32/0/0", {15, 5, 2024}, false},
      {{15, 5, 2024}, u"1/13/0", {15, 5, 2024}, false},    {{15, 5, 2024}, u"1/1", {15, 5, 2024}, false},
      {{15, 5, 2024}, u"1/1/99999", {15, 5, 2024}, false}, {{15, 5, 2024}, u"", {15, 5, 2024}, false},
      {{15, 5, 2024}, u"2x/0/0", {15, 5, 2024}, false},    {{15, 5, 2024}, u"1/1/1/1", {15, 5, 2024}, false}};
  for (const auto& caso : casos) {
    Fecha f = caso.de;
    EXPECT_EQ(config.InterpretaFecha(f, caso.macro), caso.valida) << UTF8Encode(caso.macro);
    EXPECT_EQ(f, caso.a) << UTF8Encode(caso.macro);
  }
  short valor = 9;
  EXPECT_FALSE(config.EvalCad(valor, 1, u"-13"));
  EXPECT_EQ(valor, 0);
}

TEST(TConfigVEL, LoadsItsRanges) {
  const pruebas::CarpetaTemporal c;
  c.Escribe("f.ini",
            "[FECHAS]\nTOTAL=6\nFch0=Este mes,1/0/0,31/0/0\nFch2=sin "
            "comas\nFch3=,1/0/0,1/0/0\nFch4=Imposible,0/2/0,31/2/0\nFch5=Fin,31/12/0\n");
  TConfigVEL* const config = CreaManejoFechas(c.Archivo("f.ini"), EncodeDate({2024, 5, 31}));
  EXPECT_EQ(config->NumeroFormatos(), 6);
  EXPECT_EQ(config->LocalizaMacro(u"Este mes"), 0);
  EXPECT_EQ(config->LocalizaMacro(u"este mes"), -1);
  EXPECT_EQ(config->FechaComoString(0, 1), u"01/05/2024");
  EXPECT_EQ(config->FechaComoDateTime(u"Este mes", 2), EncodeDate({2024, 5, 31}));
  for (const int vacio : {1, 2, 3}) {
    EXPECT_EQ(config->Nombres(vacio), u"");
    EXPECT_EQ(config->FechaComoDateTime(vacio, 1).Val(), 0);
  }
  EXPECT_EQ(config->FechaComoString(4, 1), u"31/02/2024");
  EXPECT_EQ(config->FechaComoDateTime(4, 1).Val(), 0) << "an impossible day";
  EXPECT_EQ(config->FechaComoString(4, 2), u"29/02/2024");
  EXPECT_EQ(config->FechaComoString(5, 1), u"31/05/2024") << "no start macro";
  EXPECT_EQ(config->FechaComoString(5, 2), u"31/12/2024");
  for (const int fuera : {-1, 6, 7}) {
    EXPECT_EQ(config->Nombres(fuera), u"");
    EXPECT_EQ(config->FechaComoString(fuera, 1), u"");
    EXPECT_EQ(config->FechaComoDateTime(fuera, 1).Val(), 0);
  }
  EXPECT_TRUE(config->EsRangoActual(u"a", u"b", u"a", u"b"));
  EXPECT_FALSE(config->EsRangoActual(u"a", u"b", u"a", u"c"));
  DestruyeManejoFechas(config);
  for (const char* total : {"-1", "2000000000", "x", ""}) {
    c.Escribe("f.ini", std::string("[FECHAS]\nTOTAL=") + total + "\n");
    EXPECT_EQ(TConfigVEL(c.Archivo("f.ini"), kHoy).NumeroFormatos(), 0) << total;
  }
  TConfigVEL* const hoy = CreaManejoFechas(c.Archivo("nada.ini"));
  Fecha f;
  hoy->FechaDeHoy(&f);
  EXPECT_GE(f.anio, 2024);
  DestruyeManejoFechas(hoy);
}

}  // namespace
}  // namespace vel
