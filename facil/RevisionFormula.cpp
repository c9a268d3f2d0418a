#include "facil/RevisionFormula.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <utility>

#include "Uformula/TFormula.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::facil {
namespace {

constexpr std::size_t kNinguna = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kMaxProblemas = 100;
// Before the number of the unit that it stands for. What users type never reaches the marked text.
constexpr char16_t kMarca = u'\uE000';
constexpr const char16_t* kControl = u"Hay un salto de línea o un tabulador junto a ";

bool EsDigito(char16_t c) { return c >= u'0' && c <= u'9'; }
bool EsControl(char16_t c) { return c <= u' '; }
bool EsOperador(char16_t c) { return TFormula::EsOperador({&c, 1}); }
bool EsSigno(char16_t c) { return c == u'+' || c == u'-'; }

/// A piece of the formula: an operator, parenthesis or comma, or what stands between two of them.
struct Unidad {
  /// 0 for an operand.
  char16_t signo = 0;
  /// Of an operand, without blanks; other control characters belong to it.
  UnicodeString texto;
  /// From 1, as typed, of its first character that is no control character.
  std::size_t posicion = 1;
  bool conBlancos = false;
};

std::vector<Unidad> Corta(std::u16string_view formula) {
  constexpr std::u16string_view kSignos = u"*+-/<=>(),";
  std::vector<Unidad> unidades;
  bool blanco = true;
  for (std::size_t i = 0; i < formula.size(); ++i) {
    const char16_t c = formula[i];
    if (c == u' ') {
      blanco = true;
    } else if (kSignos.find(c) != std::u16string_view::npos) {
      unidades.push_back({c, {}, i + 1, false});
    } else {
      if (unidades.empty() || unidades.back().signo != 0) {
        unidades.push_back({0, {}, i + 1, false});
      } else {
        unidades.back().conBlancos = unidades.back().conBlancos || blanco;
      }
      if (TrimView(unidades.back().texto).empty()) unidades.back().posicion = i + 1;
      unidades.back().texto += c;
      blanco = false;
    }
  }
  return unidades;
}

bool EmpiezaNumero(std::u16string_view texto) { return EsDigito(texto[0]) || texto[0] == u'.'; }

// "FUN0", "SUMA12": the evaluator's own names for what it computes on the way.
bool NombraPaso(std::u16string_view texto) {
  const std::u16string_view raiz = texto.substr(0, texto.find_last_not_of(u"0123456789") + 1);
  return raiz.size() < texto.size() && (SameText(raiz, u"FUN") || TFormula::EsFuncionInterna(raiz));
}

// What a formula's author means as a variable, when nobody says which there are.
bool PareceVariable(std::u16string_view texto) {
  const char16_t c = FoldCase(texto.front());
  const bool letra = (c >= u'a' && c <= u'z') || c == u'_' || c >= 0x80;
  return letra && std::none_of(texto.begin(), texto.end(), EsControl) && !TFormula::EsFuncionInterna(texto) &&
         !NombraPaso(texto);
}

/// An operand of the built tree, whose text holds marks, names of steps, and the operators and commas that
/// stayed beside them.
struct Operando {
  struct Parte {
    bool esPaso = false;
    /// The unit of a mark; of a step its place, nodes first.
    std::size_t lugar = 0;
  };
  std::vector<Parte> partes;
  /// As the evaluator would have it without the marks.
  UnicodeString texto;
  bool coma = false;
};

/// The tree is built by the evaluator itself, from the formula with a mark in place of each operand: so there
/// is one set of rules, and what the steps name tells by its marks where it was typed.
class Revisor {
 public:
  using Conocidas = std::set<UnicodeString, LessText>;

  Revisor(std::u16string_view formula, const Conocidas* conocidas)
      : conocidas_(conocidas), unidades_(Corta(formula)) {}

  RevisionFormula Revisa() {
    if (EmparejaParentesis()) {
      Construye();
      if (arbol_.Nodos() == 0) {
        const bool vacia = unidades_.empty();
        Problema(0, vacia ? UnicodeString(u"La fórmula está vacía")
                          : u"Falta un operando junto a " + TextoOperador(OperadorSuelto()));
      } else {
        Recorre();
      }
    }
    Avisa();
    return Resultado();
  }

