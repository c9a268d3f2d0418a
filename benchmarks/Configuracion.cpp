// Settings against GLib's key files, saved definitions, and date macros.

#include "Uutilext/config/Configuracion.h"

#include <filesystem>
#include <fstream>
#include <glib.h>
#include <memory>
#include <string>
#include <unistd.h>

#include "Fechas/Fechas.h"
#include "Paramsql/Paramsql.h"
#include "benchmarks/Medicion.h"
#include "framework/Numeros.h"

namespace {

std::string Archivo(std::size_t claves) {
  std::string texto;
  for (std::size_t i = 0; i < claves; ++i) {
    if (i % 20 == 0) texto += "\n[Empresa" + std::to_string(i / 20) + "]\n";
    texto += "Clave" + std::to_string(i % 20) + "=Valor de la clave " + std::to_string(i) + "\n";
  }
  return texto;
}

std::string ConGlib(const std::string& ruta, const char* seccion, const char* clave) {
  const std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> archivo(g_key_file_new(), &g_key_file_free);
  g_key_file_load_from_file(archivo.get(), ruta.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
  const std::unique_ptr<char, decltype(&g_free)> valor(
      g_key_file_get_value(archivo.get(), seccion, clave, nullptr), &g_free);
  return valor == nullptr ? "" : valor.get();
}

void EscribeConGlib(const std::string& ruta, const char* seccion, const char* clave, const char* valor) {
  const std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> archivo(g_key_file_new(), &g_key_file_free);
  g_key_file_load_from_file(archivo.get(), ruta.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
  g_key_file_set_value(archivo.get(), seccion, clave, valor);
  g_key_file_save_to_file(archivo.get(), ruta.c_str(), nullptr);
}

void Arma(vel::TParametrosFiltro& f, std::size_t condiciones) {
  for (std::size_t i = 0; i < condiciones; ++i) {
    f.AgregaFiltro(u"CAMPO" + vel::IntToStr(static_cast<std::int64_t>(i)), vel::TFieldType::ftString,
                   vel::Variant(u"Valor"), vel::ENUM_OPERADOR::IGUAL, vel::ENUM_CONECTOR::AND,
                   vel::ENUM_GRUPO::NADA, true);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::filesystem::path carpeta =
      std::filesystem::temp_directory_path() / ("medicion_configuracion_" + std::to_string(getpid()));
  std::filesystem::create_directories(carpeta);
  const auto ruta = [&carpeta](const std::string& nombre) { return (carpeta / nombre).string(); };
  const auto texto = [&ruta](const std::string& nombre) { return vel::UTF8ToString(ruta(nombre)); };
  for (const char* nombre : {"a.ini", "b.ini"})
    std::ofstream(ruta(nombre), std::ios::binary) << Archivo(1'000);
  const vel::UnicodeString a = texto("a.ini");
  const std::string b = ruta("b.ini");
  for (const auto& [seccion, clave] :
       {std::pair("Empresa0", "Clave0"), {"Empresa25", "Clave7"}, {"Empresa49", "Clave19"}}) {
    medicion::Exige(vel::UTF8Encode(vel::DameValor(a, vel::UTF8ToString(seccion),
                                                   vel::UTF8ToString(clave))) == ConGlib(b, seccion, clave),
                    "DameValor");
  }
  vel::EscribeValor(a, u"Empresa25", u"Clave7", u"otro");
  EscribeConGlib(b, "Empresa25", "Clave7", "otro");
  medicion::Exige(ConGlib(ruta("a.ini"), "Empresa25", "Clave7") == "otro" &&
                      vel::DameValor(texto("b.ini"), u"Empresa25", u"Clave7") == u"otro",
                  "EscribeValor");
  vel::TParametrosFiltro definicion(u"T");
  Arma(definicion, 50);
  definicion.SaveToIni(texto("consulta.ini"), 0);
  vel::TParametrosFiltro leida(u"");
  leida.LoadFromIni(texto("consulta.ini"), 0);
  medicion::Exige(leida.DameSentenciaSQL(false, 0) == definicion.DameSentenciaSQL(false, 0), "SaveToIni");

  const vel::TConfigVEL fechas(texto("nada.ini"), vel::EncodeDate({2024, 5, 15}));
  std::size_t total = 0;
  int vuelta = 0;
  const auto guarda = [&](std::size_t n) {
    auto f = std::make_shared<vel::TParametrosFiltro>(u"T");
    Arma(*f, n);
    return [f, archivo = texto("escala.ini"), &vuelta] {
      f->NombreTabla = vuelta++ % 2 == 0 ? u"A" : u"B";
      f->SaveToIni(archivo, 0);
      f->LoadFromIni(archivo, 0);
    };
  };
  const int codigo = medicion::Ejecuta(
      argc, argv,
      {{.nombre = "DameValor, 1,000 keys",
        .propio = [&] { total += vel::DameValor(a, u"Empresa49", u"Clave19").size(); },
        .par = [&] { total += ConGlib(b, "Empresa49", "Clave19").size(); },
        .limite = 0.12,
        .nombrePar = "GLib load, get"},
       {.nombre = "EscribeValor, 1,000 keys",
        .propio = [&] { vel::EscribeValor(a, u"Empresa25", u"Clave7", vuelta++ % 2 == 0 ? u"uno" : u"dos"); },
        .par = [&] { EscribeConGlib(b, "Empresa25", "Clave7", vuelta++ % 2 == 0 ? "uno" : "dos"); },
        .limite = 0.45,
        .nombrePar = "GLib load, set, save"},
       {.nombre = "InterpretaFecha (target 100 ns)",
        .propio =
            [&] {
              vel::Fecha f{15, 5, 2024};
              total += fechas.InterpretaFecha(f, u"31/-1/0") ? 1U : 0U;
            },
        .par =
            [&] {
              vel::Fecha f{15, 5, 2024};
              total += fechas.InterpretaFecha(f, u"-7/0/-1") ? 1U : 0U;
            },
        .nombrePar = "with days back"}},
      {{.nombre = "save and load a definition, per condition",
        .tamanos = {50, 500, 5'000},
        .prepara = guarda}});
  std::filesystem::remove_all(carpeta);
  return codigo;
}
