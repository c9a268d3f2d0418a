#include "framework/TClientDataSet.h"

#include <algorithm>
#include <utility>

#include "framework/Columnas.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {

using conjunto::Columna;
using conjunto::Estado;

namespace conjunto {

std::unique_ptr<Estado> Estado::Crea(std::vector<TFieldDef> definiciones, int nivel) {
  if (nivel > kNivelesMaximos) throw EDatabaseError(u"Hay demasiados niveles de campos anidados");
  auto estado = std::make_unique<Estado>();
  estado->defs = std::move(definiciones);
  for (const TFieldDef& def : estado->defs) {
    if (def.Name.empty()) throw EDatabaseError(u"Un campo no tiene nombre");
    estado->porNombre.push_back(estado->campos.size());
    // Only the data set makes fields, so their constructor is private and std::make_unique cannot reach it.
    estado->campos.push_back(std::unique_ptr<TField>(new TField(*estado, def)));
    // A nested data set with bad definitions must fail here, not at its first record.
    if (def.DataType == TFieldType::ftDataSet) Crea(def.ChildDefs, nivel + 1);
  }
  const auto nombre = [&estado](std::size_t i) -> const UnicodeString& { return estado->defs[i].Name; };
  std::vector<std::size_t>& orden = estado->porNombre;
  std::sort(orden.begin(), orden.end(),
            [&](std::size_t a, std::size_t b) { return CompareText(nombre(a), nombre(b)) < 0; });
  const auto repetido = std::adjacent_find(orden.begin(), orden.end(), [&](std::size_t a, std::size_t b) {
    return SameText(nombre(a), nombre(b));
  });
  if (repetido != orden.end()) throw EDatabaseError(u"El campo '" + nombre(*repetido) + u"' está repetido");
  return estado;
}

Estado& Estado::De(const TClientDataSet& conjunto) noexcept { return *conjunto.estado_; }

Columna& Estado::ColumnaDe(std::size_t campo) const { return *campos[campo]->columna_; }

std::ptrdiff_t Estado::Busca(std::u16string_view nombre) const noexcept {
  const auto it = std::lower_bound(
      porNombre.begin(), porNombre.end(), nombre,
      [this](std::size_t i, std::u16string_view n) { return CompareText(defs[i].Name, n) < 0; });
  if (it == porNombre.end() || !SameText(defs[*it].Name, nombre)) return -1;
  return static_cast<std::ptrdiff_t>(*it);
}

void Estado::Dimensiona(std::size_t nuevos) {
  try {
    for (std::size_t i = 0; i < campos.size(); ++i) ColumnaDe(i).Dimensiona(nuevos);
  } catch (...) {
    // Shrinking needs no memory.
    for (std::size_t i = 0; i < campos.size(); ++i) ColumnaDe(i).Dimensiona(registros);
    throw;
  }
  registros = nuevos;
}

void Estado::Reserva(std::size_t cuantos) {
  for (std::size_t i = 0; i < campos.size(); ++i) ColumnaDe(i).Reserva(cuantos);
}

void Estado::ExigeCompleto() const {
  if (modo == Modo::Lectura) return;
  for (const auto& campo : campos) {
    if (campo->Required() && campo->IsNull()) {
      throw EDatabaseError(u"El campo '" + campo->FieldName() + u"' debe tener un valor");
    }
  }
}

void Estado::Publica() noexcept {
  modo = Modo::Lectura;
  previo.clear();
}

void Estado::AlPrincipio() noexcept {
  actual = 0;
  bof = true;
  eof = registros == 0;
}

}  // namespace conjunto

TClientDataSet::TClientDataSet() : estado_(std::make_unique<Estado>()) {}

TClientDataSet::TClientDataSet(TClientDataSet&& otro) noexcept : estado_(std::move(otro.estado_)) {}

TClientDataSet& TClientDataSet::operator=(TClientDataSet&& otro) noexcept {
  estado_ = std::move(otro.estado_);
  return *this;
}

TClientDataSet::~TClientDataSet() = default;

void TClientDataSet::CreateDataSet(std::vector<TFieldDef> campos) {
  estado_ = Estado::Crea(std::move(campos));
}

