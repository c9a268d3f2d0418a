// utilvel formula: the value of a formula, for one set of variables or for each row of a CSV file.

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Uformula/Uformula.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TStringList.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Avance.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/FormulaPorColumnas.h"
#include "tools/utilvel/LectorCsv.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

struct Opciones {
  std::string expresion;
  std::vector<std::string> variables;
  std::string csv;
  bool json = false;
  std::string salida;
};

vel::UnicodeString Expresion(const Opciones& o) {
  if (o.expresion != "-") return ATexto(o.expresion);
  if (o.csv == "-") throw Falla(Codigo::Uso, "De la entrada estándar sale la fórmula o el CSV, no los dos");
  return vel::Trim(ATexto(LeeTodo("-")));
}

vel::TStringList Fijas(const Opciones& o) {
  vel::TStringList fijas;
  for (const std::string& variable : o.variables) {
    const vel::UnicodeString linea = ATexto(variable);
    if (linea.find(u'=') == vel::UnicodeString::npos) {
      throw Falla(Codigo::Uso, "Una variable se escribe NOMBRE=VALOR, no " + variable);
    }
    const std::size_t igual = linea.find(u'=');
    const vel::UnicodeString nombre = linea.substr(0, igual);
    double valor = 0;
    if (fijas.IndexOfName(nombre) >= 0) {
      throw Falla(Codigo::Datos, "La variable " + vel::UTF8Encode(nombre) + " está dos veces");
    }
    if (!vel::TryStrToFloat(linea.substr(igual + 1), valor)) {
      throw Falla(Codigo::Datos, "El valor de " + vel::UTF8Encode(nombre) +
                                     " no es un número: " + vel::UTF8Encode(linea.substr(igual + 1)));
    }
    fijas.Add(linea);
  }
  return fijas;
}

void Numero(double valor, std::string& texto) {
  std::array<char, vel::kMaxFloatText> digitos{};
  texto.assign(digitos.data(), vel::FloatToChars(valor, digitos));
}

Codigo UnValor(const Opciones& o) {
  const vel::TStringList fijas = Fijas(o);
  std::vector<vel::UnicodeString> nombres;
  for (std::size_t i = 0; i < fijas.Count(); ++i) nombres.push_back(fijas.Names(i));
  const vel::UnicodeString expresion = Expresion(o);
  Revisa(expresion, nombres);
  vel::TFormula formula;
  formula.SetVariables(fijas);
  Construye(formula, expresion);
  std::string texto;
  Numero(Ejecuta(formula), texto);
  Escritor salida(o.salida);
  salida.Escribe(o.json ? "{\"resultado\": " + Json(texto) + "}\n" : texto + "\n");
  salida.Termina();
  return Codigo::Bien;
}

// A row of the result: its fields, then the value or the reason why there is none.
class Renglonera {
 public:
  Renglonera(const Opciones& o, const std::vector<std::string>& columnas)
      : escritor_(o.salida), json_(o.json), columnas_(columnas) {
    if (json_) return;
    std::string linea;
    for (const std::string& c : columnas) linea += Csv(c) + ',';
    escritor_.Escribe(linea + "resultado,mensaje\n");
  }

  void Agrega(const LectorCsv& csv, std::string_view resultado, std::string_view mensaje) {
    linea_.clear();
    if (json_) {
      PonJson(csv, resultado, mensaje);
    } else {
      PonCampos(csv);
      linea_.append(1, ',').append(resultado).append(1, ',');
      if (!mensaje.empty()) linea_ += Csv(mensaje);
    }
    linea_ += '\n';
    escritor_.Escribe(linea_);
    if (escritor_.Terminal()) escritor_.Vacia();
  }
  void Termina() { escritor_.Termina(); }
  bool Terminal() const noexcept { return escritor_.Terminal(); }

 private:
  // The record as it is written; one that others would not read back (more or less fields than columns, a
  // quote that is not closed) anew, with as many fields as there are columns.
  void PonCampos(const LectorCsv& csv) {
    if (csv.Campos().size() != columnas_.size() || csv.SinCerrar()) {
      for (std::size_t i = 0; i < columnas_.size(); ++i) {
        linea_ += (i > 0 ? "," : "") + Csv(Campo(csv, i));
      }
    } else if (vel::IsASCII(csv.Registro())) {
      linea_ += csv.Registro();
    } else {
      linea_ += AUtf8(csv.Registro());
    }
  }
  void PonJson(const LectorCsv& csv, std::string_view resultado, std::string_view mensaje) {
    linea_ = "{";
    for (std::size_t i = 0; i < columnas_.size(); ++i) {
      linea_ += Json(columnas_[i]) + ": " + Json(Campo(csv, i)) + ", ";
    }
    linea_ += "\"resultado\": " + (resultado.empty() ? "null" : Json(resultado));
    linea_ += ", \"mensaje\": " + (mensaje.empty() ? "null" : Json(mensaje)) + "}";
  }
  static std::string Campo(const LectorCsv& csv, std::size_t i) {
    return i < csv.Campos().size() ? AUtf8(csv.Campos()[i]) : "";
  }