 private:
  struct Marco {
    std::size_t paso;
    std::vector<UnicodeString> operandos;
    std::size_t siguiente = 0;
  };
  enum class Estado : std::uint8_t { pendiente, abierto, listo };
  /// By their unit; said once.
  using Notas = std::set<std::pair<std::size_t, UnicodeString>>;

  bool EsLlamada(std::size_t u) const {
    return unidades_[u].signo == 0 && Es(u + 1, u'(') && !(u > 0 && Es(u - 1, u')')) &&
           TFormula::EsFuncionInterna(unidades_[u].texto);
  }
  bool Es(std::size_t u, char16_t signo) const { return u < unidades_.size() && unidades_[u].signo == signo; }
  bool EsOperando(std::size_t u) const { return Es(u, 0); }
  UnicodeString Nombre(std::size_t u) const {
    return EsOperando(u) ? Trim(unidades_[u].texto) : UnicodeString(u"el paréntesis");
  }
  UnicodeString DeNombre(std::size_t u) const {
    return EsOperando(u) ? u"de " + Nombre(u) : u"del paréntesis";
  }

  // False when the formula cannot be built.
  bool EmparejaParentesis() {
    cierre_.assign(unidades_.size(), kNinguna);
    std::vector<std::size_t> abiertos;
    for (std::size_t u = 0; u < unidades_.size(); ++u) {
      if (Es(u, u'(')) abiertos.push_back(u);
      if (!Es(u, u')')) continue;
      if (abiertos.empty()) {
        Problema(u, u"No se abrió el paréntesis que se cierra aquí");
        continue;
      }
      const std::size_t abre = abiertos.back();
      abiertos.pop_back();
      cierre_[abre] = u;
      const bool vacio = u == abre + 1 || (u == abre + 2 && EsOperando(abre + 1) &&
                                           TrimView(unidades_[abre + 1].texto).empty());
      if (vacio && !(abre > 0 && EsLlamada(abre - 1))) Problema(abre, u"No hay nada entre los paréntesis");
    }
    for (const std::size_t u : abiertos) Problema(u, u"No se cerró el paréntesis que se abre aquí");
    return problemas_.empty();
  }

  void Construye() {
    UnicodeString marcada;
    for (std::size_t u = 0; u < unidades_.size(); ++u) {
      const UnicodeString& texto = unidades_[u].texto;
      const std::u16string_view nucleo = TrimView(texto);
      if (unidades_[u].signo != 0) {
        marcada += unidades_[u].signo;
      } else if (EsLlamada(u)) {
        marcada += texto;
        llamadas_.push_back(u);
      } else if (nucleo.empty()) {
        marcada += texto;
      } else {
        const auto antes = static_cast<std::size_t>(nucleo.data() - texto.data());
        marcada += texto.substr(0, antes) + kMarca;
        AppendInt(marcada, static_cast<std::int64_t>(u));
        marcada += texto.substr(antes + nucleo.size());
      }
    }
    // Calls are numbered in the order of their making, from the end of the text.
    std::reverse(llamadas_.begin(), llamadas_.end());
    try {
      arbol_.FormateaFormula(marcada);
    } catch (const Exception&) {
      // It is built; marks have no value.
    }
  }

  Operando Lee(std::u16string_view marcado) const {
    Operando o;
    while (!marcado.empty()) {
      const char16_t c = marcado.front();
      if (EsControl(c) || EsOperador(c) || c == u',' || EsDigito(c)) {
        o.coma = o.coma || c == u',';
        o.texto += c;
        marcado.remove_prefix(1);
        continue;
      }
      const std::size_t digitos = marcado.find_first_of(u"0123456789");
      const std::size_t fin = std::min(marcado.find_first_not_of(u"0123456789", digitos), marcado.size());
      const auto numero = static_cast<std::size_t>(StrToInt64(marcado.substr(digitos, fin - digitos)));
      if (c == kMarca) {
        o.partes.push_back({false, numero});
        o.texto += TrimView(unidades_[numero].texto);
      } else {
        const bool nodo = marcado.substr(0, digitos) == u"FUN";
        o.partes.push_back({true, nodo ? numero : arbol_.Nodos() + numero});
        o.texto += marcado.substr(0, fin);
      }
      marcado.remove_prefix(fin);
    }
    return o;
  }

