#pragma once

#include "Uutilext/Uutilext.h"
#include "facil/facil.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"
#include "platform/Registro.h"

namespace pruebas {

/// Files of each kind that hold one number, twice each and far apart, so that half a file shows.
struct Guardado {
  vel::UnicodeString carpeta;

  vel::UnicodeString Ini() const { return carpeta + u"/a.ini"; }
  vel::UnicodeString Datos() const { return carpeta + u"/a.xml"; }
  static constexpr std::u16string_view kClave = u"SOFTWARE\\Prueba";

  static vel::UnicodeString Texto(int i) {
    return vel::IntToStr(i) + vel::UnicodeString(9000, u'.') + vel::IntToStr(i);
  }
  static bool Entero(std::u16string_view texto) {
    const std::size_t punto = texto.find(u'.');
    return punto != texto.npos && texto == Texto(vel::StrToInt(texto.substr(0, punto)));
  }

  void Guarda(int i) const {
    vel::EscribeValor(Ini(), u"S", u"k", Texto(i));
    vel::TClientDataSet datos;
    datos.CreateDataSet({{.Name = u"N", .DataType = vel::TFieldType::ftMemo}});
    datos.Append();
    datos.FieldByName(u"N").SetAsString(Texto(i));
    datos.Post();
    datos.SaveToFile(Datos());
    vel::ActualizaXMLNombreEmpresa(1, Texto(i).substr(0, 40));
    vel::EscribeRegistro(kClave, u"n", Texto(i));
  }

  /// True when each file is whole; raises where one cannot be read at all.
  bool Sirve() const {
    vel::TClientDataSet datos;
    datos.LoadFromFile(Datos());
    return Entero(vel::DameValor(Ini(), u"S", u"k")) && Entero(datos.FieldByName(u"N").AsString()) &&
           Entero(vel::LeeRegistro(kClave, u"n").texto.value_or(u"")) &&
           vel::facil::RevisaCatalogo().catalogo.Sirve() && vel::facil::RevisaCatalogo().respaldo.Sirve();
  }
};

}  // namespace pruebas
