#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "tests/CarpetaTemporal.h"

namespace {

namespace fs = std::filesystem;
using pruebas::CarpetaTemporal;

const std::string kFacturas = std::string(DATOS_PRUEBA) + "/cfdi";

std::string Lee(const fs::path& ruta) {
  std::ifstream archivo(ruta, std::ios::binary);
  return {std::istreambuf_iterator<char>(archivo), {}};
}

struct Corrida {
  int codigo;
  std::string salida;
  std::string errores;
};

/// Runs `utilvel cfdi` with what a user types behind it, in the folder of the invoices.
Corrida Corre(const CarpetaTemporal& carpeta, const std::string& argumentos) {
  const std::string salida = (carpeta.Ruta() / "salida").string();
  const std::string errores = (carpeta.Ruta() / "errores").string();
  const std::string orden = "cd '" + kFacturas + "' && '" PROGRAMA "' cfdi " + argumentos;
  const int estado = std::system(("(" + orden + ") >'" + salida + "' 2>'" + errores + "'").c_str());
  return {WIFEXITED(estado) ? WEXITSTATUS(estado) : -1, Lee(salida), Lee(errores)};
}

std::string Facturas() {
  std::vector<std::string> nombres;
  for (const auto& entrada : fs::directory_iterator(kFacturas))
    if (entrada.path().extension() == ".xml") nombres.push_back(entrada.path().filename().string());
  std::sort(nombres.begin(), nombres.end());
  std::string todos;
  for (const std::string& nombre : nombres) todos += nombre + ' ';
  return todos;
}

TEST(Cfdi, TellsOfEveryInvoiceWhatDiffersAndByHowMuch) {
  const CarpetaTemporal carpeta;
  const Corrida corrida = Corre(carpeta, Facturas());
  EXPECT_EQ(corrida.salida, Lee(kFacturas + "/esperado.txt"));
  EXPECT_EQ(corrida.errores, "");
  EXPECT_EQ(corrida.codigo, 1);
}

TEST(Cfdi, GivesProgramsOneObjectAFileOrRows) {
  const CarpetaTemporal carpeta;
  const std::string cuales =
      "certificado_otro.xml en_limites.xml ieps_tasa.xml iva16.xml pago10_mal.xml traslado.xml";
  EXPECT_EQ(Corre(carpeta, "--json " + cuales).salida, Lee(kFacturas + "/esperado.json"));
  EXPECT_EQ(Corre(carpeta, "--csv " + cuales).salida, Lee(kFacturas + "/esperado.csv"));
}

TEST(Cfdi, TellsByItsExitCodeHowItWent) {
  const CarpetaTemporal carpeta;
  carpeta.Escribe("roto.xml", "<a>\n  <b></a>");
  carpeta.Escribe("vacia", "");
  const std::string roto = "'" + (carpeta.Ruta() / "roto.xml").string() + "'";
  const std::string falta = "utilvel: " + (carpeta.Ruta() / "roto.xml").string() +
                            ":2:8: un elemento cierra con otro nombre, o no cierra\n";
  const struct {
    std::string argumentos;
    int codigo;
    std::string salida;
    std::string errores;
  } casos[] = {
      {"iva16.xml", 0, "iva16.xml: correcta\n", ""},
      {"- <iva16.xml", 0, "-: correcta\n", ""},
      {"--lista '" + (carpeta.Ruta() / "vacia").string() + "'", 0, "", ""},
      {"en_limites.xml >/dev/null", 0, "", ""},
      {"centavo.xml >/dev/null", 1, "", ""},
      {"certificado_otro.xml >/dev/null", 1, "", ""},
      {"", 2, "", "utilvel: Falta FACTURA o --lista\n"},
      {"no_hay.xml", 3, "", "utilvel: No se puede leer no_hay.xml: el archivo no existe\n"},
      {roto, 4, "", falta},
      {"iva16.xml " + roto + " centavo.xml >/dev/null", 5, "", falta},
  };
  for (const auto& caso : casos) {
    const Corrida corrida = Corre(carpeta, caso.argumentos);
    EXPECT_EQ(corrida.codigo, caso.codigo) << caso.argumentos;
    EXPECT_EQ(corrida.salida, caso.salida) << caso.argumentos;
    EXPECT_EQ(corrida.errores, caso.errores) << caso.argumentos;
  }
}

TEST(Cfdi, KeepsTheOrderOfThousandsOfFilesAndGoesOnBehindBrokenOnes) {
  const CarpetaTemporal carpeta;
  std::string lista;
  std::string salida;
  std::string errores;
  const std::string buena = Lee(kFacturas + "/iva16.xml");
  for (int i = 0; i < 1000; ++i) {
    const std::string nombre = (carpeta.Ruta() / (std::to_string(i) + ".xml")).string();
    const bool rota = i % 100 == 7;
    carpeta.Escribe(std::to_string(i) + ".xml", rota ? buena.substr(0, 900) : buena);
    lista += nombre + (i % 2 == 0 ? "\r\n" : "\n");
    if (rota) {
      errores += "utilvel: " + nombre + ":2:187: un atributo está mal escrito\n";
    } else {
      salida += nombre + ": correcta\n";
    }
  }
  carpeta.Escribe("lista", lista);
  salida += "990 correctas, 0 con diferencias dentro de los límites, 0 con diferencias, 10 sin leer\n";
  const Corrida corrida = Corre(carpeta, "--lista - <'" + (carpeta.Ruta() / "lista").string() + "'");
  EXPECT_EQ(corrida.salida, salida);
  EXPECT_EQ(corrida.errores, errores);
  EXPECT_EQ(corrida.codigo, 5);
}

}  // namespace
