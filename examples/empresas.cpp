// Lists the companies of an example catalog and their folders.

#include <cstdio>
#include <string>

#include "Uutilext/config/Rutas.h"
#include "examples/Salida.h"
#include "facil/Catalogo.h"

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    for (const vel::facil::Empresa& empresa : vel::facil::ListaEmpresas(carpeta + "/Empresas.xml")) {
      std::printf("%s  %s\n", vel::UTF8Encode(vel::DameNumEmpFormat(empresa.numero)).c_str(),
                  vel::UTF8Encode(empresa.nombre).c_str());
      const auto linea = [](const char* rotulo, std::u16string_view texto) {
        std::printf("    %-14s%s\n", rotulo, vel::UTF8Encode(texto).c_str());
      };
      linea("controlador", empresa.driver);
      linea("datos", empresa.rutaDatos);
      linea("respaldos", vel::DameRutaRespaldosEmpresa(empresa.numero));
      linea("certificados", vel::DameRutaCertificados(empresa.numero));
    }
  });
}
