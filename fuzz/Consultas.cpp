// Saved queries: a file that loads is saved, in both scopes, and what was saved loads to the same statement
// and to the same file, but for what the common scope leaves out.
#include "Paramsql/Persistencia.h"
#include "framework/Excepciones.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "fuzz/Huella.h"
#include "platform/TextoArchivo.h"

namespace {

using fuzz::ExigeIgual;
using namespace vel;
using persistencia::Alcance;

std::unique_ptr<TParametrosFiltro> Lee(const UnicodeString& texto, int numero, Alcance alcance) {
  return persistencia::LeeDefinicion(TextoIni(texto), numero, alcance);
}

UnicodeString Guarda(const TParametrosFiltro& definicion, int numero, Alcance alcance) {
  TextoIni ini(u"; nota\r\n[OTRA]\r\nx=1\r\n");
  persistencia::PonDefinicion(ini, definicion, numero, alcance);
  ExigeIgual(UnicodeString(ini.Valor(u"OTRA", u"x").value_or(u"")), UnicodeString(u"1"), "another section");
  return ini.Texto();
}

// The common scope does not keep how letters count in HAVING, though a file may tell it.
void OlvidaLetrasDeHaving(TParametrosFiltro* definicion) {
  for (; definicion != nullptr; definicion = definicion->ParametrosUnion.get()) {
    for (const auto& condicion : definicion->ParamHaving) condicion->Sensitive = false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada entrada(datos, largo);
  const Alcance alcance = entrada.De({Alcance::Entera, Alcance::Comun});
  const int numero = entrada.De({0, 0, 3});
  const UnicodeString texto = DecodificaArchivo(entrada.Resto()).texto;
  if (texto.find(u'\0') != UnicodeString::npos) return 0;
  std::unique_ptr<TParametrosFiltro> leida;
  try {
    leida = Lee(texto, 0, alcance);
  } catch (const Exception&) {
    return 0;
  }
  if (alcance == Alcance::Comun) OlvidaLetrasDeHaving(leida.get());
  const UnicodeString guardada = Guarda(*leida, numero, alcance);
  const auto otra = Lee(guardada, numero, alcance);
  ExigeIgual(fuzz::Huella(*otra), fuzz::Huella(*leida), "the statement of what was saved");
  ExigeIgual(Guarda(*otra, numero, alcance), guardada, "saved again");
  return 0;
}
