#include "version/Version.h"

#include <gtest/gtest.h>

namespace vel {
namespace {

TEST(Version, GivesItsTexts) {
  EXPECT_EQ(DameVerVEL(), u"VEL9.00");
  EXPECT_EQ(DameVersionCompVEL(false), u"9.2.0");
  EXPECT_EQ(DameVersionCompVEL(true), u"Tavex-VEL 9.2.0");
  EXPECT_EQ(DameVerVELBitacora(), u"Tavex-VEL 9.00");
  EXPECT_EQ(DameNombreArchIni(), u"VELWIN90.INI");
}

}  // namespace
}  // namespace vel
