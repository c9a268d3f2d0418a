#include "tools/utilvel/Ayuda.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <vector>

#include "tools/utilvel/Codigos.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

constexpr std::size_t kAncho = 100;

struct Par {
  std::string nombre;
  std::string texto;
};

// What the program itself says, in help and manual page.
constexpr std::string_view kResumen = "Totales, fórmulas, ajustes, catálogos y sellos de la administradora";
constexpr std::string_view kNotas[] = {
    "En lugar de un archivo, \"-\" es la entrada estándar. Lo que se lee y se imprime está en UTF-8; lo que "
    "no lo "
    "está se lee como Windows-1252.",
    "Con --json sale un objeto por renglón, con los importes como textos para que nadie los redondee; con "
    "--csv, "
    "renglones separados por comas con los nombres de las columnas al principio. Un archivo pedido con "
    "--salida "
    "aparece completo o no aparece.",
    "Los errores salen en un renglón por la salida de errores. Los colores y la barra de avance salen solo "
    "en una "
    "terminal; con NO_COLOR no hay colores.",
};

std::string Pedazos(const CLI::Option& opcion) {
  const std::string& tipo = opcion.get_type_name();
  return opcion.get_items_expected_max() > 0 && !tipo.empty() ? " " + tipo : "";
}

// "[FACTURA...]" takes several values; "[--valor TEXTO]..." is written once for each.
std::string NombreEnUso(const CLI::Option& opcion) {
  const bool argumento = opcion.get_positional();
  const std::string puntos = opcion.get_items_expected_max() > 1 ? "..." : "";
  std::string nombre =
      argumento ? opcion.get_name() + puntos : opcion.get_name(false, false) + Pedazos(opcion);
  if (!opcion.get_required()) nombre = "[" + nombre + "]";
  return argumento ? nombre : nombre + puntos;
}

std::vector<const CLI::Option*> Opciones(const CLI::App& comando, bool posicionales) {
  return comando.get_options([posicionales, &comando](const CLI::Option* o) {
    return o->get_positional() == posicionales && o != comando.get_help_ptr() &&
           o != comando.get_version_ptr();
  });
}

std::vector<const CLI::App*> Subcomandos(const CLI::App& comando) {
  return comando.get_subcommands([](const CLI::App* c) { return !c->get_group().empty(); });
}

// "utilvel config lee".
std::string NombreCompleto(const CLI::App& comando) {
  return comando.get_parent() == nullptr ? comando.get_name()
                                         : NombreCompleto(*comando.get_parent()) + " " + comando.get_name();
}

std::string Uso(const CLI::App& comando) {
  std::string uso = NombreCompleto(comando);
  if (!Subcomandos(comando).empty()) uso += comando.get_require_subcommand_min() > 0 ? " ORDEN" : " [ORDEN]";
  for (const CLI::Option* o : Opciones(comando, true)) uso += " " + NombreEnUso(*o);
  for (const CLI::Option* o : Opciones(comando, false)) uso += " " + NombreEnUso(*o);
  return uso;
}

std::vector<Par> Pares(const CLI::App& comando, bool posicionales) {
  std::vector<Par> pares;
  for (const CLI::Option* o : Opciones(comando, posicionales)) {
    pares.push_back(
        {posicionales ? o->get_name() : o->get_name(false, true) + Pedazos(*o), o->get_description()});
  }
  return pares;
}

// A paragraph in lines of kAncho characters, each after so many blanks.
std::string Parrafo(std::string_view texto, std::size_t sangria) {
  std::string parrafo;
  std::string linea;
  while (!texto.empty()) {
    const std::size_t fin = std::min(texto.find(' '), texto.size());
    const std::string palabra(texto.substr(0, fin));
    texto.remove_prefix(std::min(fin + 1, texto.size()));
    if (!linea.empty() && sangria + Largo(linea) + 1 + Largo(palabra) > kAncho) {
      parrafo += std::string(sangria, ' ') + linea + "\n";
      linea.clear();
    }
    linea += (linea.empty() ? "" : " ") + palabra;
  }
  return parrafo + std::string(sangria, ' ') + linea + "\n";
}

