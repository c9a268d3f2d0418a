#include "tools/utilvel/Errores.h"

#include <cstdio>

#include "tools/utilvel/Sistema.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {

void Avisa(std::string_view mensaje) {
  std::string linea;
  for (const char c : mensaje) {
    if (c == '\n' || c == '\r') {
      if (!linea.empty() && linea.back() != ' ') linea += ' ';
    } else {
      linea += c;
    }
  }
  const bool rojo = ConColor(Flujo::Errores);
  const std::string texto =
      std::string(rojo ? "\x1B[31mutilvel:\x1B[0m " : "utilvel: ") + Visible(linea) + '\n';
  static_cast<void>(std::fwrite(texto.data(), 1, texto.size(), stderr));
}

}  // namespace utilvel
