// The computer's own zone, which a process chooses by TZ.
#include <chrono>
#include <gtest/gtest.h>

#include "facil/facil.h"
#include "tests/apoyo/Sistema.h"

namespace vel::facil {
namespace {

using namespace std::chrono;

TEST(Zonas, HaveTheComputersOwnAmongThem) {
  pruebas::CambiaVariable("TZ", "America/Hermosillo");
  EXPECT_EQ(FechaHoraISO(DeUniversal(sys_days(2024y / May / 13) + 7h, Zona::DeEstaComputadora())),
            u"2024-05-13T00:00:00");
  pruebas::CambiaVariable("TZ", std::nullopt);
}

}  // namespace
}  // namespace vel::facil
