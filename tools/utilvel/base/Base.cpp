#include "tools/utilvel/base/Base.h"

#include <algorithm>
#include <ctime>
#include <deque>
#include <optional>
#include <soci/soci.h>
#include <utility>
#include <variant>

#include "tools/utilvel/Errores.h"
#include "tools/utilvel/base/Motores.h"

namespace utilvel {
namespace {

// What the engine says, in one line and without what SOCI says before it.
std::string Motivo(const soci::soci_error& error) {
  std::string texto = error.get_error_message();
  for (const std::string_view previo :
       {"sqlite3_statement_backend::prepare: ", "sqlite3_statement_backend::loadOne: ",
        "Cannot establish connection to the database.", "Cannot execute query.", " Fatal error.",
        " ERROR:"}) {
    if (texto.starts_with(previo)) texto.erase(0, previo.size());
  }
  std::string linea;
  for (const char c : texto) {
    const bool blanco = c == ' ' || c == '\n' || c == '\t';
    if (!blanco) linea += c;
    if (blanco && !linea.empty() && linea.back() != ' ') linea += ' ';
  }
  if (!linea.empty() && linea.back() == ' ') linea.pop_back();
  return linea;
}

// The fraction of a time without the zeros at its end; the fraction itself when it has nothing else.
void QuitaCeros(std::string& fecha) {
  const std::size_t punto = fecha.find('.');
  if (punto == std::string::npos || fecha.find_first_not_of("0123456789", punto + 1) != std::string::npos) {
    return;
  }
  fecha.erase(std::max(fecha.find_last_not_of('0') + 1, punto));
  if (fecha.back() == '.') fecha.pop_back();
}

// One row as cells of text, whatever its columns are: SOCI asks it to prepare itself right before a statement
// runs, when all engines know the columns.
class Renglon : public soci::details::into_type_base {
 public:
  explicit Renglon(const Motor& motor) : motor_(motor) {}

  const std::vector<Columna>& Columnas() const noexcept { return columnas_; }
  void Entrega(std::vector<Celda>& fila) {
    fila.resize(huecos_.size());
    for (std::size_t i = 0; i < huecos_.size(); ++i) fila[i] = Texto(i);
  }

  void define(soci::details::statement_impl& sentencia, int& /*position*/) override {
    sentencia_ = &sentencia;
  }
  void pre_exec(int /*num*/) override {
    if (!huecos_.empty()) return;
    int lugar = 1;
    for (ColumnaLeida& leida : motor_.Describe(*sentencia_->get_backend())) {
      columnas_.push_back(std::move(leida.columna));
      Hueco& hueco = huecos_.emplace_back();
      hueco.lectura = leida.lectura;
      hueco.esFecha = leida.esFecha;
      if (leida.lectura == Lectura::Propia) continue;
      hueco.lector.reset(sentencia_->make_into_type_backend());
      switch (leida.lectura) {
        case Lectura::Flotante:
          hueco.lector->define_by_pos(lugar, &hueco.numero, soci::details::x_double);
          break;
        case Lectura::Largo:
        case Lectura::Bytes:
          hueco.lector->define_by_pos(lugar, &hueco.largo, soci::details::x_longstring);
          break;
        case Lectura::Momento:
          hueco.lector->define_by_pos(lugar, &hueco.momento, soci::details::x_stdtm);
          break;
        default:
          hueco.lector->define_by_pos(lugar, &hueco.texto, soci::details::x_stdstring);
      }
    }
  }
  void pre_fetch() override {}
  void post_fetch(bool gotData, bool calledFromFetch) override {
    for (Hueco& hueco : huecos_) {
      if (hueco.lector != nullptr) hueco.lector->post_fetch(gotData, calledFromFetch, &hueco.nulo);
    }
  }
  void clean_up() override {
    for (Hueco& hueco : huecos_) {
      if (hueco.lector != nullptr) hueco.lector->clean_up();
    }
    huecos_.clear();
  }
  std::size_t size() const override { return 1; }

 private:
  struct Hueco {
    Lectura lectura = Lectura::Texto;
    bool esFecha = false;
    std::unique_ptr<soci::details::standard_into_type_backend> lector;
    soci::indicator nulo = soci::i_null;
    std::string texto;
    double numero = 0;
    std::tm momento{};
    soci::long_string largo;
  };

  Celda Texto(std::size_t columna) {
    Hueco& hueco = huecos_[columna];
    if (hueco.lectura == Lectura::Propia) return motor_.LeeCelda(*sentencia_->get_backend(), columna);
    if (hueco.nulo == soci::i_null) return std::nullopt;
    switch (hueco.lectura) {
      case Lectura::Momento:
        hueco.texto = motor_.LeeCelda(*sentencia_->get_backend(), columna).value_or("");
        QuitaCeros(hueco.texto);
        return hueco.texto;
      case Lectura::Flotante:
        return TextoFlotante(hueco.numero);
      case Lectura::Largo:
        return hueco.largo.value;
      case Lectura::Bytes:
        return TextoDeBytes(hueco.largo.value);
      default:
        if (hueco.esFecha) QuitaCeros(hueco.texto);
        return hueco.texto;
    }
  }

  const Motor& motor_;
  soci::details::statement_impl* sentencia_ = nullptr;
  std::vector<Columna> columnas_;
  // Engines keep the addresses of what they fill.
  std::deque<Hueco> huecos_;
};

}  // namespace

const Motor& DameMotor(ClaseDeBase clase) {
  static const MotorSqlite sqlite;
  static const MotorFirebird firebird;
  static const MotorPostgresql postgresql;
  static const MotorMysql mysql;
  switch (clase) {
    case ClaseDeBase::Firebird:
      return firebird;
    case ClaseDeBase::Postgresql:
      return postgresql;
    case ClaseDeBase::Mysql:
      return mysql;
    default:
      return sqlite;
  }
}

struct Base::Sesion {
  const Motor& motor;
  std::unique_ptr<soci::session> sesion;
  bool enTransaccion = false;