std::string Seccion(const std::string& titulo, const std::vector<Par>& pares) {
  if (pares.empty()) return "";
  std::size_t ancho = 0;
  for (const Par& p : pares) ancho = std::max(ancho, Largo(p.nombre));
  std::string seccion = "\n" + titulo + ":\n";
  for (const Par& p : pares) {
    const std::string texto = Parrafo(p.texto, ancho + 4);
    seccion += "  " + p.nombre + texto.substr(Largo(p.nombre) + 2);
  }
  return seccion;
}

std::vector<Par> Resumenes(const CLI::App& comando) {
  std::vector<Par> pares;
  for (const CLI::App* c : Subcomandos(comando)) pares.push_back({c->get_name(), c->get_description()});
  return pares;
}

std::vector<Par> Codigos() {
  std::vector<Par> pares;
  for (const SignificadoCodigo& s : kCodigos) {
    pares.push_back({std::to_string(static_cast<int>(s.codigo)), std::string(s.significado)});
  }
  return pares;
}

std::vector<std::string> Parrafos(std::string_view texto) {
  std::vector<std::string> parrafos;
  while (!texto.empty()) {
    const std::size_t fin = std::min(texto.find('\n'), texto.size());
    parrafos.emplace_back(texto.substr(0, fin));
    texto.remove_prefix(std::min(fin + 1, texto.size()));
  }
  return parrafos;
}

// All commands in the order of the help, each before those within it.
void Recorre(const CLI::App& comando, std::vector<const CLI::App*>& todos) {
  for (const CLI::App* c : Subcomandos(comando)) {
    todos.push_back(c);
    Recorre(*c, todos);
  }
}

std::vector<const CLI::App*> Todos(const Programa& programa) {
  std::vector<const CLI::App*> todos;
  Recorre(programa.Raiz(), todos);
  return todos;
}

// A text in troff: what would be a command, or another character than the one typed, is escaped.
std::string Troff(std::string_view texto) {
  std::string troff;
  for (const char c : texto) {
    switch (c) {
      case '\\':
        troff += "\\e";
        break;
      case '-':
        troff += "\\-";
        break;
      case '\'':
        troff += "\\(aq";
        break;
      case '^':
        troff += "\\(ha";
        break;
      case '~':
        troff += "\\(ti";
        break;
      default:
        troff += c;
    }
  }
  return troff.starts_with('.') ? "\\&" + troff : troff;
}

std::string Definiciones(const std::vector<Par>& pares) {
  std::string troff;
  for (const Par& p : pares) troff += ".TP\n\\fB" + Troff(p.nombre) + "\\fR\n" + Troff(p.texto) + "\n";
  return troff;
}

}  // namespace

std::string Ayuda(const Programa& programa, const CLI::App& comando) {
  const Ficha* const ficha = programa.DameFicha(comando);
  std::string ayuda = "Uso: " + Uso(comando) + "\n\n";
  ayuda += Parrafo(ficha == nullptr ? std::string(kResumen) + "." : ficha->resumen + ".", 0);
  if (ficha != nullptr) {
    for (const std::string& p : Parrafos(ficha->detalle)) ayuda += "\n" + Parrafo(p, 0);
  }
  ayuda += Seccion("Órdenes", Resumenes(comando));
  ayuda += Seccion("Argumentos", Pares(comando, true));
  ayuda += Seccion("Opciones", Pares(comando, false));
  if (ficha == nullptr) {
    ayuda += "\n";
    for (const std::string_view nota : kNotas) ayuda += Parrafo(nota, 0);
    ayuda += Seccion("Códigos de salida", Codigos());
    return ayuda + "\nCada orden tiene su ayuda, con un ejemplo: utilvel redondea --help\n";
  }
  if (!ficha->ejemplos.empty()) ayuda += ficha->ejemplos.size() == 1 ? "\nEjemplo:\n" : "\nEjemplos:\n";
  for (const Ejemplo& e : ficha->ejemplos) ayuda += "  " + e.linea + "\n" + Parrafo(e.explica, 6);
  return ayuda;
}

