// Date macros against the calendar's arithmetic, and files of date ranges: every entry is what its line says.
#include <chrono>
#include <optional>
#include <vector>

#include "Fechas/TConfigVEL.h"
#include "framework/Numeros.h"
#include "framework/TextoIni.h"
#include "fuzz/ArchivoEnMemoria.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "platform/TextoArchivo.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using namespace vel;
using Texto = UnicodeString;
namespace crono = std::chrono;

// A part of a macro: 0 leaves its field.
std::optional<int> Parte(const Texto& texto, int limite) {
  std::int32_t numero = 0;
  if (texto == u"?") return 0;
  if (!TryStrToInt(texto, numero) || numero < -limite || numero > limite) return std::nullopt;
  return numero;
}

std::optional<Fecha> Aplica(Fecha f, const Texto& macro) {
  const std::size_t una = macro.find(u'/');
  const std::size_t dos = una == Texto::npos ? Texto::npos : macro.find(u'/', una + 1);
  if (dos == Texto::npos) return std::nullopt;
  const auto dia = Parte(macro.substr(0, una), 31);
  const auto mes = Parte(macro.substr(una + 1, dos - una - 1), 12);
  const auto anio = Parte(macro.substr(dos + 1), 32767);
  if (!dia || !mes || !anio) return std::nullopt;
  // Months counted from year 0, so that going back over January needs no case of its own.
  const int a = *anio > 0 ? *anio : f.anio + *anio;
  const int meses = a * 12 + (*mes > 0 ? *mes : f.mes + *mes) - 1;
  const int propio = meses >= 0 ? meses / 12 : (meses - 11) / 12;
  if (propio < -32768) return std::nullopt;
  f.anio = static_cast<short>(propio);
  f.mes = static_cast<short>(meses - propio * 12 + 1);
  if (*dia > 0) {
    static constexpr int kDias[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const int ultimo = kDias[f.mes - 1] + (f.mes == 2 && propio % 4 == 0 ? 1 : 0);
    f.dia = static_cast<short>(std::min(*dia, ultimo));
  } else if (*dia < 0 && propio >= 1 && propio <= 9999) {
    const crono::sys_days d =
        crono::sys_days{crono::year{propio} / f.mes / 1} + crono::days{f.dia - 1 + *dia};
    const crono::year_month_day nueva{d};
    const int suyo = static_cast<int>(nueva.year());
    if (suyo < 1 || suyo > 9999) return f;
    f = {static_cast<short>(static_cast<unsigned>(nueva.day())),
         static_cast<short>(static_cast<unsigned>(nueva.month())), static_cast<short>(suyo)};
  }
  return f;
}

std::string Muestra(const Fecha& f) {
  return std::to_string(f.dia) + "/" + std::to_string(f.mes) + "/" + std::to_string(f.anio);
}

void ExigeRango(const TConfigVEL& config, int indice, const Texto& linea, const Fecha& referencia) {
  const std::size_t coma = linea.find(u',');
  const Texto nombre = coma == Texto::npos ? Texto() : linea.substr(0, coma);
  ExigeIgual(config.Nombres(indice), nombre, "an entry's name");
  if (nombre.empty()) return;
  Texto resto = linea.substr(coma + 1);
  const std::size_t segunda = resto.find(u',');
  const Texto macros[] = {segunda == Texto::npos ? Texto() : resto.substr(0, segunda),
                          segunda == Texto::npos ? resto : resto.substr(segunda + 1)};
  for (const int cual : {1, 2}) {
    const Fecha esperada = Aplica(referencia, macros[cual - 1]).value_or(referencia);
    char texto[32];
    std::snprintf(texto, sizeof texto, "%02d/%02d/%04d", esperada.dia, esperada.mes, esperada.anio);
    ExigeIgual(UTF8Encode(config.FechaComoString(indice, cual)), std::string(texto), "an entry's date");
    const TDateTime momento = config.FechaComoDateTime(indice, cual);
    if (momento.Val() != 0)
      ExigeIgual(UTF8Encode(DateTimeToStr(momento)), std::string(texto), "an entry's moment");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  static const fuzz::ArchivoEnMemoria archivo("VEL.INI");
  fuzz::Entrada entrada(datos, largo);
  const double dia = entrada.Entero(-693'593, 2'958'465);
  const CivilDate civil = DecodeDate(TDateTime(dia));
  const Fecha referencia{static_cast<short>(civil.dia), static_cast<short>(civil.mes),
                         static_cast<short>(civil.anio)};
  const std::string bytes = entrada.Resto();
  if (bytes.find('[') == std::string::npos) {
    static const TConfigVEL config(u"/dev/shm/utilvel90_no_hay.ini", TDateTime(45000));
    const Texto macro = fuzz::Entrada::ATexto(bytes);
    Fecha fecha = referencia;
    const auto esperada = Aplica(referencia, macro);
    ExigeIgual(config.InterpretaFecha(fecha, macro), esperada.has_value(), "whether the macro is valid");
    ExigeIgual(Muestra(fecha), Muestra(esperada.value_or(referencia)), "the macro's date");
    return 0;
  }
  archivo.Escribe(bytes);
  const TConfigVEL config(archivo.RutaU16(), TDateTime(dia));
  const TextoIni ini(DecodificaArchivo(bytes).texto);
  const auto valor = [&ini](const Texto& clave) { return Texto(ini.Valor(u"FECHAS", clave).value_or(u"")); };
  std::int32_t total = 0;
  if (!TryStrToInt(valor(u"TOTAL"), total) || total < 0 || total > 100'000) total = 0;
  ExigeIgual(config.NumeroFormatos(), static_cast<int>(total), "the number of entries");
  for (int i = 0; i < std::min(total, 20); ++i) {
    ExigeRango(config, i, valor(u"Fch" + IntToStr(i)), referencia);
    const Texto nombre = config.Nombres(i);
    const int lugar = config.LocalizaMacro(nombre);
    Exige(lugar >= 0 && lugar <= i && config.Nombres(lugar) == nombre, "where a name stands");
  }
  return 0;
}
