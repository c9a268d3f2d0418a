#include "Fechas/TConfigVEL.h"

#include <gtest/gtest.h>
#include <sstream>

#include "tests/CarpetaTemporal.h"
#include "tests/Casos.h"
#include "tests/Reales.h"

namespace vel {
namespace {

const TDateTime kHoy = EncodeDate({2024, 5, 15});

TEST(Macros, MoveTheDate) {
  const pruebas::CarpetaTemporal c;
  const TConfigVEL config(c.Archivo("nada.ini"), kHoy);
  for (const auto& caso : pruebas::Casos("textos/macros.txt", "|")) {
    const auto fecha = [](const std::string& texto) {
      Fecha f;
      pruebas::Entrada(texto) >> f.dia >> f.mes >> f.anio;
      return f;
    };
    Fecha f = fecha(caso.at(0));
    EXPECT_EQ(config.InterpretaFecha(f, UTF8ToString(caso.at(1))), caso.size() == 3) << caso[1];
    EXPECT_EQ(f, fecha(caso.at(2))) << caso[0] << " " << caso[1];
  }
  short valor = 9;
  EXPECT_FALSE(config.EvalCad(valor, 1, u"-13"));
  EXPECT_EQ(valor, 0);
}

TEST(TConfigVEL, LoadsItsRanges) {
  const pruebas::CarpetaTemporal c;
  c.Escribe("f.ini",
            "[FECHAS]\nTOTAL=12\nFch11=Doce,1/1/0,1/1/0\nFch0=Este mes,1/0/0,31/0/0\nFch2=sin "
            "comas\nFch3=,1/0/0,1/0/0\nFch4=Imposible,0/2/0,31/2/0\nFch5=Fin,31/12/0\n");
  TConfigVEL* const config = CreaManejoFechas(c.Archivo("f.ini"), EncodeDate({2024, 5, 31}));
  EXPECT_EQ(config->NumeroFormatos(), 12);
  EXPECT_EQ(config->FechaComoString(11, 1), u"01/01/2024");
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
  for (const int fuera : {-1, 12, 13}) {
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
