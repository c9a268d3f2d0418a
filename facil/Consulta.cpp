#include "facil/Consulta.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "Paramsql/ConsultaGuardada.h"
#include "Paramsql/TParametrosFiltro.h"
#include "framework/Excepciones.h"

namespace vel::facil {

namespace {

std::unique_ptr<TParametrosFiltro> Exige(std::unique_ptr<TParametrosFiltro> definicion) {
  if (definicion == nullptr) throw EInvalidOperation(u"La consulta ya se entregó");
  return definicion;
}

// A name or clause that is empty would leave a statement that no database takes.
std::u16string_view Exige(std::u16string_view texto, std::u16string_view falta) {
  if (TrimLeftView(texto).empty()) throw EInvalidOperation(falta);
  return texto;
}

// Why a value has no literal; empty when it has one.
std::u16string_view SinLiteral(const Variant& valor, bool comoLimite) {
  const UnicodeString* const texto = valor.TextPtr();
  if (texto != nullptr && comoLimite) return u"un texto en 'entre'";
  if (texto != nullptr && texto->find(u'\'') != UnicodeString::npos) return u"un texto con apóstrofo";
  const bool esReal = valor.GetKind() == Variant::Kind::Double;
  if (esReal && !std::isfinite(valor.AsDouble())) return u"un número que no es finito";
  return {};
}

std::u16string_view SinLiteral(const TParamWhereSimple& c) {
  using enum ENUM_OPERADOR;
  using enum TFieldType;
  if (c.Operador == ISNULL || c.Operador == NOTNULL || c.Operador == EXISTS || c.Operador == MACRO) return {};
  if (c.Operador == LIKE) return u"un texto buscado";
  if (c.TipoCampo == ftDataSet) return {};
  if (c.TipoCampo == ftBoolean) return u"un valor lógico";
  const bool comoLimite = c.Operador == BETWEEN;
  const auto conLiteral = {ftInteger, ftFloat, ftString, ftDateTime, ftTimeStamp};
  const bool tiene = std::find(conLiteral.begin(), conLiteral.end(), c.TipoCampo) != conLiteral.end();
  if (!tiene && !comoLimite) return u"un valor de ese tipo de campo";
  if (!c.ValorCampo.IsArray()) return SinLiteral(c.ValorCampo, comoLimite);
  for (const Variant& valor : c.ValorCampo.AsArray().items) {
    if (const std::u16string_view falta = SinLiteral(valor, comoLimite); !falta.empty()) return falta;
  }
  return {};
}

void ExigeLiterales(const TParamWhereSimpleArray& condiciones) {
  for (const auto& c : condiciones) {
    if (c == nullptr) continue;
    const std::u16string_view falta = SinLiteral(*c);
    if (falta.empty()) continue;
    throw EInvalidOperation(UnicodeString(u"La condición sobre '")
                                .append(c->NombreCampo)
                                .append(u"' no se puede escribir con literales (")
                                .append(falta)
                                .append(u"): pida la sentencia con parámetros"));
  }
}

void ExigeLiterales(const TParametrosFiltro& definicion) {
  if (definicion.FiltroPActivo != 1) ExigeLiterales(definicion.ParamWhere);
  ExigeLiterales(definicion.ParamHaving);
  if (definicion.ParametrosUnion != nullptr) ExigeLiterales(*definicion.ParametrosUnion);
}

// Adds to a list of columns.
void Agrega(UnicodeString& columnas, std::u16string_view otras) {
  columnas = columnas.empty() ? UnicodeString(otras) : (columnas + u", ").append(otras);
}

}  // namespace

std::string Sentencia::utf8() const { return UTF8Encode(texto); }

Consulta::Consulta(const Texto& tabla, TiposDeDriver driver)
    : Consulta(std::make_unique<TParametrosFiltro>(Exige(tabla, u"Falta la tabla de la consulta")), driver) {}

Consulta::Consulta(std::unique_ptr<TParametrosFiltro> definicion, TiposDeDriver driver)
    : definicion_(Exige(std::move(definicion))),
      where_(*definicion_, Grupo::Clausula::Where, driver),
      having_(*definicion_, Grupo::Clausula::Having, driver) {}

Consulta::Consulta(Consulta&&) noexcept = default;
Consulta& Consulta::operator=(Consulta&&) noexcept = default;
Consulta::~Consulta() = default;

TParametrosFiltro& Consulta::Definicion() {
  if (definicion_ == nullptr) throw EInvalidOperation(u"La consulta ya se entregó");
  return *definicion_;
}

Grupo& Consulta::Where() {
  if (Definicion().FiltroPActivo == 1) {
    throw EInvalidOperation(u"La consulta sólo usa su condición personalizada: otra no tendría efecto");
  }
  return where_;
}

const TParametrosFiltro& Consulta::filtro() const {
  if (definicion_ == nullptr) throw EInvalidOperation(u"La consulta ya se entregó");
  return *definicion_;
}

std::unique_ptr<TParametrosFiltro> Consulta::suelta() && { return Exige(std::move(definicion_)); }

void Consulta::guarda(const Texto& archivo) const { GuardaConsulta(filtro(), archivo); }

Consulta Consulta::lee(const Texto& archivo, TiposDeDriver driver) {
  return Consulta(LeeConsulta(archivo), driver);
}

Consulta& Consulta::campo(const Texto& expresion, const Texto& alias, bool visible) {
  Definicion().AgregaCampoSelect(Exige(expresion, u"Falta el campo de una consulta"), alias, visible);
  return *this;
}

Consulta& Consulta::distintos(bool si) {
  Definicion().Distinct = si;
  return *this;
}

Consulta& Consulta::join(const Texto& clausula) {
  Definicion().AgregaJoin(Exige(clausula, u"Falta la cláusula de un join"));
  return *this;
}

Consulta& Consulta::sql(const Texto& condicion) {
  TParametrosFiltro& f = Definicion();
  UnicodeString& texto = f.FilterTextPers;
  const std::u16string_view nueva = Exige(condicion, u"Falta el texto de una condición");
  if (f.FiltroPActivo == 0 && !texto.empty()) {
    throw EInvalidOperation(u"La consulta guarda una condición personalizada que no está activa");
  }
  texto = texto.empty() ? UnicodeString(nueva)
                        : UnicodeString(u"(").append(texto).append(u") AND (").append(nueva).append(u")");
  // Both the list and the text.
  if (f.FiltroPActivo == 0) f.FiltroPActivo = 2;
  return *this;
}

Consulta& Consulta::agrupa(const Texto& columnas) {
  Agrega(Definicion().GroupBy, Exige(columnas, u"Falta la columna de un grupo"));
  return *this;
}

Consulta& Consulta::ordena(const Texto& columnas) {
  TParametrosFiltro& f = Definicion();
  // The definition's flag is of the last column; that of an earlier one stands in the text.
  UnicodeString orden = f.OrdDesc ? f.OrderBy + u" DESC" : f.OrderBy;
  Agrega(orden, Exige(columnas, u"Falta la columna del orden"));
  f.OrderBy = std::move(orden);
  f.OrdDesc = false;
  return *this;
}

Consulta& Consulta::ordenaDesc(const Texto& columna) {
  ordena(columna);
  definicion_->OrdDesc = true;
  return *this;
}

Consulta& Consulta::unionCon(Consulta otra) {
  TParametrosFiltro& agregada = otra.Definicion();
  if (!agregada.OrderBy.empty() || agregada.OrdDesc) {
    throw EInvalidOperation(u"Una consulta de la unión no lleva orden: ordene la principal");
  }
  TParametrosFiltro* ultima = &Definicion();
  while (ultima->ParametrosUnion != nullptr) ultima = ultima->ParametrosUnion.get();
  for (TParametrosFiltro* f = &agregada; f != nullptr; f = f->ParametrosUnion.get()) {
    f->FechaTrabajo = definicion_->FechaTrabajo;
  }
  ultima->ParametrosUnion = std::move(otra.definicion_);
  return *this;
}

Sentencia Consulta::sentencia(ENUM_MARCADOR estilo, int numInicial) {
  Sentencia s;
  s.texto = Definicion().DameSentenciaSQL(estilo, numInicial, s.parametros);
  return s;
}

UnicodeString Consulta::literal() {
  ExigeLiterales(Definicion());
  return definicion_->DameSentenciaSQL(false, 0);
}

}  // namespace vel::facil
