// Writing definitions into INI files.

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <utility>
#include <vector>

#include "Paramsql/Persistencia.h"
#include "Paramsql/TParametrosFiltro.h"
#include "Uutilext/config/ArchivoIni.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {

namespace persistencia {

UnicodeString Sufijo(int numero) { return numero <= 0 ? UnicodeString() : IntToStr(numero); }

int NumeroDeUnion(int numero) { return std::max(numero, 0) + 1; }

}  // namespace persistencia

namespace {

using namespace persistencia;  // the names of sections and keys

UnicodeString Logico(bool valor) { return valor ? u"TRUE" : u"FALSE"; }

/// One section while it is written: its keys are gathered and go into the text at once.
class Seccion {
 public:
  Seccion(TextoIni& texto, UnicodeString nombre) : texto_(texto), nombre_(std::move(nombre)) {}
  void Borra() {
    texto_.Borra(nombre_);
    borrada_ = true;
  }
  void Pon(std::u16string_view clave, std::u16string_view valor) { claves_.emplace_back(clave, valor); }
  void Pon(std::u16string_view clave, std::size_t indice, std::u16string_view valor) {
    Pon(UnicodeString(clave) + IntToStr(static_cast<std::int64_t>(indice)), valor);
  }
  /// A count is written only when there is something to count.
  void PonCuenta(std::u16string_view clave, std::size_t cuenta) {
    if (cuenta > 0) Pon(clave, IntToStr(static_cast<std::int64_t>(cuenta)));
  }
  void Escribe() {
    if (borrada_) return texto_.AgregaSeccion(nombre_, claves_);
    for (const auto& [clave, valor] : claves_) texto_.Pon(nombre_, clave, valor);
  }
  /// Empties keys of the section that stay and are not written anew.
  void Vacia(std::initializer_list<std::u16string_view> claves) {
    for (const std::u16string_view clave : claves) {
      const bool nueva = std::any_of(claves_.begin(), claves_.end(),
                                     [clave](const auto& propia) { return propia.first == clave; });
      if (!borrada_ && !nueva && texto_.Valor(nombre_, clave).has_value()) texto_.Pon(nombre_, clave, {});
    }
  }