  std::vector<UnicodeString> Operandos(std::size_t paso) const {
    std::vector<UnicodeString> lista;
    if (paso < arbol_.Nodos()) {
      FUNCTION_SIMPLE nodo = arbol_.Nodo(paso);
      lista.push_back(std::move(nodo.izquierdo));
      lista.push_back(std::move(nodo.derecho));
    } else {
      const FUNCTION_INTERNA llamada = arbol_.Interna(paso - arbol_.Nodos());
      for (std::size_t i = 0; i < llamada.argumentos.Count(); ++i) lista.push_back(llamada.argumentos[i]);
    }
    return lista;
  }

  // First and last unit of what a part stands for, without the parentheses of groups; kNinguna for a node of
  // which nothing was typed but operators.
  std::size_t Extremo(Operando::Parte parte, bool final) const {
    while (parte.esPaso) {
      if (parte.lugar >= arbol_.Nodos()) {
        const std::size_t u = llamadas_[parte.lugar - arbol_.Nodos()];
        return final ? cierre_[u + 1] : u;
      }
      const std::vector<UnicodeString> operandos = Operandos(parte.lugar);
      Operando o = Lee(operandos[final ? 1 : 0]);
      if (o.partes.empty()) o = Lee(operandos[final ? 0 : 1]);
      if (o.partes.empty()) return kNinguna;
      parte = final ? o.partes.back() : o.partes.front();
    }
    return parte.lugar;
  }
  std::size_t Principio(const Operando& o) const {
    return o.partes.empty() ? kNinguna : Extremo(o.partes.front(), false);
  }
  std::size_t Final(const Operando& o) const {
    return o.partes.empty() ? kNinguna : Extremo(o.partes.back(), true);
  }

  // The operator nearest to a unit, on its right or left; where there is none, the first that lacks an
  // operand.
  std::size_t OperadorTras(std::size_t u) const {
    while (u < unidades_.size() && !EsOperador(unidades_[u].signo)) ++u;
    return u < unidades_.size() ? u : OperadorSuelto();
  }
  std::size_t OperadorAntes(std::size_t u) const {
    while (u < unidades_.size() && !EsOperador(unidades_[u].signo)) --u;
    return u < unidades_.size() ? u : OperadorSuelto();
  }
  std::size_t OperadorSuelto() const {
    std::size_t u = 0;
    while (u + 1 < unidades_.size() &&
           !(EsOperador(unidades_[u].signo) && !EsOperando(u + 1) && !Es(u + 1, u'(')))
      ++u;
    return u;
  }
  std::size_t OperadorDe(const Operando& izquierdo, const Operando& derecho) const {
    const std::size_t fin = Final(izquierdo);
    return fin != kNinguna ? OperadorTras(fin) : OperadorAntes(Principio(derecho));
  }

  // Walks the steps that the root reaches, as evaluation does, and those that only a problem keeps it from.
  void Recorre() {
    estados_.assign(arbol_.Nodos() + arbol_.Internas(), Estado::pendiente);
    Abre(arbol_.Nodos() - 1);
    while (!marcos_.empty() && problemas_.size() < kMaxProblemas) {
      Marco& marco = marcos_.back();
      if (marco.siguiente == marco.operandos.size()) {
        estados_[marco.paso] = Estado::listo;
        marcos_.pop_back();
        continue;
      }
      const Operando o = Lee(marco.operandos[marco.siguiente++]);
      Resuelve(o, marco);
    }
  }