  Escritor escritor_;
  bool json_;
  std::vector<std::string> columnas_;
  std::string linea_;
};

void ExigeForma(const LectorCsv& csv, std::size_t columnas) {
  if (!csv.SinCerrar() && csv.Campos().size() == columnas) return;
  const std::string renglon = "El renglón de la línea " + std::to_string(csv.Linea());
  if (csv.SinCerrar()) {
    throw vel::EInvalidOperation(vel::UTF8ToString(renglon + " no cierra sus comillas"));
  }
  throw vel::EInvalidOperation(vel::UTF8ToString(renglon + " tiene " + std::to_string(csv.Campos().size()) +
                                                 " campos y el encabezado " + std::to_string(columnas)));
}

Codigo PorRenglones(const Opciones& o) {
  const vel::UnicodeString expresion = Expresion(o);
  LectorCsv csv(o.csv);
  if (!csv.Siguiente()) return Codigo::Bien;
  std::vector<std::string> columnas;
  for (const std::string_view campo : csv.Campos()) columnas.push_back(AUtf8(campo));
  FormulaPorColumnas formula(expresion, Fijas(o), columnas);
  Renglonera renglonera(o, columnas);
  Avance avance(csv.Total(), renglonera.Terminal());
  std::uint64_t renglones = 0;
  std::uint64_t fallas = 0;
  std::string resultado;
  std::string mensaje;
  while (csv.Siguiente()) {
    RevisaInterrupcion();
    // The clock costs more than a row.
    if (++renglones % 1024 == 0) avance.Va(csv.Leido());
    resultado.clear();
    mensaje.clear();
    try {
      ExigeForma(csv, columnas.size());
      Numero(formula.Evalua(csv.Campos()), resultado);
    } catch (const vel::Exception& error) {
      mensaje = Visible(error.what());
    }
    if (!mensaje.empty()) ++fallas;
    renglonera.Agrega(csv, resultado, mensaje);
  }
  renglonera.Termina();
  avance.Borra();
  if (fallas == 0) return Codigo::Bien;
  Avisa("Sin resultado: " + std::to_string(fallas) + " de " + std::to_string(renglones) +
        " renglones; la columna mensaje dice por qué");
  return Codigo::Parcial;
}

}  // namespace

void AgregaFormula(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "formula",
       .resumen = "Valor de una fórmula, sola o para cada renglón de un CSV",
       .detalle = "La fórmula es la de la administradora: + - * / < = > <> <= >=, paréntesis y SUMA, "
                  "PRODCTO, MIN, MAX, "
                  "ABS, PTENCIA, CUBO, QADRADO, RAIZ, RDONDEA, TRUNCAR, FRACC, SIGNO, INVERSO, SI y NO. La "
                  "división va "
                  "antes que la multiplicación y la resta antes que la suma: lo que se compara va entre "
                  "paréntesis. Una "
                  "fórmula que empieza con - se escribe después de --.\n"
                  "Con --csv las columnas del archivo son las variables, y cada renglón sale como estaba con "
                  "dos columnas "
                  "más: resultado y mensaje, que dice por qué no hay resultado. Los campos van separados por "
                  "comas; entre "
                  "comillas pueden tener comas y saltos de línea. Se lee y se escribe renglón por renglón: "
                  "el archivo puede "
                  "ser de cualquier tamaño.",
       .ejemplos = {{"utilvel formula \"SI(VENTA>=META,VENTA*0.05,0)\" -v VENTA=12000 -v META=10000",
                     "Una comisión: 600."},
                    {"utilvel formula \"(VENTA-COSTO)/VENTA*100\" --csv ventas.csv",
                     "El margen de cada venta, en CSV."}}},
      [o] { return o->csv.empty() ? UnValor(*o) : PorRenglones(*o); });
  AgregaArgumento(comando, "EXPRESION", o->expresion, "Fórmula; con - se lee de la entrada estándar").Exige();
  AgregaArgumento(comando, "-v,--variable", o->variables, "Valor de una variable; se repite para cada una")
      .Toma("NOMBRE=VALOR")
      .UnoPorVez();
  AgregaArgumento(comando, "--csv", o->csv, "CSV con los nombres de las variables en el primer renglón")
      .Toma("ARCHIVO");
  AgregaBandera(comando, "--json", o->json, "Un objeto JSON por renglón");
  AgregaArgumento(comando, "--salida", o->salida, "Archivo que recibe el resultado, completo o nada")
      .Toma("ARCHIVO");
}

}  // namespace utilvel
