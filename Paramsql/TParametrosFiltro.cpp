#include "Paramsql/TParametrosFiltro.h"

namespace vel {

TParametrosFiltro::TParametrosFiltro(std::u16string_view tabla) : NombreTabla(tabla) {}

TParametrosFiltro::~TParametrosFiltro() {
  EliminaJoin();
  EliminaCampoSelect();
  EliminaFiltros();
  EliminaHaving();
  EliminaParamPers();
}

// The caller's to free, as the suite's programs do with every object of this class that they create.
TParametrosFiltro* CreaParametrosFiltro(std::u16string_view tabla) {
  return new TParametrosFiltro(tabla);  // NOLINT(cppcoreguidelines-owning-memory)
}

void TParamSelect::Propiedades(VisitantePropiedades& visitante) {
  visitante.Texto(u"NombreCampo", NombreCampo);
  visitante.Texto(u"NombreTabla", NombreTabla);
  visitante.Texto(u"AliasCampo", AliasCampo);
  visitante.Booleano(u"Visible", Visible);
}

void TParamWhereSimple::Propiedades(VisitantePropiedades& visitante) {
  visitante.Texto(u"NombreCampo", NombreCampo);
  visitante.Enumeracion(u"TipoCampo", TipoCampo);
  visitante.Valor(u"ValorCampo", ValorCampo);
  visitante.Enumeracion(u"Operador", Operador);
  visitante.Enumeracion(u"ConectorSigCampo", ConectorSigCampo);
  visitante.Enumeracion(u"CharGrupo", CharGrupo);
  visitante.Booleano(u"Sensitive", Sensitive);
}

void TParametrosFiltro::Propiedades(VisitantePropiedades& visitante) {
  visitante.Texto(u"NombreTabla", NombreTabla);
  visitante.Propios(u"ParamSelect", ParamSelect);
  visitante.Propios(u"ParamWhere", ParamWhere);
  visitante.Propios(u"ParamHaving", ParamHaving);
  visitante.Propios(u"ParamPers", ParamPers);
  visitante.Texto(u"OrderBy", OrderBy);
  visitante.Texto(u"GroupBy", GroupBy);
  visitante.Booleano(u"OrdDesc", OrdDesc);
  visitante.Propio(u"ParametrosUnion", ParametrosUnion,
                   [] { return std::make_unique<TParametrosFiltro>(std::u16string_view()); });
  visitante.Booleano(u"ConParametros", ConParametros);
  visitante.Booleano(u"Distinct", Distinct);
  visitante.Entero(u"FiltroPActivo", FiltroPActivo);
  visitante.Valor(u"FilterParamsPers", FilterParamsPers);
  visitante.Texto(u"FilterTextPers", FilterTextPers);
  visitante.Textos(u"FilterPersItems", FilterPersItems);
  visitante.Valor(u"ParamsExternos", ParamsExternos);
  visitante.Entero(u"ParamsExternosCount", ParamsExternosCount);
  visitante.Textos(u"Join", Join);
  visitante.FechaHora(u"FechaTrabajo", FechaTrabajo);
}

}  // namespace vel