  void Abre(std::size_t paso) {
    estados_[paso] = Estado::abierto;
    marcos_.push_back({paso, Operandos(paso)});
    if (paso < arbol_.Nodos()) {
      if (arbol_.Nodo(paso).operador != u"=") return;
      const std::vector<UnicodeString>& operandos = marcos_.back().operandos;
      Problema(OperadorDe(Lee(operandos[0]), Lee(operandos[1])),
               u"El operador = no se evalúa; para saber si A y B son iguales escriba NO(A<>B)");
    } else {
      ExigeArgumentos(paso - arbol_.Nodos(), marcos_.back().operandos.size());
    }
  }

  // How many a built-in needs the evaluator knows.
  void ExigeArgumentos(std::size_t llamada, std::size_t cuenta) {
    FUNCTION_INTERNA prueba{unidades_[llamadas_[llamada]].texto, {}};
    for (std::size_t i = 0; i < cuenta; ++i) prueba.argumentos.Add(u"1");
    try {
      arbol_.ResuelveFuncionIn(&prueba);
    } catch (const EInvalidOperation& e) {
      Problema(llamadas_[llamada], e.Message());
    }
  }

  void Resuelve(const Operando& o, const Marco& marco) {
    double numero = 0;
    if (TryStrToFloat(o.texto, numero)) return;
    if (EsVariable(o)) {
      variables_.emplace_back(Principio(o), o.texto);
      return;
    }
    const std::optional<std::size_t> paso = BuscaPaso(o.texto);
    if (!paso) {
      Explica(o, marco);
      // Evaluation ends here; who corrects the formula wants to know what else is wrong.
      for (const Operando::Parte& parte : o.partes) {
        if (parte.esPaso && estados_[parte.lugar] == Estado::pendiente) Abre(parte.lugar);
      }
    } else if (estados_[*paso] == Estado::abierto) {
      Problema(Principio(o), u"La fórmula se refiere a sí misma en " + o.texto);
    } else if (estados_[*paso] == Estado::pendiente) {
      Abre(*paso);
    }
  }

  bool EsVariable(const Operando& o) const {
    if (conocidas_ != nullptr) return conocidas_->contains(o.texto);
    return o.partes.size() == 1 && !o.partes[0].esPaso && PareceVariable(o.texto) &&
           o.texto == Nombre(o.partes[0].lugar);
  }

  // A node or a call by its name, typed or not: "FUN0", "SUMA1", without leading zeros.
  std::optional<std::size_t> BuscaPaso(std::u16string_view nombre) const {
    const std::size_t corte = nombre.find_last_not_of(u"0123456789") + 1;
    const std::u16string_view digitos = nombre.substr(std::min(corte, nombre.size()));
    std::int32_t numero = 0;
    if (corte == 0 || (digitos.size() > 1 && digitos[0] == u'0') || !TryStrToInt(digitos, numero)) return {};
    const auto n = static_cast<std::size_t>(numero);
    const std::u16string_view raiz = nombre.substr(0, corte);
    if (n < arbol_.Nodos() && SameText(raiz, u"FUN")) return n;
    if (n < llamadas_.size() && SameText(raiz, unidades_[llamadas_[n]].texto)) return arbol_.Nodos() + n;
    return {};
  }

  // Says what is wrong with an operand that has no value.
  void Explica(const Operando& o, const Marco& marco) {
    if (o.partes.empty()) {
      ExplicaHueco(o, marco);
      return;
    }
    const std::size_t u = Principio(o);
    const std::size_t fin = Extremo(o.partes.front(), true);
    std::size_t sigue = fin + 1;
    if (!o.partes.front().esPaso && Es(sigue, u'(') && !EmpiezaNumero(Nombre(u))) {
      Problema(u, TFormula::EsFuncionInterna(Nombre(u)) ? kControl + Nombre(u)
                                                        : u"Función desconocida " + Nombre(u));
      return;
    }
    while (Es(sigue, u')')) ++sigue;
    if (o.partes.size() > 1 && (EsOperando(sigue) || Es(sigue, u'('))) {
      Problema(sigue, u"Falta un operador antes " + DeNombre(sigue));
    } else if (o.coma) {
      std::size_t coma = o.texto.front() == u',' ? u : fin;
      const bool atras = o.texto.front() == u',';
      while (coma < unidades_.size() && !Es(coma, u',')) atras ? --coma : ++coma;
      Problema(coma, u"La coma solo separa los argumentos de una función");
    } else if (EsOperador(o.texto.front())) {
      ExplicaSigno(OperadorAntes(u), u);
    } else {
      ExplicaNombre(u, o.texto);
    }
  }

