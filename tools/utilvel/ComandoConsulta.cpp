// utilvel consulta: a saved definition's statement, and its rows in a database.

#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Paramsql/ConsultaGuardada.h"
#include "Paramsql/Paramsql.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"
#include "tools/utilvel/Textos.h"
#include "tools/utilvel/ValoresDeConsulta.h"
#include "tools/utilvel/base/Base.h"

namespace utilvel {
namespace {

struct Opciones {
  std::string definicion;
  int numero = 0;
  std::string base;
  bool literales = false;
  std::vector<std::string> valores;
  std::string archivoClave;
  bool pideClave = false;
  OpcionesFilas filas;
};

struct Sentencia {
  vel::UnicodeString texto;
  vel::TParams parametros;
};

std::unique_ptr<vel::TParametrosFiltro> Carga(const Opciones& o) {
  const ArchivoParaLeer archivo(o.definicion);
  auto definicion = std::make_unique<vel::TParametrosFiltro>(u"");
  definicion->LoadFromIni(archivo.Ruta(), o.numero);
  if (definicion->NombreTabla.empty()) {
    const std::string cual = o.numero <= 0 ? "" : "de número " + std::to_string(o.numero) + " ";
    throw Falla(Codigo::Datos, "No hay una consulta " + cual + "en " +
                                   (o.definicion == "-" ? "la entrada estándar" : o.definicion));
  }
  // The one without a number is kept whole, with its order and DISTINCT.
  return o.numero <= 0 ? vel::LeeConsulta(archivo.Ruta()) : std::move(definicion);
}

Sentencia Arma(const Opciones& o) {
  const std::unique_ptr<vel::TParametrosFiltro> definicion = Carga(o);
  Sentencia s;
  s.texto = definicion->DameSentenciaSQL(vel::ENUM_MARCADOR::DOSPUNTOS, 0, s.parametros);
  for (const std::string& valor : o.valores) {
    const std::size_t igual = valor.find('=');
    if (igual == std::string::npos) throw Falla(Codigo::Uso, "A --valor le falta el \"=\": " + valor);
    const std::size_t inicio = valor.starts_with(':') ? 1 : 0;
    PonValor(*definicion, s.parametros, valor.substr(inicio, igual - inicio), valor.substr(igual + 1));
  }
  if (o.literales) {
    s.parametros.Clear();
    s.texto = definicion->DameSentenciaSQL(false, 0);
  } else {
    s.texto = definicion->DameSentenciaSQL(vel::ENUM_MARCADOR::DOSPUNTOS, 0, s.parametros);
  }
  return s;
}

Celda Valor(const vel::TParam& p) { return p.Value.IsNull() ? std::nullopt : Celda(TextoDeValor(p)); }

// To people: the statement alone in its line, ready to be copied, then the parameters.
void ImprimeTexto(const Sentencia& s, const std::string& archivo) {
  Escritor salida(archivo);
  salida.Escribe(vel::UTF8Encode(s.texto) + "\n");
  for (const vel::TParam& p : s.parametros) {
    const std::string valor = Visible(Valor(p).value_or("(nulo)"));
    salida.Escribe(":" + vel::UTF8Encode(p.Name) + "  " + std::string(NombreDeTipo(p)) + "  " + valor + "\n");
  }
  salida.Termina();
}

// To programs: all of it as rows.
void ImprimeFilas(const Sentencia& s, const OpcionesFilas& opciones) {
  Filas filas(opciones, {{"nombre"}, {"tipo"}, {"valor"}});
  filas.Agrega({"sentencia", std::nullopt, vel::UTF8Encode(s.texto)});
  for (const vel::TParam& p : s.parametros) {
    filas.Agrega({":" + vel::UTF8Encode(p.Name), std::string(NombreDeTipo(p)), Valor(p)});
  }
  filas.Termina();
}

std::string DameClave(const Opciones& o) {
  if (!o.archivoClave.empty()) {
    const std::string texto = LeeTodo(o.archivoClave);
    return texto.substr(0, texto.find_first_of("\r\n"));
  }
  if (o.pideClave) return LeeContrasena("Contraseña de la base: ");
  const char* const clave = std::getenv("UTILVEL_CLAVE");
  return clave == nullptr ? "" : clave;
}

// Names as an object of JSON needs them: two columns of one name become "X" and "X_2".
std::vector<Columna> Distingue(std::vector<Columna> columnas) {
  std::set<std::string> vistos;
  for (Columna& c : columnas) {
    c.nombre = AUtf8(c.nombre);
    const std::string nombre = c.nombre;
    for (int i = 2; !vistos.insert(c.nombre).second; ++i) c.nombre = nombre + "_" + std::to_string(i);
  }
  return columnas;
}

Codigo Ejecuta(const Sentencia& s, const Opciones& o) {
  const DireccionBase direccion = LeeDireccion(o.base);
  const std::string clave = DameClave(o);
  auto espera = std::make_unique<EsperaLarga>();
  Base base(direccion, clave);
  Resultado resultado = base.Consulta(s.texto, s.parametros);
  espera.reset();
  Filas filas(o.filas, Distingue(resultado.Columnas()));
  const auto siguiente = [&resultado](std::vector<Celda>& fila) {
    const EsperaLarga larga;
    return resultado.Siguiente(fila);
  };
  for (std::vector<Celda> fila; siguiente(fila);) {
    for (Celda& celda : fila) {
      if (celda.has_value()) celda = AUtf8(*celda);
    }
    filas.Agrega(fila);
  }
  filas.Termina();
  return filas.Cuenta() == 0 ? Codigo::Negativo : Codigo::Bien;
}

Codigo Corre(const Opciones& o) {
  if (o.definicion == "-" && (o.pideClave || o.archivoClave == "-")) {
    throw Falla(Codigo::Uso,
                "La entrada estándar trae la consulta; la contraseña va en UTILVEL_CLAVE o en un archivo");
  }
  const Sentencia sentencia = Arma(o);
  if (!o.base.empty()) return Ejecuta(sentencia, o);
  if (o.filas.DameFormato() == Formato::Tabla) {
    ImprimeTexto(sentencia, o.filas.archivo);
  } else {
    ImprimeFilas(sentencia, o.filas);
  }
  return Codigo::Bien;
}

// What help and manual page say of addresses and of how engines differ.
constexpr const char* kDetalle =
    "Sin --base imprime la sentencia, sus parámetros y sus valores. Con --base la ejecuta e imprime los "
    "renglones; el código de salida es 1 si no hay ninguno. Nada se escribe en la base.\n"
    "La base se nombra con una dirección: sqlite3://ventas.db (un archivo; sqlite3:///srv/ventas.db con su "
    "ruta "
    "completa), firebird://ventas.fdb, firebird:///srv/ventas.fdb o firebird://./datos/ventas.fdb (un "
    "archivo, sin "
    "servidor), firebird://usuario@servidor:puerto/ruta o alias, postgresql://usuario@servidor:puerto/base y "
    "mysql://usuario@servidor:puerto/base (MariaDB). Usuario y puerto pueden faltar; sin servidor "
    "(postgresql:///base) es el de esta máquina. En la de un servidor, un carácter que estorbe se escribe "
    "como %40.\n"
    "La contraseña está en la variable UTILVEL_CLAVE, en un archivo (--clave-archivo) o se teclea "
    "(--pide-clave); "
    "nunca va en la orden ni en la dirección, donde otros la verían.\n"
    "Con --json todo valor es un texto y lo que la base no tiene es null; en CSV y en tablas queda vacío. "
    "Los importes "
    "salen con los decimales de su columna y las fechas como 2024-05-13 14:30:00. Los renglones salen como "
    "llegan, sin "
    "juntarse en la memoria, menos los de MariaDB, cuya biblioteca los lee todos antes del primero. Una "
    "tabla toma "
    "sus anchos "
    "de los primeros 200.\n"
    "Una definición encuentra lo mismo en las cuatro bases, menos esto. SQLite no tiene fechas ni importes: "
    "compara "
    "las fechas como textos, así que una medianoche guardada con su hora no es igual a la fecha sola, y solo "
    "cambia a "
    "mayúsculas las letras sin acento. Firebird y PostgreSQL dan al parámetro el tipo de su columna: no "
    "comparan un "
    "entero con 2.5, ni Firebird un importe de dos decimales con 7.255. PostgreSQL no tiene LIKE sobre "
    "números. "
    "MariaDB no conoce fechas como 'now', y con el cotejo común de sus tablas no distingue mayúsculas ni "
    "acentos. Con "
    "--literales un texto con apóstrofo no se encuentra, y en PostgreSQL la diagonal inversa de un LIKE "
    "quita su "
    "sentido a lo que sigue.\n"
    "De PostgreSQL no se leen columnas de tipo interval, money y otros de su propia cosecha: la definición "
    "las "
    "convierte con CAST. "
    "Con Ctrl-C el programa termina de inmediato; el servidor de MariaDB sigue con la consulta por su "
    "cuenta.";

}  // namespace

void AgregaConsulta(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "consulta",
       .resumen = "Imprime la sentencia de una consulta guardada y la ejecuta en una base de datos",
       .detalle = kDetalle,
       .ejemplos =
           {{"utilvel consulta consulta.ini", "La sentencia, sus parámetros y sus valores."},
            {"sqlite3 ventas.db < base.sql && utilvel consulta consulta.ini --base sqlite3://ventas.db",
             "Una base de ejemplo y los renglones que la consulta encuentra en ella."},
            {"utilvel consulta consulta.ini --base sqlite3://ventas.db --valor :var2=2024-05-01 --csv",
             "Lo mismo desde mayo, para una hoja de cálculo."}}},
      [o] { return Corre(*o); });
  AgregaArgumento(comando, "DEFINICION", o->definicion, "Archivo INI de la consulta guardada").Exige();
  AgregaArgumento(comando, "--numero", o->numero,
                  "Número de la consulta en el archivo; sin él, la que no tiene")
      .Toma("N");
  AgregaArgumento(comando, "--base", o->base, "Base en la que se ejecuta").Toma("DIRECCION");
  AgregaBandera(comando, "--literales", o->literales, "Escribe los valores en la sentencia");
  AgregaArgumento(
      comando, "--valor", o->valores,
      "Otro valor de un parámetro: :var1=TEXTO; se lee según el tipo de su campo, y en un LIKE es el "
      "patrón completo")
      .Toma(":varN=TEXTO")
      .UnoPorVez();
  AgregaArgumento(comando, "--clave-archivo", o->archivoClave, "Archivo cuyo primer renglón es la contraseña")
      .Toma("ARCHIVO");
  AgregaBandera(comando, "--pide-clave", o->pideClave, "Pide la contraseña sin mostrarla");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel
