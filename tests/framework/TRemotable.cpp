#include "framework/TRemotable.h"

#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "framework/Excepciones.h"
#include "tests/framework/OtroXml.h"

namespace vel {
namespace {

enum class Color : std::uint8_t { Rojo };

struct Nodo : TRemotable {
  UnicodeString Texto;
  std::vector<UnicodeString> Textos;
  bool Bandera = false;
  std::int32_t Numero = 0;
  TDateTime Fecha;
  std::vector<Variant> Valores = std::vector<Variant>(10);
  Color Tinte = Color::Rojo;
  std::unique_ptr<Nodo> Hijo;
  std::vector<std::unique_ptr<Nodo>> Hijos;

  void Propiedades(VisitantePropiedades& v) override {
    v.Texto(u"Texto", Texto);
    v.Textos(u"Textos", Textos);
    v.Booleano(u"Bandera", Bandera);
    v.Entero(u"Numero", Numero);
    v.FechaHora(u"Fecha", Fecha);
    for (std::size_t i = 0; i < Valores.size(); ++i)
      v.Valor(UnicodeString(u"V") + static_cast<char16_t>(u'0' + i), Valores[i]);
    v.Enumeracion(u"Tinte", Tinte);
    v.Propio(u"Hijo", Hijo, [] { return std::make_unique<Nodo>(); });
    v.Propios(u"Hijos", Hijos);
  }
};

TEST(TRemotable, RoundTripsEverything) {
  Nodo nodo;
  nodo.Texto = UnicodeString(u"\t a & <b> \"ñ\" \r\n\u0001 ") + u'\0' + UnicodeString{0xD800} + u" 😀 ";
  nodo.Textos = {u"", u"  ", u"uno\ndos"};
  for (int c = 0; c < 0x10000; ++c) nodo.Textos.push_back({u'a', static_cast<char16_t>(c), u'b'});
  nodo.Bandera = true;
  nodo.Numero = std::numeric_limits<std::int32_t>::min();
  nodo.Fecha = TDateTime(45427.123456789);
  nodo.Valores = {Variant(),
                  Variant::Null(),
                  Variant(7),
                  Variant(std::int64_t{1}),
                  Variant(0.1 + 0.2),
                  Variant(TDateTime(0.1)),
                  Variant(true),
                  Variant(u""),
                  Variant(VariantArray{1, {Variant(1), VarArrayOf({Variant(u"x")}), Variant::Null()}}),
                  VarArrayOf({})};
  nodo.Tinte = static_cast<Color>(200);
  nodo.Hijo = std::make_unique<Nodo>();
  nodo.Hijo->Texto = u"hijo";
  nodo.Hijos.resize(3);
  nodo.Hijos[1] = std::make_unique<Nodo>();
  const std::string xml = EscribeRemotableXML(nodo, u"Nodo");
  EXPECT_TRUE(pruebas::OtroLectorAcepta(xml)) << "no parser may refuse it";
  Nodo leido;
  leido.Textos = {u"viejo"};
  leido.Hijos.resize(9);
  LeeRemotableXML(leido, xml);
  EXPECT_EQ(leido.Texto, nodo.Texto);
  EXPECT_EQ(leido.Textos, nodo.Textos);
  EXPECT_EQ(leido.Valores, nodo.Valores);
  EXPECT_EQ(leido.Tinte, nodo.Tinte);
  ASSERT_EQ(leido.Hijos.size(), 3U);
  EXPECT_EQ(leido.Hijos[0], nullptr);
  EXPECT_EQ(leido.Hijo->Texto, u"hijo");
  EXPECT_EQ(EscribeRemotableXML(leido, u"Nodo"), xml);
}

TEST(TRemotable, SaysWhatIsWrong) {
  const Nodo nodo;
  const std::string bueno = EscribeRemotableXML(nodo, u"Nodo");
  const auto cambia = [&bueno](const std::string& viejo, const std::string& nuevo) {
    std::string xml = bueno;
    return xml.replace(xml.find(viejo), viejo.size(), nuevo);
  };
  for (const std::string& malo :
       {std::string(), std::string("<Nodo"), bueno + bueno, cambia("<Texto v=\"\"/>", ""),
        cambia("<Numero v=\"0\"", "<Numero v=\"0x\""), cambia("<Tinte v=\"0\"", "<Tinte v=\"256\""),
        cambia("<Texto v=\"\"/>", "<Texto v=\"a & b\"/>"), cambia("<Texto v=\"\"/>", "<Texto v=\"<\"/>"),
        cambia("<Texto v=\"\"/>", "<Texto v=\"&nada;\"/>"), cambia("<Texto v=\"\"/>", "<Texto v=\"\"/>x"),
        cambia("tipo=\"vacio\"", "tipo=\"raro\""), cambia("<Texto v=\"\"", "<Texto hex=\"12\""),
        cambia("<Texto v=\"\"", "<Texto hex=\"12x4\"")}) {
    Nodo leido;
    leido.Texto = u"viejo";
    leido.Hijo = std::make_unique<Nodo>();
    const std::string antes = EscribeRemotableXML(leido, u"Nodo");
    EXPECT_THROW(LeeRemotableXML(leido, malo), EInvalidOperation) << malo;
    EXPECT_EQ(EscribeRemotableXML(leido, u"Nodo"), antes) << malo;
  }
  Nodo cadena;
  Nodo* ultimo = &cadena;
  for (int i = 0; i < 100; ++i) {
    ultimo->Hijo = std::make_unique<Nodo>();
    ultimo = ultimo->Hijo.get();
  }
  EXPECT_THROW(EscribeRemotableXML(cadena, u"Nodo"), EInvalidOperation);
}

}  // namespace
}  // namespace vel
