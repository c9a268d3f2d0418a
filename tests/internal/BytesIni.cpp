// A key looked up or changed in a file's bytes against the same in the file's text, on files of odd pieces in
// every encoding.

#include "Uutilext/config/BytesIni.h"

#include <gtest/gtest.h>
#include <random>

#include "framework/Excepciones.h"
#include "framework/TextoIni.h"

namespace {

using vel::Codificacion;

constexpr const char16_t* kNombres[] = {u"A",  u"a",  u" B ", u"Ñandú", u"ñANDÚ",
                                        u"[A", u"B]", u"€",   u"A",     u"a"};
constexpr const char16_t* kPiezas[] = {u"[A]",  u"[a] ; x", u" [ B ] ", u"[Ñandú]", u"[A",      u"x]",
                                       u"[B]]", u"A=1",     u"a =2",    u" B = ñ ", u"Ñandú=€", u"; A=3",
                                       u"[A=4", u"=",       u"€=5",     u"x=[A]",   u"\t[B",    u"\n",
                                       u"\r\n", u"\r",      u"\n\n",    u"\r\r",    u" ",       u""};
constexpr const char16_t* kValores[] = {u"nuevo", u"1", u" b ", u"ñ", u"", u"a\nb"};

// Bytes that are good UTF-8, good Windows-1252 or neither.
std::string Bytes(std::mt19937& azar, const vel::UnicodeString& texto) {
  const auto codificacion = static_cast<Codificacion>(azar() % 4);
  std::string bytes = vel::CodificaArchivo({texto, codificacion, {}});
  if (azar() % 4 == 0 && !bytes.empty()) bytes[azar() % bytes.size()] = static_cast<char>(azar());
  return bytes;
}

TEST(BytesIni, GiveWhatTheTextGives) {
  std::mt19937 azar(1);
  const auto una = [&azar](const auto& tabla) {
    return vel::UnicodeString(tabla[azar() % std::size(tabla)]);
  };
  int cambiados = 0;
  for (int i = 0; i < 40'000; ++i) {
    vel::UnicodeString texto;
    for (auto piezas = azar() % 24; piezas > 0; --piezas)
      texto += una(kPiezas) + (azar() % 8 != 0 ? u"\r\n" : u"");
    const std::string bytes = Bytes(azar, texto);
    const vel::TextoArchivo leido = vel::DecodificaArchivo(bytes);
    const vel::UnicodeString seccion = una(kNombres);
    const vel::UnicodeString clave = una(kNombres);
    const vel::BytesIni ini(bytes);
    vel::TextoIni esperado(leido.texto);
    // The section's keys are read line by line, without the look-up's leaps.
    std::optional<vel::UnicodeString> valor;
    for (const auto& [nombre, suyo] : esperado.Seccion(seccion)) {
      if (!valor.has_value() && vel::SameText(nombre, vel::TrimView(clave))) valor = suyo;
    }
    ASSERT_EQ(ini.Valor(seccion, clave), valor) << bytes;

    const vel::UnicodeString nuevo = una(kValores);
    bool legal = true;
    try {
      esperado.Pon(seccion, clave, nuevo);
    } catch (const vel::EInvalidOperation&) {
      legal = false;
    }
    if (!legal) {
      ASSERT_THROW(ini.ConValor(seccion, clave, nuevo), vel::EInvalidOperation);
      continue;
    }
    const std::optional<std::string> cambiado = ini.ConValor(seccion, clave, nuevo);
    if (!cambiado.has_value()) continue;
    ++cambiados;
    ASSERT_TRUE(vel::SeReescribeIgual(bytes, leido)) << bytes;
    ASSERT_EQ(*cambiado, vel::CodificaArchivo({esperado.Texto(), leido.codificacion, leido.resto})) << bytes;
  }
  EXPECT_GT(cambiados, 500);
}

}  // namespace
