// Data packets: what loads can be saved, and loads from there to the same; what does not load changes
// nothing.
#include "framework/Excepciones.h"
#include "framework/TClientDataSet.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using namespace vel;

void ExigeIguales(TClientDataSet& a, TClientDataSet& b) {
  Exige(a.FieldDefs() == b.FieldDefs(), "the fields");
  ExigeIgual(a.RecordCount(), b.RecordCount(), "the number of records");
  for (a.First(), b.First(); !a.Eof() && !b.Eof(); a.Next(), b.Next()) {
    for (std::size_t i = 0; i < a.FieldCount(); ++i) {
      TClientDataSet* const anidado = a.Fields(i).NestedDataSet();
      if (anidado != nullptr) {
        ExigeIguales(*anidado, *b.Fields(i).NestedDataSet());
        continue;
      }
      ExigeIgual(a.Fields(i).IsNull(), b.Fields(i).IsNull(), "a null");
      Exige(a.Fields(i).Value() == b.Fields(i).Value(), "a value");
    }
  }
  ExigeIgual(a.Eof(), b.Eof(), "the end");
}

TClientDataSet Conocido() {
  TClientDataSet datos;
  datos.CreateDataSet({{.Name = u"CVE", .DataType = TFieldType::ftString, .Size = 5}});
  datos.Append();
  datos.Fields(0).SetAsString(u"A1");
  datos.Post();
  return datos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  TClientDataSet leido = Conocido();
  const std::string antes = leido.SaveToXML();
  try {
    leido.LoadFromXML({reinterpret_cast<const char*>(datos), largo}, u"paquete");
  } catch (const EDatabaseError&) {
    ExigeIgual(leido.SaveToXML(), antes, "what did not load has changed the data set");
    return 0;
  }
  const std::string guardado = leido.SaveToXML();
  TClientDataSet otro;
  otro.LoadFromXML(guardado, u"guardado");
  ExigeIgual(otro.SaveToXML(), guardado, "saved again");
  ExigeIguales(leido, otro);
  TClientDataSet copia;
  copia.AssignData(leido);
  ExigeIgual(copia.SaveToXML(), guardado, "a copy");
  copia.AppendData(leido);
  ExigeIgual(copia.RecordCount(), 2 * leido.RecordCount(), "records appended");
  return 0;
}