 private:
  TextoIni& texto_;
  UnicodeString nombre_;
  std::vector<std::pair<UnicodeString, UnicodeString>> claves_;
  bool borrada_ = false;
};

// Calls `escribe` with each record that is there and its index among them, and returns how many there are.
template <typename Lista, typename Escribe>
std::size_t Cada(const Lista& lista, Escribe escribe) {
  std::size_t indice = 0;
  for (const auto& registro : lista) {
    if (registro != nullptr) escribe(indice++, *registro);
  }
  return indice;
}

void PonCondiciones(Seccion& s, const TParamWhereSimpleArray& condiciones, std::u16string_view cuenta,
                    Alcance alcance = Alcance::Comun) {
  // The programs that share these files know no such key in HAVING.
  const bool conSensitive = cuenta == kNumFiltros || alcance == Alcance::Entera;
  const auto nada = [](std::size_t, const TParamWhereSimple&) {};
  s.PonCuenta(cuenta, Cada(condiciones, nada));
  Cada(condiciones, [&](std::size_t i, const TParamWhereSimple& c) {
    s.Pon(kNomCampo, i, c.NombreCampo);
    s.Pon(kTipoCampo, i, IntToStr(static_cast<int>(c.TipoCampo)));
    s.Pon(kValCampo, i, TextoDeValor(c));
    s.Pon(kOpCampo, i, c.DameOperador());
    s.Pon(kConectCampo, i, c.DameOperadorUnion());
    s.Pon(kCharGrupCampo, i, c.DameCharGrupo());
    if (conSensitive) s.Pon(kSensitive, i, Logico(c.Sensitive));
  });
}

TFieldType TipoDe(const Variant& valor) {
  switch (valor.GetKind()) {
    case Variant::Kind::Integer:
      return TFieldType::ftInteger;
    case Variant::Kind::Int64:
      return TFieldType::ftLargeint;
    case Variant::Kind::Double:
      return TFieldType::ftFloat;
    case Variant::Kind::Date:
      return TFieldType::ftDateTime;
    case Variant::Kind::Boolean:
      return TFieldType::ftBoolean;
    default:
      return TFieldType::ftString;
  }
}

void PonPersonalizadas(Seccion& s, const TParametrosFiltro& f) {
  const Variant& pers = f.FilterParamsPers;
  const std::vector<Variant> valores = pers.IsArray()   ? pers.AsArray().items
                                       : pers.IsEmpty() ? std::vector<Variant>()
                                                        : std::vector<Variant>{pers};
  s.PonCuenta(kNumFiltrosP, valores.size());
  for (std::size_t i = 0; i < valores.size(); ++i) {
    s.Pon(kTipoPers, i, IntToStr(static_cast<int>(TipoDe(valores[i]))));
    s.Pon(kValorPers, i, TextoDeValor(TipoDe(valores[i]), valores[i]));
    s.Pon(kClasePers, i, IntToStr(static_cast<int>(valores[i].GetKind())));
  }
  if (!f.FilterTextPers.empty()) s.Pon(kSentenciaPers, u"\"" + f.FilterTextPers + u"\"");
  if (f.FiltroPActivo != 0) s.Pon(kActivarPers, IntToStr(f.FiltroPActivo));
  if (!f.FilterPersItems.empty()) {
    std::vector<Variant> textos;
    for (const UnicodeString& texto : f.FilterPersItems) textos.emplace_back(texto);
    s.Pon(kCondicionesPers, TextoDeValor(TFieldType::ftString, VarArrayOf(std::move(textos))));
  }
  s.Vacia({kNumFiltrosP, kSentenciaPers, kActivarPers, kCondicionesPers});
}

// DISTINCT, and the order of a union's partner: the main definition's is the view's.
void PonOrden(Seccion& s, const TParametrosFiltro& f, int numero) {
  if (f.Distinct) s.Pon(kDistinct, Logico(true));
  if (numero <= 0) return;
  if (!f.OrderBy.empty()) s.Pon(kOrdenadoPor, f.OrderBy);
  if (f.OrdDesc) s.Pon(kDescendente, Logico(true));
}

void PonDefinicion(TextoIni& texto, const TParametrosFiltro& f, int numero, Alcance alcance, int nivel) {
  if (nivel > kUnionesMaximas || numero > std::numeric_limits<int>::max() - kUnionesMaximas) {
    throw EInvalidOperation(u"La consulta tiene demasiadas uniones para guardarla");
  }
  const auto seccion = [&](std::u16string_view nombre, const auto& llena) {
    Seccion s(texto, UnicodeString(nombre) + Sufijo(numero));
    s.Borra();
    llena(s);
    s.Escribe();
  };
  seccion(kSelect, [&](Seccion& s) {
    s.PonCuenta(kNumCampos, Cada(f.ParamSelect, [](std::size_t, const TParamSelect&) {}));
    Cada(f.ParamSelect, [&s](std::size_t i, const TParamSelect& c) {
      s.Pon(kNomCampo, i, c.NombreCampo);
      s.Pon(kAliasCampo, i, c.AliasCampo);
      s.Pon(kVisible, i, Logico(c.Visible));
    });
    if (alcance == Alcance::Entera) PonOrden(s, f, numero);
  });
  seccion(kTabla, [&f](Seccion& s) { s.Pon(kClaveTabla, f.NombreTabla); });
  seccion(kJoins, [&f](Seccion& s) {
    s.PonCuenta(kNumJoins, f.Join.size());
    for (std::size_t i = 0; i < f.Join.size(); ++i) s.Pon(kJoin, i, f.Join[i]);
  });
  seccion(kFiltro, [&f](Seccion& s) {
    PonCondiciones(s, f.ParamWhere, kNumFiltros);
    PonPersonalizadas(s, f);
  });
  seccion(kGroupBy, [&f](Seccion& s) {
    if (!f.GroupBy.empty()) s.Pon(kClaveGroupBy, f.GroupBy);
  });
  seccion(kHaving, [&](Seccion& s) { PonCondiciones(s, f.ParamHaving, kNumElementos, alcance); });
  seccion(kUnion, [&f, numero](Seccion& s) {
    if (f.ParametrosUnion != nullptr) s.Pon(kClaveUnion, IntToStr(NumeroDeUnion(numero)));
  });
  if (f.ParametrosUnion != nullptr) {
    PonDefinicion(texto, *f.ParametrosUnion, NumeroDeUnion(numero), alcance, nivel + 1);
  }
}

}  // namespace

namespace persistencia {

void PonDefinicion(TextoIni& texto, const TParametrosFiltro& definicion, int numero, Alcance alcance) {
  vel::PonDefinicion(texto, definicion, numero, alcance, 0);
  if (alcance == Alcance::Comun || numero > 0) return;
  const auto pon = [&](std::u16string_view clave, bool hay, std::u16string_view valor) {
    if (hay || texto.Valor(kVista, clave).has_value()) texto.Pon(kVista, clave, valor);
  };
  pon(kOrdenadoPor, !definicion.OrderBy.empty(), definicion.OrderBy);
  pon(kDescendente, definicion.OrdDesc, Logico(definicion.OrdDesc));
}

}  // namespace persistencia

void TParametrosFiltro::SaveToIni(std::u16string_view archivo, int numero) const {
  CambiaIni(archivo, kNoSePuedeActualizar,
            [&](TextoIni& texto) { persistencia::PonDefinicion(texto, *this, numero, Alcance::Comun); });
}

void TParametrosFiltro::SaveToIni(std::u16string_view archivo, std::u16string_view seccion) const {
  CambiaIni(archivo, kNoSePuedeActualizar, [&](TextoIni& texto) {
    Seccion s(texto, UnicodeString(seccion));
    s.Borra();
    PonCondiciones(s, ParamWhere, kNumFiltros);
    PonPersonalizadas(s, *this);
    s.Escribe();
  });
}

void TParametrosFiltro::SaveParamPersToIni(std::u16string_view archivo, std::u16string_view seccion,
                                           bool borra) const {
  CambiaIni(archivo, borra ? kNoSePuedeActualizar : kNoSePuedeEscribir, [&](TextoIni& texto) {
    Seccion s(texto, UnicodeString(seccion));
    if (borra) s.Borra();
    PonPersonalizadas(s, *this);
    s.Escribe();
  });
}

}  // namespace vel
