// What the library throws is caught by its type in a program that has a copy of the compiler's runtime of its
// own.

#include "framework/Excepciones.h"

#include <gtest/gtest.h>
#include <string>

#include "Uutilext/diagnostics/Errores.h"
#include "facil/Zonas.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"
#include "framework/TStringList.h"
#include "framework/Variant.h"
#include "platform/Archivos.h"
#include "tests/apoyo/Sistema.h"

namespace vel {
namespace {

// The first handler that takes it, and the message.
template <class Operacion>
std::string Atrapa(Operacion operacion) {
  try {
    operacion();
  } catch (const EConvertError& e) {
    return std::string("EConvertError: ") + e.what();
  } catch (const EInvalidOperation& e) {
    return std::string("EInvalidOperation: ") + e.what();
  } catch (const EVariantTypeCastError&) {
    return "EVariantTypeCastError";
  } catch (const EDatabaseError&) {
    return "EDatabaseError";
  } catch (const EStringListError&) {
    return "EStringListError";
  } catch (const EStreamError&) {
    return "EStreamError";
  } catch (const Exception& e) {
    return std::string("Exception: ") + e.what();
  } catch (const std::exception&) {
    return "std::exception";
  } catch (int codigo) {
    return "int " + std::to_string(codigo);
  }
  return "nada";
}

TEST(Excepciones, AreCaughtByTypeAcrossTheLibrary) {
  int codigo = 7;
  EXPECT_EQ(Atrapa([] { StrToInt(u"siete"); }), "EConvertError: 'siete' no es un valor entero válido");
  EXPECT_EQ(Atrapa([] { facil::Zona("America/Ciudad"); }),
            "EInvalidOperation: Zona horaria desconocida: America/Ciudad");
  EXPECT_EQ(Atrapa([] { VarArrayOf({}).AsInteger(); }), "EVariantTypeCastError");
  EXPECT_EQ(Atrapa([] { TClientDataSet().FieldByName(u"CVE"); }), "EDatabaseError");
  EXPECT_EQ(Atrapa([] { TStringList().Strings(3); }), "EStringListError");
  EXPECT_EQ(Atrapa([] {
              ExigeSinFalla({ClaseFalla::NoExiste, {}}, u"No se puede leer", u"a.txt");
            }),
            "EStreamError");
  EXPECT_EQ(Atrapa([&] { LanzaThrow(u"Año", codigo); }), "Exception: Año");
  EXPECT_EQ(codigo, -1);
  try {
    StrToFloat(u"uno");
    ADD_FAILURE() << "nothing thrown";
  } catch (const std::exception& e) {
    EXPECT_STREQ(e.what(), "'uno' no es un valor de punto flotante válido");
  }
  // A library of this name makes a service host of the program.
  const pruebas::Modulo servicio(SERVICIO);
  codigo = 7;
  EXPECT_EQ(Atrapa([&] { LanzaThrow(u"Año", codigo); }), "int 7");
}

}  // namespace
}  // namespace vel