void TClientDataSet::Close() { estado_ = std::make_unique<Estado>(); }

const std::vector<TFieldDef>& TClientDataSet::FieldDefs() const noexcept { return estado_->defs; }

std::size_t TClientDataSet::FieldCount() const noexcept { return estado_->campos.size(); }

TField& TClientDataSet::Fields(std::size_t indice) const {
  if (indice < estado_->campos.size()) return *estado_->campos[indice];
  throw EDatabaseError(u"Índice de campo fuera de rango (" + IntToStr(static_cast<std::int64_t>(indice)) +
                       u")");
}

TField* TClientDataSet::FindField(std::u16string_view nombre) const noexcept {
  const std::ptrdiff_t indice = estado_->Busca(nombre);
  return indice < 0 ? nullptr : estado_->campos[static_cast<std::size_t>(indice)].get();
}

TField& TClientDataSet::FieldByName(std::u16string_view nombre) const {
  TField* const campo = FindField(nombre);
  if (campo == nullptr) throw EDatabaseError(u"El campo '" + UnicodeString(nombre) + u"' no existe");
  return *campo;
}

std::size_t TClientDataSet::RecordCount() const noexcept { return estado_->registros; }

std::size_t TClientDataSet::RecNo() const noexcept {
  return estado_->registros == 0 ? 0 : estado_->actual + 1;
}

bool TClientDataSet::Eof() const noexcept { return estado_->eof; }

bool TClientDataSet::Bof() const noexcept { return estado_->bof; }

void TClientDataSet::First() {
  Post();
  estado_->AlPrincipio();
}

void TClientDataSet::Last() {
  Post();
  estado_->actual = estado_->registros == 0 ? 0 : estado_->registros - 1;
  estado_->eof = true;
  estado_->bof = estado_->registros == 0;
}

void TClientDataSet::Next() {
  Post();
  if (estado_->registros == 0) return;
  estado_->bof = false;
  if (estado_->actual + 1 < estado_->registros) {
    ++estado_->actual;
  } else {
    estado_->eof = true;
  }
}

void TClientDataSet::Prior() {
  Post();
  if (estado_->registros == 0) return;
  estado_->eof = false;
  if (estado_->actual > 0) {
    --estado_->actual;
  } else {
    estado_->bof = true;
  }
}

bool TClientDataSet::Locate(std::u16string_view campo, const Variant& valor) {
  FieldByName(campo);
  const Columna& columna = estado_->ColumnaDe(static_cast<std::size_t>(estado_->Busca(campo)));
  std::size_t i = 0;
  while (i < estado_->registros && !columna.Iguala(i, valor)) ++i;
  Post();
  if (i == estado_->registros) return false;
  estado_->actual = i;
  estado_->bof = estado_->eof = false;
  return true;
}

void TClientDataSet::Append() {
  if (estado_->campos.empty()) throw EDatabaseError(u"El conjunto de datos no tiene campos");
  estado_->ExigeCompleto();
  estado_->Dimensiona(estado_->registros + 1);
  estado_->Publica();
  estado_->actual = estado_->registros - 1;
  estado_->bof = estado_->eof = false;
  estado_->modo = Estado::Modo::Alta;
}

void TClientDataSet::Edit() {
  if (estado_->modo != Estado::Modo::Lectura) return;
  if (estado_->registros == 0) throw EDatabaseError(u"El conjunto de datos no tiene registro que editar");
  std::vector<Columna> previo;
  for (const auto& def : estado_->defs) {
    Columna uno(def);
    uno.Dimensiona(1);
    previo.push_back(std::move(uno));
  }
  for (std::size_t i = 0; i < previo.size(); ++i) {
    const Columna& columna = estado_->ColumnaDe(i);
    if (columna.clase == conjunto::Clase::Anidado) {
      const auto& anidado = columna.anidados[estado_->actual];
      if (anidado != nullptr) previo[i].Anidado(0).AssignData(*anidado);
    } else {
      previo[i].Pon(0, columna.Lee(estado_->actual));
    }
  }
  estado_->previo = std::move(previo);
  estado_->modo = Estado::Modo::Edicion;
}

