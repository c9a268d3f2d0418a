#include "platform/windows/ConciliaZonas.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "framework/Texto.h"
#include "platform/ReglasZona.h"
#include "platform/Tzif.h"
#include "platform/windows/TablaZonas.h"
#include "tests/Casos.h"
#include "tests/Reales.h"

namespace vel {
namespace {

namespace crono = std::chrono;

std::int64_t Utc(int anio, unsigned mes, unsigned dia, int hora = 0, int minuto = 0, int segundo = 0) {
  const crono::sys_days d{crono::year{anio} / crono::month{mes} / crono::day{dia}};
  return crono::sys_seconds{d}.time_since_epoch().count() + (hora * 60 + minuto) * 60 + segundo;
}

int Horas(const ZonaHoraria& zona, std::int64_t utc) { return DesfaseEnUtc(zona, utc).segundos / 3600; }

ZonaHoraria PorRegla(const char* regla) {
  ZonaHoraria zona;
  EXPECT_TRUE(LeeReglaPosix(regla, zona)) << regla;
  zona.inicial = zona.estandar;
  return zona;
}

// Central Mexico until 2022: from the first Sunday of April to the last of October; and since.
constexpr FechaTzi kAbril{0, 4, 0, 1, 2, 0, 0, 0};
constexpr FechaTzi kOctubre{0, 10, 0, 5, 2, 0, 0, 0};
constexpr RegistroTzi kConVerano{360, 0, -60, kOctubre, kAbril};
constexpr RegistroTzi kSinVerano{360, 0, -60, {}, {}};
const char* const kReglaConVerano = "CST6CDT,M4.1.0,M10.5.0";

// Summer time in the years given, each change written out, and none before or after them.
ZonaHoraria ConVerano(int desde, int hasta) {
  ZonaHoraria zona = PorRegla("CST6");
  const ZonaHoraria::Verano verano = *PorRegla(kReglaConVerano).verano;
  for (int anio = desde; anio <= hasta; ++anio) {
    zona.cambios.push_back({MomentoDeRegla(verano.comienza, anio) + 6 * 3600, verano.desfase});
    zona.cambios.push_back({MomentoDeRegla(verano.termina, anio) + 5 * 3600, zona.estandar});
  }
  return zona;
}

// Each change comes after the one before and is one.
void ExigeOrden(const ZonaHoraria& zona, const char* nombre) {
  for (std::size_t i = 1; i < zona.cambios.size(); ++i) {
    EXPECT_LT(zona.cambios[i - 1].momento, zona.cambios[i].momento) << nombre;
    EXPECT_NE(zona.cambios[i - 1].desfase, zona.cambios[i].desfase)
        << nombre << ' ' << zona.cambios[i].momento;
  }
}

// "with" and "without" summer time, for ever or in the years given.
ZonaHoraria TablaDe(const std::string& texto) {
  if (texto == "with") return PorRegla(kReglaConVerano);
  if (texto == "without") return PorRegla("CST6");
  return ConVerano(std::stoi(texto), std::stoi(texto.substr(5)));
}

// What the system has: its rule of today, which counts only where it has no years, and "year rule" for those.
ZonaSistema SistemaDe(const std::string& hoy, const std::string& anios, const std::string& edicion) {
  const auto registro = [](const std::string& regla) { return regla == "with" ? kConVerano : kSinVerano; };
  ZonaSistema sistema{registro(hoy), {}, std::stoi(edicion)};
  std::istringstream partes = pruebas::Entrada(anios);
  std::string regla;
  for (int anio = 0; partes >> anio >> regla;) sistema.porAnio[anio] = registro(regla);
  return sistema;
}

TEST(Concilia, BelievesTheSystemOnlyWhereItIsNewer) {
  for (const auto& c : pruebas::Casos("zonas/concilia.txt", " | ")) {
    ASSERT_EQ(c.size(), 8U) << c[0];
    const int anioTabla = std::stoi(c[2]);
    const ZonaHoraria zona = Concilia(TablaDe(c[1]), anioTabla, std::stoi(c[3]), SistemaDe(c[4], c[5], c[6]));
    std::istringstream julio = pruebas::Entrada(c[7]);
    int horas = 0;
    for (int i = 0; julio >> horas; ++i)
      EXPECT_EQ(Horas(zona, Utc(anioTabla + i, 7, 1)), horas) << c[0] << ' ' << i;
    EXPECT_EQ(Horas(zona, Utc(2060, 7, 1)), horas) << c[0];
    EXPECT_EQ(Horas(zona, Utc(2060, 1, 1)), -6) << c[0];
    ExigeOrden(zona, c[0].c_str());
  }
  const ZonaHoraria con = PorRegla(kReglaConVerano);
  RegistroTzi enMarzo = kConVerano;
  enMarzo.verano = {0, 3, 0, 2, 2, 0, 0, 0};
  // Weeks are news even where summer stays summer.
  const ZonaHoraria zona = Concilia(con, 2025, 2026, {enMarzo, {{2026, kConVerano}, {2027, enMarzo}}, 0});
  EXPECT_EQ(Horas(zona, Utc(2026, 3, 20)), -6);
  EXPECT_EQ(Horas(zona, Utc(2027, 3, 20)), -5);
  EXPECT_EQ(Horas(zona, Utc(2050, 3, 20)), -5);
}

TEST(Concilia, KeepsTheTableToTheSecondBeforeThat) {
  ZonaHoraria tabla = PorRegla("<-03>3<-02>,M10.2.0/0,M2.3.0/0");
  tabla.inicial = {-4 * 3600, false};
  tabla.cambios.push_back({Utc(2000, 3, 1), tabla.estandar});
  // Hours later than the table has it, which are no news.
  const RegistroTzi sur{180, 0, -60, {0, 2, 0, 3, 5, 0, 0, 0}, {0, 10, 0, 2, 5, 0, 0, 0}};
  const RegistroTzi sin{180, 0, -60, {}, {}};
  const ZonaHoraria zona = Concilia(tabla, 2022, 2023, {sin, {{2022, sur}, {2024, sin}}, 0});
  for (std::int64_t t = Utc(1990, 1, 1); t < Utc(2024, 1, 1, 2); t += 1800)
    ASSERT_EQ(DesfaseEnUtc(zona, t), DesfaseEnUtc(tabla, t)) << t;
  ExigeOrden(zona, "");
  // Summer, in which the last year begins, ends with it.
  EXPECT_EQ(Horas(zona, Utc(2024, 1, 1, 1, 59, 59)), -2);
  EXPECT_EQ(Horas(zona, Utc(2024, 1, 1, 2)), -3);
  EXPECT_EQ(Horas(zona, Utc(2030, 1, 1)), -3);
}

TEST(DeSistema, ReadsTheFormsOfRecords) {
  // As Greenland's are written: "winter" begins with the year 2023 and the zone moves in 2024.
  const RegistroTzi hasta{180, 0, -60, {0, 10, 6, 5, 23, 0, 0, 0}, {0, 3, 6, 5, 22, 0, 0, 0}};
  const RegistroTzi muda{180, 0, -60, {0, 1, 0, 1, 0, 0, 0, 0}, {0, 3, 6, 5, 22, 0, 0, 0}};
  const RegistroTzi luego{120, 0, -60, {}, {}};
  const ZonaHoraria zona = DeSistema({luego, {{2022, hasta}, {2023, muda}, {2024, luego}}, 0});
  const std::pair<std::int64_t, int> esperado[] = {
      {Utc(1960, 7, 1), -3}, {Utc(1995, 7, 1), -2},  {Utc(1995, 12, 1), -3},    {Utc(2022, 12, 31), -3},
      {Utc(2023, 1, 2), -3}, {Utc(2023, 3, 26), -3}, {Utc(2023, 3, 26, 1), -2}, {Utc(2023, 12, 31, 23), -2},
      {Utc(2024, 1, 2), -2}, {Utc(2050, 1, 1), -2}};
  for (const auto& [utc, horas] : esperado) EXPECT_EQ(Horas(zona, utc), horas) << utc;
  ExigeOrden(zona, "");
  // A day of one year alone; the last millisecond of a day; a zone without years; seasons without days.
  const RegistroTzi unaVez{0, 0, -60, {2025, 8, 0, 31, 3, 0, 0, 0}, {2025, 5, 0, 1, 3, 0, 0, 0}};
  const ZonaHoraria una = DeSistema({unaVez, {{2025, unaVez}}, 0});
  EXPECT_EQ(Horas(una, Utc(1980, 6, 1)), 0);
  EXPECT_EQ(Horas(una, Utc(2025, 8, 31, 1, 59, 59)), 1);
  EXPECT_EQ(Horas(una, Utc(2025, 8, 31, 2)), 0);
  EXPECT_EQ(Horas(una, Utc(2026, 6, 1)), 0);
  RegistroTzi medianoche = kConVerano;
  medianoche.verano = {0, 3, 6, 5, 23, 59, 59, 999};
  EXPECT_EQ(Horas(DeSistema({medianoche, {}, 0}), Utc(1980, 3, 30, 5, 59, 59)), -6);
  EXPECT_EQ(Horas(DeSistema({medianoche, {}, 0}), Utc(1980, 3, 30, 6)), -5);
  EXPECT_EQ(Horas(DeSistema({{360, 60, -60, {}, {}}, {}, 0}), Utc(1980, 7, 1)), -6);
}

TEST(LeeTzi, RefusesWhatIsNoRecord) {
  // Pacific time as the system keeps it: 480 minutes, from the second Sunday of March to the first of
  // November.
  std::string bytes(
      "\xE0\x01\0\0\0\0\0\0\xC4\xFF\xFF\xFF\0\0\x0B\0\0\0\1\0\2\0\0\0\0\0\0\0\0\0\3\0\0\0\2\0\2\0\0\0\0\0\0"
      "\0",
      44);
  const std::optional<RegistroTzi> r = LeeTzi(bytes);
  ASSERT_TRUE(r.has_value());
  const ZonaHoraria zona = DeSistema({*r, {}, 0});
  EXPECT_EQ(Horas(zona, Utc(2024, 3, 10, 9, 59, 59)), -8);
  EXPECT_EQ(Horas(zona, Utc(2024, 3, 10, 10)), -7);
  EXPECT_EQ(Horas(zona, Utc(2024, 11, 3, 9)), -8);
  EXPECT_FALSE(LeeTzi(bytes.substr(0, 43)).has_value());
  EXPECT_FALSE(LeeTzi(bytes + '\0').has_value());
  for (const std::size_t i : {1U, 11U, 14U, 16U, 18U, 20U, 22U, 24U}) {
    std::string malo = bytes;
    malo[i] = 0x7F;
    EXPECT_FALSE(LeeTzi(malo).has_value()) << i;
  }
}

TEST(TablaZonas, AgreesWithTheSystemUnderEveryName) {
  std::ifstream fuente(ZONAS "/tzdata.zi");
  if (!fuente) GTEST_SKIP() << "the system has no tz database";
  int nombres = 0;
  for (std::string linea; std::getline(fuente, linea);) {
    if (linea[0] != 'Z' && linea[0] != 'L') continue;
    // "Z name rule", "L name another-name"
    const std::size_t desde = linea[0] == 'Z' ? 2 : linea.find(' ', 2) + 1;
    const std::string nombre = linea.substr(desde, linea.find(' ', desde) - desde);
    const auto sistema = DameZonaIana(UTF8ToString(nombre));
    const std::optional<ZonaHoraria> tabla = LeeTzif(BuscaTablaZonas(nombre));
    ASSERT_TRUE(sistema != nullptr && tabla.has_value()) << nombre;
    std::vector<std::int64_t> momentos;
    for (const ZonaHoraria* zona : {&*sistema, &*tabla}) {
      for (const ZonaHoraria::Cambio& c : zona->cambios)
        momentos.insert(momentos.end(), {c.momento - 1, c.momento});
    }
    for (std::int64_t t = Utc(1850, 1, 1); t < Utc(2100, 1, 1); t += 7 * 86400) momentos.push_back(t);
    for (const std::int64_t t : momentos)
      ASSERT_EQ(DesfaseEnUtc(*tabla, t), DesfaseEnUtc(*sistema, t)) << nombre << ' ' << t;
    ++nombres;
  }
  EXPECT_GT(nombres, 500);
  for (const char* nombre : {"", "America", "America/Ciudad", "utc", "zone.tab"})
    EXPECT_TRUE(BuscaTablaZonas(nombre).empty()) << nombre;
}

}  // namespace
}  // namespace vel
