// Commands that the build, the shell and the tests ask for: the texts that are made from the commands.

#include <memory>
#include <string>

#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Ayuda.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"

namespace utilvel {

void AgregaInternos(Programa& programa) {
  const struct {
    const char* nombre;
    std::string (*texto)(const Programa&);
  } internos[] = {{"_manual", PaginaManual}, {"_completa", Completado}, {"_ejemplos", Ejemplos}};
  for (const auto& interno : internos) {
    const auto texto = interno.texto;
    const auto archivo = std::make_shared<std::string>();
    CLI::App& comando =
        programa.Agrega({.nombre = interno.nombre, .resumen = ""}, [texto, archivo, &programa] {
          Escritor salida(*archivo);
          salida.Escribe(texto(programa));
          salida.Termina();
          return Codigo::Bien;
        });
    AgregaArgumento(comando, "--salida", *archivo, "");
    // Without a group it does not show.
    Oculta(comando);
  }
}

}  // namespace utilvel