  // After a fault. Firebird's part of SOCI ends the program when it cannot say goodbye to a server that is
  // gone, so the session is left as it is; the program ends soon.
  void Abandona(std::unique_ptr<soci::statement>& sentencia) noexcept {
    try {
      if (sesion == nullptr || sesion->is_connected()) return;
    } catch (...) {
      // Not to be asked either.
    }
    static_cast<void>(sentencia.release());
    static_cast<void>(sesion.release());
  }
};

struct Resultado::Estado {
  Base::Sesion& sesion;
  std::deque<Enlazado> valores;
  std::deque<soci::indicator> nulos;
  std::unique_ptr<soci::statement> sentencia;
  Renglon* renglon = nullptr;
  // Whether the statement stands on a row, and whether that was taken.
  bool hay = false;
  bool tomado = false;
  std::size_t cuantos = 0;

  explicit Estado(Base::Sesion& s) : sesion(s) {}

  void Prepara(const std::string& sql, soci::details::statement_type modo) {
    sentencia = std::make_unique<soci::statement>(*sesion.sesion);
    sentencia->alloc();
    sentencia->prepare(sql, modo);
  }

  void Enlaza(const vel::TParams& parametros) {
    std::size_t lugar = 0;
    for (const vel::TParam& p : parametros) {
      const bool esNulo = p.Value.IsNull();
      soci::indicator& nulo = nulos.emplace_back(esNulo ? soci::i_null : soci::i_ok);
      valores.push_back(esNulo ? Enlazado(std::string())
                               : sesion.motor.Enlaza(*sentencia->get_backend(), lugar, p));
      std::visit([this, &nulo](auto& valor) { sentencia->exchange(soci::use(valor, nulo)); }, valores.back());
      ++lugar;
    }
  }

  void Corre() {
    auto nuevo = std::make_unique<Renglon>(sesion.motor);
    renglon = nuevo.get();
    // The statement owns it from here on.
    sentencia->exchange(soci::details::into_type_ptr(nuevo.release()));
    sentencia->define_and_bind();
    hay = sentencia->execute(true);
  }

  void Abre(const std::string& sql, const vel::TParams& parametros) {
    const std::size_t lote = sesion.motor.Lote();
    if (lote == 0) {
      Prepara(sql, soci::details::st_repeatable_query);
      Enlaza(parametros);
    } else {
      if (sesion.enTransaccion) sesion.sesion->rollback();
      sesion.sesion->begin();
      sesion.enTransaccion = true;
      Prepara("DECLARE utilvel NO SCROLL CURSOR FOR " + sql, soci::details::st_one_time_query);
      Enlaza(parametros);
      sentencia->define_and_bind();
      sentencia->execute(true);
      Prepara("FETCH " + std::to_string(lote) + " FROM utilvel", soci::details::st_repeatable_query);
    }
    Corre();
  }

  bool Siguiente(std::vector<Celda>& fila) {
    if (hay && tomado) {
      hay = sentencia->fetch();
      const std::size_t lote = sesion.motor.Lote();
      if (!hay && lote != 0 && cuantos % lote == 0) hay = sentencia->execute(true);
    }
    if (!hay) return false;
    renglon->Entrega(fila);
    tomado = true;
    ++cuantos;
    return true;
  }
};

Base::Base(const DireccionBase& direccion, const std::string& clave)
    : sesion_(std::make_unique<Sesion>(Sesion{DameMotor(direccion.clase), nullptr, false})) {
  const Motor& motor = sesion_->motor;
  const std::string conexion = motor.Conexion(direccion, clave);
  try {
    sesion_->sesion = std::make_unique<soci::session>(motor.Nombre(), conexion);
    for (const std::string& sql : motor.Inicio()) *sesion_->sesion << sql;
  } catch (const soci::soci_error& error) {
    throw Falla(Codigo::Base, "No se puede abrir la base: " + Motivo(error));
  }
}

Base::~Base() = default;

Resultado Base::Consulta(std::u16string_view sql, const vel::TParams& parametros) {
  auto estado = std::make_unique<Resultado::Estado>(*sesion_);
  try {
    estado->Abre(vel::UTF8Encode(sql), parametros);
  } catch (const soci::soci_error& error) {
    const std::string motivo = Motivo(error);
    sesion_->Abandona(estado->sentencia);
    throw Falla(Codigo::Base, "La base rechaza la consulta: " + motivo);
  }
  return Resultado(std::move(estado));
}

Resultado::Resultado(std::unique_ptr<Estado> estado) : estado_(std::move(estado)) {}
Resultado::Resultado(Resultado&&) noexcept = default;
Resultado::~Resultado() = default;

const std::vector<Columna>& Resultado::Columnas() const noexcept { return estado_->renglon->Columnas(); }

bool Resultado::Siguiente(std::vector<Celda>& fila) {
  try {
    return estado_->Siguiente(fila);
  } catch (const soci::soci_error& error) {
    const std::string motivo = Motivo(error);
    estado_->sesion.Abandona(estado_->sentencia);
    throw Falla(Codigo::Base,
                "La base falló después de " + std::to_string(estado_->cuantos) + " renglones: " + motivo);
  }
}

}  // namespace utilvel
