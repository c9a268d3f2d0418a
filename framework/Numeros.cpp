#include "framework/Numeros.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

#include "framework/Excepciones.h"
#include "framework/PotenciasDiez.h"
#include "framework/QuinceDigitos.h"

namespace vel {
namespace {

constexpr int kDigitos = 15;

// A finite positive value as significant digits d1 d2 ... dn, meaning d1.d2...dn x 10^exponente.
struct Decimal {
  std::array<char, 24> digitos;
  int cuenta = 0;
  int exponente = 0;
};

// Reads "d.dddde[+-]xx" as std::to_chars writes it.
Decimal LeeCientifica(const char* inicio, const char* fin) noexcept {
  Decimal d;
  const char* p = inicio;
  for (; *p != 'e'; ++p) {
    if (*p != '.') d.digitos[static_cast<std::size_t>(d.cuenta++)] = *p;
  }
  ++p;
  if (*p == '+') ++p;
  std::from_chars(p, fin, d.exponente);
  return d;
}

Decimal ADecimal(double valor) noexcept {
  std::array<char, 48> buf;
  char* const inicio = buf.data();
  char* const fin = buf.data() + buf.size();
  // The shortest text that reads back to the value; when it has at most 15 digits it also is the value
  // rounded to 15 digits, since every decimal of 15 digits survives the trip through a normal double.
  auto r = std::to_chars(inicio, fin, valor, std::chars_format::scientific);
  Decimal d = LeeCientifica(inicio, r.ptr);
  if (d.cuenta > kDigitos || valor < std::numeric_limits<double>::min()) {
    r = std::to_chars(inicio, fin, valor, std::chars_format::scientific, kDigitos - 1);
    d = LeeCientifica(inicio, r.ptr);
  }
  while (d.cuenta > 1 && d.digitos[static_cast<std::size_t>(d.cuenta - 1)] == '0') --d.cuenta;
  return d;
}

UnicodeString Ensancha(std::string_view ascii) { return UnicodeString(ascii.begin(), ascii.end()); }

// The text as ASCII characters, without surrounding blanks; a character beyond ASCII becomes one that no
// number holds.
class TextoEstrecho {
 public:
  explicit TextoEstrecho(std::u16string_view texto) {
    char* destino = corto_.data();
    if (texto.size() > corto_.size()) {
      largo_.resize(texto.size());
      destino = largo_.data();
    }
    std::transform(texto.begin(), texto.end(), destino,
                   [](char16_t c) { return c < 0x80 ? static_cast<char>(c) : '?'; });
    vista_ = {destino, texto.size()};
  }
  std::string_view Vista() const noexcept { return vista_; }

