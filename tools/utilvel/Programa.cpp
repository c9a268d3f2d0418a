#include "tools/utilvel/Programa.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

#include "framework/Excepciones.h"
#include "tools/utilvel/Ayuda.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Sistema.h"

namespace utilvel {
namespace {

// The command that the line names last: of "config lee" it is "lee".
const CLI::App& Pedido(const CLI::App& raiz) {
  const CLI::App* app = &raiz;
  while (!app->get_subcommands().empty()) app = app->get_subcommands().front();
  return *app;
}

// What the parser's message says before or after a mark; the whole without it.
std::string Antes(const std::string& mensaje, std::string_view marca) {
  return mensaje.substr(0, mensaje.find(marca));
}
std::string Despues(const std::string& mensaje, std::string_view marca) {
  const std::size_t lugar = mensaje.find(marca);
  return lugar == std::string::npos ? mensaje : mensaje.substr(lugar + marca.size());
}

std::string NoExiste(const std::string& que) {
  return (que.starts_with('-') ? "No existe la opción " : "No existe la orden ") + que;
}

// The parser tells its errors in English only.
std::string EnEspanol(const CLI::ParseError& error, const CLI::App& pedido) {
  std::string mensaje = error.what();
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    const std::string que = Antes(mensaje, " is required");
    if (que != "A subcommand") return "Falta " + que;
    const std::vector<std::string> sobra = pedido.remaining();
    return sobra.empty() ? "Falta la orden" : NoExiste(sobra.front());
  }
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    const std::string sobra = Despues(mensaje, ": ");
    return sobra.starts_with('-') ? NoExiste(sobra) : "Sobra " + sobra;
  }
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    return "Falta el valor de " + Antes(mensaje, ":");
  }
  if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
    return Antes(mensaje, " excludes ") + " no va junto con " + Despues(mensaje, " excludes ");
  }
  if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
    return "No es un valor válido: " + Despues(mensaje, ": ");
  }
  return mensaje;
}

// Any text of the line may name a file that the command reads.
void RevisaSalida(const CLI::App& comando) {
  const CLI::Option* const salida = comando.get_option_no_throw("--salida");
  if (salida == nullptr || salida->count() == 0) return;
  for (const CLI::Option* const otra : comando.get_options()) {
    if (otra != salida) ExigeOtraSalida(salida->results().front(), otra->results());
  }
}

}  // namespace

Programa::Programa() : raiz_(std::make_unique<CLI::App>("", "utilvel")) {
  raiz_->set_help_flag("-h,--help,--ayuda", "Esta ayuda");
  // As an option too, which is what people and installers try: it runs the command of that name.
  raiz_->set_version_flag("--version", std::string());
  raiz_->require_subcommand(1);
}

Programa::~Programa() = default;

CLI::App& Programa::Agrega(Ficha ficha, std::function<Codigo()> corre) {
  return Agrega(*raiz_, std::move(ficha), std::move(corre));
}

CLI::App& Programa::Agrega(CLI::App& padre, Ficha ficha, std::function<Codigo()> corre) {
  CLI::App* const comando = padre.add_subcommand(ficha.nombre, ficha.resumen);
  comandos_.push_back({comando, std::move(ficha), std::move(corre)});
  return *comando;
}

const Programa::Comando* Programa::Busca(const CLI::App& comando) const noexcept {
  const auto it = std::find_if(comandos_.begin(), comandos_.end(),
                               [&comando](const Comando& c) { return c.app == &comando; });
  return it == comandos_.end() ? nullptr : &*it;
}

const Ficha* Programa::DameFicha(const CLI::App& comando) const noexcept {
  const Comando* const encontrado = Busca(comando);
  return encontrado == nullptr ? nullptr : &encontrado->ficha;
}

Codigo Programa::Ejecuta(int argc, const char* const* argv) {
  try {
    raiz_->parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    Escritor salida("");
    salida.Escribe(Ayuda(*this, Pedido(*raiz_)));
    salida.Termina();
    return Codigo::Bien;
  } catch (const CLI::CallForVersion&) {
    return Busca(*raiz_->get_subcommand("version"))->corre();
  } catch (const CLI::ParseError& error) {
    const CLI::App& pedido = Pedido(*raiz_);
    throw Falla(Codigo::Uso, EnEspanol(error, pedido) + ". " + Antes(Ayuda(*this, pedido), "\n"));
  }
  const CLI::App& pedido = Pedido(*raiz_);
  RevisaSalida(pedido);
  return Busca(pedido)->corre();
}

Codigo Programa::Corre(int argc, const char* const* argv) {
  try {
    return Ejecuta(argc, argv);
  } catch (const Falla& falla) {
    Avisa(falla.what());
    return falla.DameCodigo();
  } catch (const vel::EStreamError& error) {
    Avisa(error.what());
    return Codigo::Archivo;
  } catch (const vel::Exception& error) {
    Avisa(error.what());
    return Codigo::Datos;
  } catch (const Interrumpido&) {
    return Codigo::Interrumpido;
  } catch (const TuberiaCerrada&) {
    return Codigo::TuberiaCerrada;
  } catch (const std::bad_alloc&) {
    Avisa("No hay memoria suficiente");
    return Codigo::Interno;
  } catch (const std::exception& error) {
    Avisa(std::string("Falla del programa: ") + error.what());
    return Codigo::Interno;
  }
}

}  // namespace utilvel