  void ExplicaHueco(const Operando& o, const Marco& marco) {
    if (marco.paso >= arbol_.Nodos()) {
      const std::size_t u = llamadas_[marco.paso - arbol_.Nodos()];
      Problema(u, u"Falta un argumento en la función " + Nombre(u));
      return;
    }
    if (arbol_.Nodo(marco.paso).operador == u"=") return;
    const Operando izquierdo = Lee(marco.operandos[0]);
    const Operando derecho = Lee(marco.operandos[1]);
    const std::size_t u = OperadorDe(izquierdo, derecho);
    if (marco.siguiente == 1 && !derecho.partes.empty()) {
      Problema(u, u"Falta un operando antes de " + TextoOperador(u));
      return;
    }
    std::size_t sigue = u + TextoOperador(u).size();
    while (Es(sigue, u'(')) ++sigue;
    if (sigue < unidades_.size() && EsSigno(unidades_[sigue].signo) && o.texto.empty()) {
      Problema(u, u"Después de " + TextoOperador(u) + u" no puede ir el signo " + unidades_[sigue].signo +
                      u": escriba (0" + unidades_[sigue].signo + u"...)");
    } else {
      Problema(u, u"Falta un operando después de " + TextoOperador(u));
    }
  }

  // An operator stayed before an operand.
  void ExplicaSigno(std::size_t operador, std::size_t u) {
    const char16_t signo = unidades_[operador].signo;
    const bool doble = signo == u'=' && operador > 0 && EsOperador(unidades_[operador - 1].signo);
    if (doble && (operador == 1 || !(EsOperando(operador - 2) || Es(operador - 2, u')')))) {
      Problema(operador - 1, u"Falta un operando antes de " + TextoOperador(operador - 1));
    } else if (doble) {
      Problema(operador - 1, u"Encierre entre paréntesis las comparaciones encadenadas");
    } else if (EsSigno(signo)) {
      Problema(operador, UnicodeString(u"El signo ") + signo + u" no puede ir aquí ante " +
                             (Es(operador + 1, u'(') ? u"el paréntesis" : Nombre(u)) + u": escriba (0" +
                             signo + u"...)");
    } else {
      Problema(operador, u"Falta un operando antes de " + TextoOperador(operador));
    }
  }

  void ExplicaNombre(std::size_t u, std::u16string_view texto) {
    const UnicodeString nombre = Nombre(u);
    if (texto != nombre) {
      Problema(u, kControl + nombre);
    } else if (TFormula::EsFuncionInterna(nombre)) {
      Problema(u, u"Faltan los argumentos de la función " + nombre);
    } else if (conocidas_ == nullptr && NombraPaso(nombre)) {
      Problema(u, nombre + u" no puede ser nombre de variable");
    } else if (EmpiezaNumero(nombre)) {
      Problema(u, nombre + u" no es un número");
    } else {
      Problema(u, u"Variable desconocida " + nombre);
    }
  }

  UnicodeString TextoOperador(std::size_t u) const {
    UnicodeString texto(1, unidades_[u].signo);
    const bool doble =
        (Es(u, u'<') && (Es(u + 1, u'>') || Es(u + 1, u'='))) || (Es(u, u'>') && Es(u + 1, u'='));
    if (doble) texto += unidades_[u + 1].signo;
    return texto;
  }

