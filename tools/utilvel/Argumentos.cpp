#include "tools/utilvel/Argumentos.h"

#include <CLI/CLI.hpp>
#include <utility>

namespace utilvel {

const Argumento& Argumento::Exige() const {
  opcion_->required();
  return *this;
}

const Argumento& Argumento::Toma(const std::string& valor) const {
  opcion_->type_name(valor);
  return *this;
}

const Argumento& Argumento::UnoPorVez() const {
  opcion_->allow_extra_args(false);
  return *this;
}

const Argumento& Argumento::SinOtro(const Argumento& otro) const {
  opcion_->excludes(otro.opcion_);
  return *this;
}

const Argumento& Argumento::Revisa(std::function<std::string(const std::string&)> revisa) const {
  opcion_->check(std::move(revisa));
  return *this;
}

Argumento AgregaArgumento(CLI::App& comando, const std::string& nombres, std::string& valor,
                          const std::string& explica) {
  return Argumento(comando.add_option(nombres, valor, explica));
}

Argumento AgregaArgumento(CLI::App& comando, const std::string& nombres, int& valor,
                          const std::string& explica) {
  return Argumento(comando.add_option(nombres, valor, explica));
}

Argumento AgregaArgumento(CLI::App& comando, const std::string& nombres, std::vector<std::string>& valores,
                          const std::string& explica) {
  return Argumento(comando.add_option(nombres, valores, explica));
}

Argumento AgregaBandera(CLI::App& comando, const std::string& nombre, bool& puesta,
                        const std::string& explica) {
  return Argumento(comando.add_flag(nombre, puesta, explica));
}

void ExigeOrden(CLI::App& comando) { comando.require_subcommand(1); }

void Oculta(CLI::App& comando) { comando.group(""); }

}  // namespace utilvel
