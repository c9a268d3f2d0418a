// Date macros.

#include <algorithm>
#include <limits>

#include "Fechas/TConfigVEL.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

constexpr short kDia = 0;
constexpr short kMes = 1;

short Limite(short tipo) noexcept {
  if (tipo == kDia) return 31;
  return tipo == kMes ? 12 : std::numeric_limits<short>::max();
}

// Every fourth year is a leap year here; the ranges of the suite end long before 2100.
int DiasDelMes(int mes, int anio) noexcept {
  constexpr int kDias[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (mes < 1 || mes > 12) return 31;
  return mes == 2 && anio % 4 == 0 ? 29 : kDias[mes - 1];
}

// Takes the text up to the next "/".
std::u16string_view Parte(std::u16string_view& resto) noexcept {
  const std::size_t diagonal = resto.find(u'/');
  const std::u16string_view parte = resto.substr(0, diagonal);
  resto.remove_prefix(diagonal == std::u16string_view::npos ? resto.size() : diagonal + 1);
  return parte;
}

}  // namespace

bool TConfigVEL::EvalCad(short& valor, short tipo, std::u16string_view parte) const {
  valor = 0;
  if (parte == u"?") return true;
  std::int32_t leido = 0;
  const std::int32_t limite = Limite(tipo);
  if (!TryStrToInt(parte, leido) || leido < -limite || leido > limite) return false;
  valor = static_cast<short>(leido);
  return true;
}

bool TConfigVEL::InterpretaFecha(Fecha& fecha, std::u16string_view macro) const {
  short dia = 0;
  short mes = 0;
  short anio = 0;
  if (!EvalCad(dia, kDia, Parte(macro)) || !EvalCad(mes, kMes, Parte(macro)) || !EvalCad(anio, 2, macro))
    return false;

  int a = anio > 0 ? anio : fecha.anio + anio;
  int m = mes > 0 ? mes : fecha.mes;
  if (mes < 0) {
    m = fecha.mes + mes;
    if (m < 1) {
      --a;
      m += 12;
    }
  }
  // A year that the date cannot hold is no valid part.
  if (a < std::numeric_limits<short>::min()) return false;
  fecha.anio = static_cast<short>(a);
  fecha.mes = static_cast<short>(m);
  if (dia > 0) fecha.dia = static_cast<short>(std::min<int>(dia, DiasDelMes(m, a)));
  if (dia < 0) Suma(dia, fecha);
  return true;
}

void TConfigVEL::Suma(short dias, Fecha& fecha) const {
  // From the first of the month, so that a day that the month does not have counts on into the next.
  TDateTime primero;
  if (!TryEncodeDate({fecha.anio, fecha.mes, 1}, primero)) return;
  const double dia = primero.Val() + (fecha.dia - 1) + dias;
  TDateTime ultimo;
  TryEncodeDate({9999, 12, 31}, ultimo);
  TDateTime inicio;
  TryEncodeDate({1, 1, 1}, inicio);
  if (dia < inicio.Val() || dia > ultimo.Val()) return;
  const CivilDate nueva = DecodeDate(TDateTime(dia));
  fecha = {static_cast<short>(nueva.dia), static_cast<short>(nueva.mes), static_cast<short>(nueva.anio)};
}

}  // namespace vel