  void Avisa() {
    for (std::size_t u = 0; u < unidades_.size(); ++u) {
      const bool trasGrupo = u > 0 && Es(u - 1, u')');
      const bool trasNombre = u > 0 && EsOperando(u - 1) && !EsLlamada(u - 1) && !Nombre(u - 1).empty();
      if ((trasGrupo && EsOperando(u)) || ((trasGrupo || trasNombre) && Es(u, u'('))) {
        Aviso(u, u"Falta un operador antes " + DeNombre(u));
      }
      if (const char16_t* const c = SignoEnNombre(u)) {
        Aviso(u, UnicodeString(u"El signo ") + *c + u" no es un operador: se lee la variable " + Nombre(u));
      }
      if (unidades_[u].conBlancos) Aviso(u, u"Los espacios no separan: se lee " + Nombre(u));
    }
    if (!unidades_.empty() && EsSigno(unidades_.back().signo)) {
      const std::size_t u = unidades_.size() - 1;
      Aviso(u, u"Falta un operando después de " + TextoOperador(u) + u": se toma 0");
    }
  }

  // In a variable that nobody listed: who writes `A^B` or `A;B` takes the sign for an operator.
  const char16_t* SignoEnNombre(std::size_t u) const {
    if (conocidas_ != nullptr || !EsOperando(u) || Nombre(u).empty() || !PareceVariable(Nombre(u)))
      return nullptr;
    constexpr std::u16string_view kSignos = u"!\"#%&':;?@[\\]^`{|}~";
    const std::size_t lugar = unidades_[u].texto.find_first_of(kSignos);
    return lugar == UnicodeString::npos ? nullptr : &unidades_[u].texto[lugar];
  }

  void Problema(std::size_t u, const UnicodeString& mensaje) {
    if (problemas_.size() < kMaxProblemas) problemas_.emplace(u, mensaje);
  }
  void Aviso(std::size_t u, const UnicodeString& mensaje) { avisos_.emplace(u, mensaje); }

  std::vector<NotaFormula> ConPosicion(const Notas& notas) const {
    std::vector<NotaFormula> lista;
    for (const auto& [u, mensaje] : notas) {
      lista.push_back({u < unidades_.size() ? unidades_[u].posicion : 1, mensaje});
    }
    return lista;
  }

  RevisionFormula Resultado() {
    // What does not serve is not warned of in the same place or behind it.
    std::erase_if(avisos_, [this](const auto& aviso) {
      return std::any_of(problemas_.begin(), problemas_.end(), [&](const auto& problema) {
        return problema.first == aviso.first || problema.first + 1 == aviso.first;
      });
    });
    std::stable_sort(variables_.begin(), variables_.end());
    std::vector<UnicodeString> variables;
    Conocidas vistas;
    for (const auto& [u, nombre] : variables_) {
      if (vistas.insert(nombre).second) variables.push_back(nombre);
    }
    return {ConPosicion(problemas_), ConPosicion(avisos_), std::move(variables)};
  }

  const Conocidas* conocidas_;
  std::vector<Unidad> unidades_;
  /// Of each "(", the unit that closes it.
  std::vector<std::size_t> cierre_;
  /// Names of the built-ins called, by the number of the call.
  std::vector<std::size_t> llamadas_;
  TFormula arbol_;
  std::vector<Estado> estados_;
  std::vector<Marco> marcos_;
  Notas problemas_;
  Notas avisos_;
  /// By their unit.
  std::vector<std::pair<std::size_t, UnicodeString>> variables_;
};

}  // namespace

void NombresVariables::Agrega(const Texto& nombre) { nombres_.emplace_back(nombre.Vista()); }

NombresVariables::NombresVariables(std::initializer_list<Texto> nombres) {
  for (const Texto& nombre : nombres) Agrega(nombre);
}

RevisionFormula Revisa(const Texto& formula) {
  RevisionFormula revision = Revisor(formula, nullptr).Revisa();
  if (revision.Sirve()) return revision;
  // What is glued together, as in `AB+(A)B`, may make a name that is a variable elsewhere.
  RevisionFormula conNombres = Revisa(formula, revision.variables);
  return conNombres.Sirve() ? conNombres : revision;
}

RevisionFormula Revisa(const Texto& formula, const NombresVariables& conocidas) {
  const Revisor::Conocidas nombres(conocidas.Lista().begin(), conocidas.Lista().end());
  return Revisor(formula, &nombres).Revisa();
}

}  // namespace vel::facil
