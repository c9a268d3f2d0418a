#include "Paramsql/Redactor.h"

#include <limits>
#include <numeric>

#include "Paramsql/TablaOperadores.h"
#include "Paramsql/Valores.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Caracteres.h"

namespace vel {
namespace {

// Characters of a common condition: room for a long list is made once.
constexpr std::size_t kLargoComun = 32;

constexpr TFieldType kSqlCrudo = TFieldType::ftDataSet;

struct FormaDeMarca {
  // In WHERE and in HAVING.
  std::u16string_view signos[2];
  bool conNumero;
};

// By ordinal of the style.
constexpr FormaDeMarca kMarcas[] = {
    {{u":var", u":hav"}, true}, {{u"?", u"?"}, false}, {{u"$", u"$"}, true}, {{u"@var", u"@hav"}, true}};

// Room for the parts of a definition that are neither conditions nor names.
constexpr std::size_t kLargoClausulas = 128;

// About as many characters as a statement will have, so that most are written in one place.
std::size_t LargoEstimado(const TParametrosFiltro& filtro) noexcept {
  const auto suma = [](std::size_t n, const UnicodeString& texto) { return n + texto.size() + 1; };
  const std::size_t nombres = filtro.NombreTabla.size() + filtro.GroupBy.size() + filtro.OrderBy.size() +
                              filtro.FilterTextPers.size();
  return std::accumulate(filtro.Join.begin(), filtro.Join.end(), kLargoClausulas + nombres, suma) +
         kLargoComun * (filtro.ParamSelect.size() / 2 + filtro.ParamWhere.size() + filtro.ParamHaving.size());
}

// Whether a pattern needs to say that "/" escapes.
bool NecesitaEscape(std::u16string_view patron) {
  int porcentajes = 0;
  for (const char16_t c : patron) {
    if (c == u'_') return true;
    if (c == u'%' && ++porcentajes == 3) return true;
  }
  return Pos(u"//", patron) != 0 || Pos(u"/%", patron) != 0 || Pos(u"/[", patron) != 0;
}

}  // namespace

void Redactor::Marcador(Clausula clausula, TFieldType tipo, const Variant& valor) {
  Marca(clausula);
  if (parametros_ != nullptr) Liga(clausula, tipo, valor);
}

void Redactor::Marca(Clausula clausula) {
  if (numero_ == std::numeric_limits<int>::max()) {
    throw EInvalidOperation(u"Los números de los parámetros se agotaron");
  }
  ++numero_;
  const FormaDeMarca& forma = kMarcas[static_cast<std::size_t>(estilo_)];
  salida_.append(forma.signos[clausula == Clausula::Where ? 0 : 1]);
  if (forma.conNumero) AppendInt(salida_, numero_);
}

void Redactor::Liga(Clausula clausula, TFieldType tipo, const Variant& valor) {
  UnicodeString nombre(clausula == Clausula::Where ? u"var" : u"hav");
  AppendInt(nombre, numero_);
  parametros_->Add({std::move(nombre), tipo, ValorDeParametro(tipo, valor)});
}

void Redactor::Comparacion(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula) {
  salida_.append(abre).append(c.NombreCampo).append(FilaDe(c.Operador).filtro);
  if (c.TipoCampo == kSqlCrudo) {
    salida_ += TextoCrudo(c.ValorCampo);
  } else if (conParametros_) {
    Marcador(clausula, c.TipoCampo, c.ValorCampo);
  } else {
    salida_ += TParametrosFiltro::DameValorCampoStr(c.TipoCampo, c.ValorCampo, false);
  }
}

void Redactor::PruebaNulo(const TParamWhereSimple& c, std::u16string_view abre, Clausula /*clausula*/) {
  salida_.append(abre).append(c.NombreCampo).append(FilaDe(c.Operador).filtro);
}

void Redactor::Existencia(const TParamWhereSimple& c, std::u16string_view abre, Clausula /*clausula*/) {
  salida_.append(abre).append(u"EXISTS ").append(u" ( ").append(TextoCrudo(c.ValorCampo)).append(u"  ) ");
}

void Redactor::Pertenencia(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula) {
  const bool esArreglo = c.ValorCampo.IsArray();
  if (esArreglo && c.ValorCampo.AsArray().items.empty()) {
    throw EInvalidOperation(u"La condición sobre '" + c.NombreCampo + u"' no tiene valores");
  }
  salida_.append(abre).append(c.NombreCampo).append(FilaDe(c.Operador).filtro).append(u" ( ");
  if (c.TipoCampo == kSqlCrudo) {
    salida_.append(TextoCrudo(c.ValorCampo)).append(esArreglo ? u"  ) " : u") ");
    return;
  }
  if (!conParametros_) {
    salida_ += TParametrosFiltro::DameValorCampoStr(c.TipoCampo, c.ValorCampo, false);
  } else if (!esArreglo) {
    Marcador(clausula, c.TipoCampo, c.ValorCampo);
  } else {
    std::u16string_view separador;
    for (const Variant& elemento : c.ValorCampo.AsArray().items) {
      salida_ += separador;
      Marcador(clausula, c.TipoCampo, elemento);
      separador = u", ";
    }
  }
  salida_ += u") ";
}

void Redactor::Intervalo(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula) {
  if (!c.ValorCampo.IsArray() || c.ValorCampo.AsArray().items.size() < 2) {
    throw EInvalidOperation(u"La condición BETWEEN sobre '" + c.NombreCampo + u"' necesita dos valores");
  }
  const Variant& bajo = c.ValorCampo.AsArray().items[0];
  const Variant& alto = c.ValorCampo.AsArray().items[1];
  salida_.append(u" ( ").append(abre).append(c.NombreCampo).append(u" BETWEEN ");
  if (c.TipoCampo == kSqlCrudo) {
    salida_.append(TextoCrudo(bajo)).append(u" AND ").append(TextoCrudo(alto)).append(u") ");
  } else if (!conParametros_) {
    salida_.append(LimiteLiteral(c.TipoCampo, bajo)).append(u" AND ");
    salida_.append(LimiteLiteral(c.TipoCampo, alto)).append(u" ) ");
  } else {
    salida_ += u' ';
    Marcador(clausula, c.TipoCampo, bajo);
    // Two blanks after AND: stored reports compare statements as text.
    salida_ += u" AND  ";
    Marcador(clausula, c.TipoCampo, alto);
    salida_ += u" ) ";
  }
}

void Redactor::Patron(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula) {
  const bool enHaving = clausula == Clausula::Having;
  salida_ += abre;
  if (c.Sensitive) {
    salida_ += c.NombreCampo;
  } else {
    salida_.append(enHaving ? u" UPPER( " : u"UPPER( ").append(c.NombreCampo).append(u") ");
  }
  salida_ += FilaDe(c.Operador).filtro;
  if (c.TipoCampo == kSqlCrudo) {
    salida_.append(u"'").append(Mayusculas(TextoCrudo(c.ValorCampo))).append(u"'");
    return;
  }
  // The text itself where the value is one.
  const UnicodeString propio = c.ValorCampo.TextPtr() == nullptr ? c.ValorCampo.AsString() : UnicodeString();
  const UnicodeString& patron = c.ValorCampo.TextPtr() == nullptr ? propio : *c.ValorCampo.TextPtr();
  if (!conParametros_) {
    const UnicodeString literal = StringReplace(StringReplace(patron, u"'", u"''"), u"\"", u"");
    salida_.append(u"'").append(c.Sensitive ? literal : Mayusculas(literal)).append(u"'");
    return;
  }
  const bool pliegaMarcador = enHaving && !c.Sensitive;
  salida_ += pliegaMarcador ? u" UPPER( " : u" ";
  Marca(clausula);
  if (parametros_ != nullptr) {
    // A pattern is text whatever the column holds.
    const bool pliega = !c.Sensitive && !c.ValorCampo.IsNull() && !c.ValorCampo.IsEmpty();
    const bool esTexto = ClaseDeValor(c.TipoCampo) == conjunto::Clase::Texto;
    Liga(clausula, esTexto ? c.TipoCampo : TFieldType::ftString,
         pliega ? Variant(Mayusculas(patron)) : c.ValorCampo);
  }
  if (pliegaMarcador) salida_ += u") ";
  if (NecesitaEscape(patron)) salida_ += u" ESCAPE '/' ";
}

void Redactor::Condicion(const FilaOperador& fila, const TParamWhereSimple& c, Clausula clausula) {
  (this->*fila.pieza)(c, c.CharGrupo == ENUM_GRUPO::INICIA ? u"(" : u"", clausula);
}

void Redactor::CondicionesWhere(const TParamWhereSimpleArray& condiciones) {
  int balance = 0;
  for (const auto& c : condiciones) {
    if (c == nullptr) continue;
    if (c->CharGrupo == ENUM_GRUPO::INICIA) ++balance;
    if (c->CharGrupo == ENUM_GRUPO::TERMINA) --balance;
  }
  salida_.reserve(salida_.size() + condiciones.size() * kLargoComun);
  if (balance < 0) salida_.append(static_cast<std::size_t>(-balance), u'(');
  for (const auto& c : condiciones) {
    if (c == nullptr) continue;
    const FilaOperador& fila = FilaDe(c->Operador);
    const bool esMarca = fila.uso == UsoDeValor::Marca;
    if (!esMarca) Condicion(fila, *c, Clausula::Where);
    if (c->CharGrupo == ENUM_GRUPO::TERMINA) salida_ += u')';
    if (&c != &condiciones.back() && !esMarca) salida_ += TextoConector(c->ConectorSigCampo);
  }
  if (balance > 0) salida_.append(static_cast<std::size_t>(balance), u')');
}

void Redactor::Where(const TParamWhereSimpleArray& condiciones) {
  salida_ += u" WHERE ";
  const std::size_t inicio = salida_.size();
  salida_ += u'(';
  CondicionesWhere(condiciones);
  if (salida_.size() == inicio + 1) {
    salida_.resize(inicio);
  } else {
    salida_ += u") ";
  }
}

void Redactor::Having(const TParamWhereSimpleArray& condiciones) {
  salida_ += u" HAVING ";
  for (const auto& c : condiciones) {
    if (c == nullptr) continue;
    Condicion(FilaDe(c->Operador), *c, Clausula::Having);
    if (c->CharGrupo == ENUM_GRUPO::TERMINA) salida_ += u')';
    if (&c != &condiciones.back()) salida_ += TextoConector(c->ConectorSigCampo);
  }
}

void Redactor::CamposSelect(const TParametrosFiltro& filtro) {
  if (filtro.ParamSelect.empty()) salida_ += u" * ";
  std::u16string_view separador;
  for (const auto& campo : filtro.ParamSelect) {
    if (campo == nullptr) continue;
    salida_.append(separador).append(campo->NombreCampo);
    if (!campo->AliasCampo.empty()) salida_.append(u" AS ").append(campo->AliasCampo);
    separador = u",";
  }
  salida_.append(u" from ").append(filtro.NombreTabla).append(u" ");
}

void Redactor::Filtro(const TParametrosFiltro& filtro) {
  if (filtro.FiltroPActivo == 0) {
    if (!filtro.ParamWhere.empty()) Where(filtro.ParamWhere);
    return;
  }
  if (filtro.FiltroPActivo == 1) {
    if (!filtro.FilterTextPers.empty()) salida_.append(u" WHERE ").append(filtro.FilterTextPers);
    return;
  }
  const std::size_t antes = salida_.size();
  salida_ += u" WHERE (";
  const std::size_t inicio = salida_.size();
  CondicionesWhere(filtro.ParamWhere);
  const bool conLista = salida_.size() != inicio;
  if (conLista) {
    salida_ += u')';
  } else {
    salida_.resize(antes);
  }
  if (filtro.FilterTextPers.empty()) return;
  salida_.append(conLista ? u" AND (" : u" WHERE (").append(filtro.FilterTextPers).append(u")");
}

void Redactor::Sentencia(const TParametrosFiltro& filtro) {
  salida_.reserve(salida_.size() + LargoEstimado(filtro));
  salida_ += u"SELECT ";
  if (filtro.Distinct) salida_ += u"DISTINCT ";
  CamposSelect(filtro);
  if (!filtro.Join.empty()) salida_ += u' ';
  for (const UnicodeString& join : filtro.Join) salida_ += join;
  Filtro(filtro);
  if (!filtro.GroupBy.empty()) salida_.append(u" GROUP BY ").append(filtro.GroupBy);
  if (!filtro.ParamHaving.empty()) Having(filtro.ParamHaving);
  if (filtro.ParametrosUnion != nullptr) {
    salida_ += u" UNION ";
    Sentencia(*filtro.ParametrosUnion);
  }
  if (!filtro.OrderBy.empty()) salida_.append(u" ORDER BY ").append(filtro.OrderBy);
  if (filtro.OrdDesc) salida_ += u" DESC";
}

}  // namespace vel