void TClientDataSet::Post() {
  estado_->ExigeCompleto();
  estado_->Publica();
}

void TClientDataSet::Cancel() {
  switch (std::exchange(estado_->modo, Estado::Modo::Lectura)) {
    case Estado::Modo::Lectura:
      break;
    case Estado::Modo::Alta:
      estado_->Dimensiona(estado_->registros - 1);
      estado_->actual = estado_->registros == 0 ? 0 : estado_->registros - 1;
      if (estado_->registros == 0) estado_->AlPrincipio();
      break;
    case Estado::Modo::Edicion:
      for (std::size_t i = 0; i < estado_->previo.size(); ++i)
        estado_->ColumnaDe(i).Trae(estado_->actual, estado_->previo[i]);
      estado_->previo.clear();
      break;
  }
}

void TClientDataSet::Delete() {
  if (estado_->registros == 0) throw EDatabaseError(u"El conjunto de datos no tiene registro que borrar");
  if (estado_->modo == Estado::Modo::Alta) return Cancel();
  estado_->Publica();
  for (std::size_t i = 0; i < estado_->campos.size(); ++i) estado_->ColumnaDe(i).Borra(estado_->actual);
  --estado_->registros;
  if (estado_->registros == 0) {
    estado_->AlPrincipio();
  } else {
    estado_->actual = std::min(estado_->actual, estado_->registros - 1);
  }
}

void TClientDataSet::EmptyDataSet() {
  estado_->Publica();
  estado_->Dimensiona(0);
  estado_->AlPrincipio();
}

void TClientDataSet::AssignData(const TClientDataSet& otro) {
  if (this == &otro) return First();
  TClientDataSet copia;
  copia.CreateDataSet(otro.FieldDefs());
  copia.estado_->resto = otro.estado_->resto;
  copia.AppendData(otro);
  *this = std::move(copia);
  First();
}

void TClientDataSet::AppendData(const TClientDataSet& otro) {
  if (estado_->campos.empty()) {
    if (otro.FieldCount() != 0) AssignData(otro);
    return;
  }
  std::vector<Columna*> hacia;
  hacia.reserve(otro.FieldCount());
  for (const TFieldDef& def : otro.FieldDefs()) {
    // Mostly both have the same fields.
    std::size_t campo = hacia.size();
    if (campo >= estado_->defs.size() || estado_->defs[campo].Name != def.Name) {
      FieldByName(def.Name);
      campo = static_cast<std::size_t>(estado_->Busca(def.Name));
    }
    hacia.push_back(&estado_->ColumnaDe(campo));
  }
  estado_->ExigeCompleto();
  const std::size_t antes = estado_->registros;
  const std::size_t cuenta = otro.RecordCount();
  try {
    for (std::size_t i = 0; i < hacia.size(); ++i) {
      const Columna& desde = otro.estado_->ColumnaDe(i);
      Columna& columna = *hacia[i];
      const TFieldDef& a = columna.def;
      const TFieldDef& b = desde.def;
      if (a.DataType == b.DataType && a.Size == b.Size && a.ChildDefs == b.ChildDefs) {
        columna.AgregaCopias(desde, cuenta);
        continue;
      }
      columna.Dimensiona(antes + cuenta);
      for (std::size_t r = 0; r < cuenta; ++r) {
        if (columna.clase == conjunto::Clase::Anidado && desde.clase == conjunto::Clase::Anidado) {
          if (desde.anidados[r] != nullptr) columna.Anidado(antes + r).AppendData(*desde.anidados[r]);
        } else {
          columna.Pon(antes + r, desde.Lee(r));
        }
      }
    }
    // The fields that the other has not are null.
    if (hacia.size() < estado_->campos.size()) {
      estado_->Dimensiona(antes + cuenta);
    } else {
      estado_->registros = antes + cuenta;
    }
  } catch (...) {
    estado_->Dimensiona(antes);
    throw;
  }
  estado_->Publica();
  if (antes == 0) First();
}

void TClientDataSet::LoadFromXML(std::string_view bytes, std::u16string_view nombre) {
  estado_ = conjunto::LeePaquete(bytes, nombre);
}

}  // namespace vel
