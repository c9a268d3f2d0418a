// Cleans a list of addresses and a list of keys as users typed them.

#include <cstdio>
#include <string>

#include "Uutilext/text/Claves.h"
#include "Uutilext/text/Direcciones.h"
#include "Uutilext/text/Limpieza.h"
#include "Uutilext/text/Mascaras.h"
#include "examples/Salida.h"
#include "framework/Numeros.h"
#include "framework/TStringList.h"

namespace {

using ejemplo::Columna;
using vel::UnicodeString;

vel::TStringList Lineas(const std::string& ruta) {
  vel::TStringList lineas;
  lineas.SetText(vel::UTF8ToString(ejemplo::LeeArchivo(ruta)));
  return lineas;
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    std::printf("%s%s%s%s%s\n", Columna(u"Calle", 26).c_str(), Columna(u"Exterior", 10).c_str(),
                Columna(u"Interior", 10).c_str(), Columna(u"Cruce", 16).c_str(),
                Columna(u"Cruce", 16).c_str());
    const vel::TStringList direcciones = Lineas(carpeta + "/direcciones.txt");
    for (std::size_t i = 0; i < direcciones.Count(); ++i) {
      UnicodeString calle, exterior, interior, cruce1, cruce2;
      vel::DividirDireccion(vel::DejaSoloUnEspacioEntrePalabras(direcciones[i]), calle, exterior, interior,
                            cruce1, cruce2);
      std::printf("%s%s%s%s%s\n", Columna(calle, 26).c_str(), Columna(exterior, 10).c_str(),
                  Columna(interior, 10).c_str(), Columna(cruce1, 16).c_str(), Columna(cruce2, 16).c_str());
    }
    std::printf("\n%s%s%s%s\n", Columna(u"Clave escrita", 20).c_str(), Columna(u"Guardada", 16).c_str(),
                Columna(u"Serie", 10).c_str(), Columna(u"Número", -10).c_str());
    const vel::TStringList claves = Lineas(carpeta + "/claves.txt");
    for (std::size_t i = 0; i < claves.Count(); ++i) {
      const UnicodeString& clave = claves[i];
      std::printf("%s%s%s%s%s\n", Columna(u"[" + clave + u"]", 20).c_str(),
                  Columna(u"[" + vel::FormateaValorCve(clave, 10) + u"]", 16).c_str(),
                  Columna(vel::DameParteAlfanumerica(clave), 10).c_str(),
                  Columna(vel::IntToStr(vel::DameParteNumerica(clave)), -10).c_str(),
                  vel::EsSerieValida(clave) ? "" : "   (no sirve como nombre de archivo)");
    }
  });
}