std::string PaginaManual(const Programa& programa) {
  std::string troff =
      ".TH UTILVEL 1 \"\" \"UtilVel90\" \"Manual de la administradora\"\n.nh\n.ad l\n.SH NOMBRE\nutilvel "
      "\\- ";
  troff +=
      Troff(kResumen) + "\n.SH SINOPSIS\n.B utilvel\n\\fIORDEN\\fR [\\fIARGUMENTOS\\fR]\n.SH DESCRIPCIÓN\n";
  for (const std::string_view nota : kNotas) troff += ".PP\n" + Troff(nota) + "\n";
  troff += ".SH ÓRDENES\n";
  for (const CLI::App* comando : Todos(programa)) {
    const Ficha& ficha = *programa.DameFicha(*comando);
    troff += ".SS " + Troff(Uso(*comando)) + "\n" + Troff(ficha.resumen) + ".\n";
    for (const std::string& p : Parrafos(ficha.detalle)) troff += ".PP\n" + Troff(p) + "\n";
    troff += Definiciones(Pares(*comando, true)) + Definiciones(Pares(*comando, false));
    for (const Ejemplo& e : ficha.ejemplos) {
      troff += ".PP\n" + Troff(e.explica) + "\n.PP\n.RS 4\n.nf\n" + Troff(e.linea) + "\n.fi\n.RE\n";
    }
  }
  return troff + ".SH \"CÓDIGOS DE SALIDA\"\n" + Definiciones(Codigos());
}

std::string Completado(const Programa& programa) {
  // For each command those within it, or its options after a "-"; files where nothing of it fits.
  std::string bash =
      "# bash completion for utilvel(1)\n_utilvel() {\n"
      "  local cur=${COMP_WORDS[COMP_CWORD]} orden=\"\" palabra palabras opciones\n"
      "  for palabra in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
      "    case \"$orden $palabra\" in\n";
  std::string palabras = "  case \"$orden\" in\n";
  std::vector<const CLI::App*> todos = Todos(programa);
  todos.insert(todos.begin(), &programa.Raiz());
  for (const CLI::App* comando : todos) {
    const std::string clave = comando->get_parent() == nullptr
                                  ? ""
                                  : NombreCompleto(*comando).substr(programa.Raiz().get_name().size());
    if (!clave.empty())
      bash.append("      \"").append(clave).append("\") orden=\"").append(clave).append("\" ;;\n");
    palabras.append("    \"").append(clave).append("\") palabras=\"");
    for (const CLI::App* c : Subcomandos(*comando)) palabras += c->get_name() + " ";
    palabras += "\" opciones=\"";
    for (const CLI::Option* o : Opciones(*comando, false)) palabras += o->get_name(false, false) + " ";
    if (comando->get_version_ptr() != nullptr) palabras += "--version ";
    palabras += "--help\" ;;\n";
  }
  return bash + "    esac\n  done\n" + palabras +
         "  esac\n  if [[ $cur == -* ]]; then palabras=$opciones; fi\n  mapfile -t COMPREPLY < <(compgen -W "
         "\"$palabras\" -- \"$cur\")\n"
         "  if [ ${#COMPREPLY[@]} -eq 0 ]; then mapfile -t COMPREPLY < <(compgen -f -- \"$cur\"); fi\n}\n"
         "complete -o filenames -F _utilvel utilvel\n";
}

std::string Ejemplos(const Programa& programa) {
  std::string lineas;
  for (const CLI::App* comando : Todos(programa)) {
    for (const Ejemplo& e : programa.DameFicha(*comando)->ejemplos) lineas += e.linea + "\n";
  }
  return lineas;
}

}  // namespace utilvel
