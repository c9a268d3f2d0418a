// Definitions as XML: what is read is written to the same object and statement; what is not read changes
// nothing.
#include "framework/TRemotable.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "fuzz/Huella.h"

using fuzz::ExigeIgual;
using namespace vel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  TParametrosFiltro leida(u"CLIENTES");
  leida.AgregaFiltro(u"CIUDAD", TFieldType::ftString, Variant(u"Mérida"), ENUM_OPERADOR::IGUAL);
  const std::string antes = EscribeRemotableXML(leida, u"Filtro");
  try {
    LeeRemotableXML(leida, {reinterpret_cast<const char*>(datos), largo});
  } catch (const EInvalidOperation&) {
    ExigeIgual(EscribeRemotableXML(leida, u"Filtro"), antes, "what was not read has changed the object");
    return 0;
  }
  const std::string xml = EscribeRemotableXML(leida, u"Filtro");
  TParametrosFiltro otra(u"");
  LeeRemotableXML(otra, xml);
  ExigeIgual(EscribeRemotableXML(otra, u"Filtro"), xml, "written again");
  ExigeIgual(fuzz::Huella(otra), fuzz::Huella(leida), "its statement");
  return 0;
}