 private:
  std::array<char, 64> corto_;
  std::string largo_;
  std::string_view vista_;
};

bool EsDigito(char c) noexcept { return c >= '0' && c <= '9'; }

// Of a number that std::from_chars found out of range: true when it is too large, false when too small.
// The decimal exponent of its first significant digit decides; it lies far from zero.
bool Desborda(std::string_view numero) noexcept {
  const std::size_t e = numero.find_first_of("eE");
  const std::string_view mantisa = numero.substr(0, e);
  const std::size_t significativo = mantisa.find_first_of("123456789");
  const std::size_t punto = std::min(mantisa.find('.'), mantisa.size());
  long long exponente = static_cast<long long>(punto) - static_cast<long long>(significativo);
  if (e != std::string_view::npos) {
    std::string_view texto = numero.substr(e + 1);
    if (texto.front() == '+') texto.remove_prefix(1);
    long long leido = 0;
    const auto r = std::from_chars(texto.data(), texto.data() + texto.size(), leido);
    if (r.ec == std::errc::result_out_of_range) return texto.front() != '-';
    // Far beyond what the digits before it could make up for.
    constexpr long long kLejos = 1LL << 60;
    exponente += std::clamp(leido, -kLejos, kLejos);
  }
  return exponente > 0;
}

// Reads what most texts are: up to 15 digits, a point among them perhaps, a "-" before. Such a number is a
// whole number over a power of ten, both exact in a double, so one division rounds it correctly. False for
// any other text, number or not.
template <typename Letra>
bool LeeCorto(std::basic_string_view<Letra> texto, double& valor) noexcept {
  const bool negativo = !texto.empty() && texto.front() == Letra{'-'};
  if (negativo) texto.remove_prefix(1);
  if (texto.empty() || texto.size() > kDigitos) return false;
  std::int64_t entero = 0;
  std::size_t punto = texto.size();
  for (std::size_t i = 0; i < texto.size(); ++i) {
    const Letra c = texto[i];
    if (c >= Letra{'0'} && c <= Letra{'9'}) {
      entero = entero * 10 + (c - Letra{'0'});
    } else if (c == Letra{'.'} && punto == texto.size() && texto.size() > 1) {
      punto = i;
    } else {
      return false;
    }
  }
  const auto magnitud = static_cast<double>(entero);
  const double leido =
      punto == texto.size() ? magnitud : magnitud / diez::kPotencias[texto.size() - 1 - punto];
  valor = negativo ? -leido : leido;
  return true;
}

// Half a unit of the 15th digit is at least 0.5e-15 of a value, and its product with a power of ten errs by
// 1.2e-16 of it.
constexpr double kCerca = 3.5e-16;

// The text of a positive amount: below 1e9 and, to 15 digits, of at most six decimals. With s = valor * 10^6
// and m the whole number nearest to s, the text is the decimal m / 10^6 when that, of at most 15 digits, lies
// nearer to the value than half a unit of its 15th digit. False for any other value, and for those with an
// exponent.
bool PonMonto(double valor, char*& p) noexcept {
  constexpr std::int64_t kMillon = 1'000'000;
  if (!(valor < 1e9)) return false;
  const double s = valor * 1e6;
  // The comparison refuses an m that is not the nearest.
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto m = static_cast<std::int64_t>(s + 0.5);
  if (m < 100 || std::abs(s - static_cast<double>(m)) > kCerca * s) return false;
  p = std::to_chars(p, p + kDigitos, m / kMillon).ptr;
  std::int64_t decimales = m % kMillon;
  if (decimales == 0) return true;
  *p = '.';
  constexpr std::size_t kCuantos = 6;
  for (std::size_t i = kCuantos; i > 0; --i, decimales /= 10) p[i] = static_cast<char>('0' + decimales % 10);
  p += kCuantos;
  while (*p == '0') --p;
  ++p;
  return true;
}

}  // namespace

std::size_t FloatToChars(double valor, std::span<char, kMaxFloatText> salida) noexcept {
  char* p = salida.data();
  const auto pon = [&p](std::string_view s) { p = std::copy(s.begin(), s.end(), p); };
  const auto largo = [&] { return static_cast<std::size_t>(p - salida.data()); };
  if (std::isnan(valor)) {
    pon("NAN");
    return largo();
  }
  if (valor == 0) {
    pon("0");
    return largo();
  }
  if (valor < 0) *p++ = '-';
  if (std::isinf(valor)) {
    pon("INF");
    return largo();
  }
  if (PonMonto(std::abs(valor), p)) return largo();
  const Decimal d = ADecimal(std::abs(valor));
  const std::string_view digitos(d.digitos.data(), static_cast<std::size_t>(d.cuenta));
  if (d.exponente < -4 || d.exponente >= kDigitos) {
    pon(digitos.substr(0, 1));
    if (d.cuenta > 1) {
      *p++ = '.';
      pon(digitos.substr(1));
    }
    *p++ = 'E';
    p = std::to_chars(p, salida.data() + salida.size(), d.exponente).ptr;
  } else if (d.exponente < 0) {
    pon("0.");
    p = std::fill_n(p, -d.exponente - 1, '0');
    pon(digitos);
  } else {
    const auto enteros = static_cast<std::size_t>(d.exponente) + 1;
    pon(digitos.substr(0, enteros));
    if (digitos.size() > enteros) {
      *p++ = '.';
      pon(digitos.substr(enteros));
    } else {
      p = std::fill_n(p, enteros - digitos.size(), '0');
    }
  }
  return largo();
}

UnicodeString FloatToStr(double valor) {
  std::array<char, kMaxFloatText> buf;
  return Ensancha({buf.data(), FloatToChars(valor, buf)});
}

// The text is seldom needed. With a = |valor|, s = a * 10^6 and m the whole number nearest to s: the text is
// the decimal m / 10^6 when that has at most 15 digits and lies nearer to the value than half a unit of its
// 15th digit; the double nearest to it is m / 10^6, correctly rounded since both operands are exact. Other
// values have 15 digits (QuinceDigitos.h), and the same holds for them.
double RoundToText(double valor) noexcept {
  constexpr double kMillon = 1e6;
  const double a = std::abs(valor);
  if (a < 1e9) {
    const double s = a * kMillon;
    // The comparison refuses an m that is not the nearest.
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    const auto m = static_cast<double>(static_cast<long long>(s + 0.5));
    if (std::abs(s - m) <= kCerca * s) return std::copysign(m / kMillon, m == 0 ? 1.0 : valor);
  }
  std::size_t k = 0;
  double n = 0;
  if (quince::Decimales(a, k) && quince::Entero(a, diez::kPotencias[k], n)) {
    return std::copysign(n / diez::kPotencias[k], valor);
  }
  std::array<char, kMaxFloatText> buf;
  double leido = valor;
  TryStrToFloat(std::string_view(buf.data(), FloatToChars(valor, buf)), leido);
  return leido;
}

bool TryStrToFloat(std::string_view texto, double& valor) noexcept {
  if (LeeCorto(texto, valor)) return true;
  const auto blanco = [](char c) { return c >= '\0' && c <= ' '; };
  while (!texto.empty() && blanco(texto.front())) texto.remove_prefix(1);
  while (!texto.empty() && blanco(texto.back())) texto.remove_suffix(1);
  bool negativo = false;
  if (!texto.empty() && (texto.front() == '+' || texto.front() == '-')) {
    negativo = texto.front() == '-';
    texto.remove_prefix(1);
  }
  // std::from_chars also reads a second sign, "inf" and "nan"; a number begins with a digit or a point.
  if (texto.empty() || !(EsDigito(texto.front()) || texto.front() == '.')) return false;
  double leido = 0;
  const auto r = std::from_chars(texto.data(), texto.data() + texto.size(), leido);
  if (r.ptr != texto.data() + texto.size()) return false;
  if (r.ec == std::errc::result_out_of_range) {
    if (Desborda(texto)) return false;
    leido = 0;
  } else if (r.ec != std::errc()) {
    return false;
  }
  valor = negativo ? -leido : leido;
  return true;
}

bool TryStrToFloat(std::u16string_view texto, double& valor) {
  if (LeeCorto(texto, valor)) return true;
  texto = TrimView(texto);
  // What does not even begin like a number needs no look at the rest.
  constexpr std::u16string_view kComienzos = u"+-.0123456789";
  if (texto.empty() || kComienzos.find(texto.front()) == std::u16string_view::npos) return false;
  return TryStrToFloat(TextoEstrecho(texto).Vista(), valor);
}

double StrToFloat(std::u16string_view texto) {
  double valor = 0;
  if (TryStrToFloat(texto, valor)) return valor;
  throw EConvertError(u"'" + UnicodeString(texto) + u"' no es un valor de punto flotante válido");
}

UnicodeString IntToStr(std::int64_t valor) {
  UnicodeString texto;
  AppendInt(texto, valor);
  return texto;
}

void AppendInt(UnicodeString& texto, std::int64_t valor) {
  // Twenty places hold every number of 64 bits with its sign. Digits are made from the last to the first.
  std::array<char16_t, 20> buf;
  std::size_t lugar = buf.size();
  // Unsigned negation is exact for the lowest value too.
  std::uint64_t resto = valor < 0 ? 0 - static_cast<std::uint64_t>(valor) : static_cast<std::uint64_t>(valor);
  do {
    buf[--lugar] = static_cast<char16_t>(u'0' + resto % 10);
    resto /= 10;
  } while (resto != 0);
  if (valor < 0) buf[--lugar] = u'-';
  texto.append(buf.data() + lugar, buf.size() - lugar);
}

bool TryStrToInt64(std::u16string_view texto, std::int64_t& valor) noexcept {
  while (!texto.empty() && texto.front() <= u' ') texto.remove_prefix(1);
  const bool negativo = !texto.empty() && texto.front() == u'-';
  if (negativo || (!texto.empty() && texto.front() == u'+')) texto.remove_prefix(1);
  if (texto.empty()) return false;
  constexpr auto kMaximo = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  const std::uint64_t limite = negativo ? kMaximo + 1 : kMaximo;
  std::uint64_t leido = 0;
  for (const char16_t c : texto) {
    if (c < u'0' || c > u'9') return false;
    const auto digito = static_cast<std::uint64_t>(c - u'0');
    if (leido > (limite - digito) / 10) return false;
    leido = leido * 10 + digito;
  }
  // Unsigned negation is exact for the lowest value too, and the conversion is modular in C++20.
  valor = static_cast<std::int64_t>(negativo ? 0 - leido : leido);
  return true;
}

bool TryStrToInt(std::u16string_view texto, std::int32_t& valor) noexcept {
  std::int64_t ancho = 0;
  if (!TryStrToInt64(texto, ancho)) return false;
  if (ancho < std::numeric_limits<std::int32_t>::min() || ancho > std::numeric_limits<std::int32_t>::max()) {
    return false;
  }
  valor = static_cast<std::int32_t>(ancho);
  return true;
}

std::int32_t StrToInt(std::u16string_view texto) {
  std::int32_t valor = 0;
  if (TryStrToInt(texto, valor)) return valor;
  throw EConvertError(u"'" + UnicodeString(texto) + u"' no es un valor entero válido");
}

std::int64_t StrToInt64(std::u16string_view texto) {
  std::int64_t valor = 0;
  if (TryStrToInt64(texto, valor)) return valor;
  throw EConvertError(u"'" + UnicodeString(texto) + u"' no es un valor entero válido");
}

bool TryStrToBool(std::u16string_view texto, bool& valor) {
  double numero = 0;
  if (SameText(texto, u"True")) {
    valor = true;
  } else if (SameText(texto, u"False")) {
    valor = false;
  } else if (TryStrToFloat(texto, numero)) {
    valor = numero != 0;
  } else {
    return false;
  }
  return true;
}

bool StrToBool(std::u16string_view texto) {
  bool valor = false;
  if (TryStrToBool(texto, valor)) return valor;
  throw EConvertError(u"'" + UnicodeString(texto) + u"' no es un valor booleano válido");
}

}  // namespace vel
