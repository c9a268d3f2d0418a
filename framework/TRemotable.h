#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "framework/TDateTime.h"
#include "framework/TObject.h"
#include "framework/Texto.h"
#include "framework/Variant.h"
#include "utilvel90_export.h"

namespace vel {

class TRemotable;

/// A place that owns a remotable object or nothing.
/// Threads: one at a time.
class UTILVEL90_EXPORT HuecoRemotable {
 public:
  HuecoRemotable() = default;
  HuecoRemotable(const HuecoRemotable&) = delete;
  HuecoRemotable& operator=(const HuecoRemotable&) = delete;
  virtual ~HuecoRemotable() = default;
  /// The object in the place, owned by it; null when it is empty.
  virtual TRemotable* Objeto() const noexcept = 0;
  /// Fills the place with a new object and returns it.
  virtual TRemotable& Crea() = 0;
  /// Destroys the object, if there is one.
  virtual void Vacia() noexcept = 0;
  /// An empty place of the same kind, to be filled apart, and the exchange of what both hold.
  virtual std::unique_ptr<HuecoRemotable> Aparte() const = 0;
  virtual void Intercambia(HuecoRemotable& aparte) noexcept = 0;
};

/// A dynamic array of such places.
/// Threads: one at a time.
class UTILVEL90_EXPORT ArregloRemotable {
 public:
  ArregloRemotable() = default;
  ArregloRemotable(const ArregloRemotable&) = delete;
  ArregloRemotable& operator=(const ArregloRemotable&) = delete;
  virtual ~ArregloRemotable() = default;
  /// How many places it has.
  virtual std::size_t Cuenta() const noexcept = 0;
  /// Makes the array this long, every place empty.
  virtual void Dimensiona(std::size_t cuenta) = 0;
  /// Calls `uso` with the place of that 0-based index.
  virtual void En(std::size_t indice, const std::function<void(HuecoRemotable&)>& uso) = 0;
  /// As a place's.
  virtual std::unique_ptr<ArregloRemotable> Aparte() const = 0;
  virtual void Intercambia(ArregloRemotable& aparte) noexcept = 0;
};

/// Goes through the published properties of an object, in their order: the generic writer and reader, and
/// whatever else wants to know them.
/// Threads: one at a time.
class UTILVEL90_EXPORT VisitantePropiedades {
 public:
  VisitantePropiedades() = default;
  VisitantePropiedades(const VisitantePropiedades&) = delete;
  VisitantePropiedades& operator=(const VisitantePropiedades&) = delete;
  virtual ~VisitantePropiedades() = default;
  /// A property by its name: the visitor reads the value or gives it another.
  virtual void Texto(std::u16string_view nombre, UnicodeString& valor) = 0;
  virtual void Booleano(std::u16string_view nombre, bool& valor) = 0;
  virtual void Entero(std::u16string_view nombre, std::int32_t& valor) = 0;
  /// A property of another kind, likewise.
  virtual void FechaHora(std::u16string_view nombre, TDateTime& valor) = 0;
  virtual void Valor(std::u16string_view nombre, Variant& valor) = 0;
  virtual void Textos(std::u16string_view nombre, std::vector<UnicodeString>& valores) = 0;
  virtual void Objeto(std::u16string_view nombre, HuecoRemotable& hueco) = 0;
  virtual void Objetos(std::u16string_view nombre, ArregloRemotable& arreglo) = 0;
  /// An integer that must lie between two others, both included. It stands last because programs built
  /// with 9.0 call the others by their place.
  virtual void EnteroEntre(std::u16string_view nombre, std::int32_t& valor, std::int32_t minimo,
                           std::int32_t maximo) = 0;

  /// An enumeration goes by its ordinal, which need not be one of its members.
  template <typename E>
  requires std::is_enum_v<E>
  void Enumeracion(std::u16string_view nombre, E& valor) {
    using Limites = std::numeric_limits<std::underlying_type_t<E>>;
    auto ordinal = static_cast<std::int32_t>(valor);
    EnteroEntre(nombre, ordinal, Limites::min(), Limites::max());
    valor = static_cast<E>(ordinal);
  }

  /// An owned object; `crea` makes a new one.
  template <typename T, typename Crea>
  void Propio(std::u16string_view nombre, std::unique_ptr<T>& objeto, Crea crea) {
    HuecoDe<T, Crea> hueco(objeto, crea);
    Objeto(nombre, hueco);
  }

  /// A dynamic array of owned objects, some of which may be null.
  template <typename T>
  void Propios(std::u16string_view nombre, std::vector<std::unique_ptr<T>>& objetos) {
    ArregloDe<T> arreglo(objetos);
    Objetos(nombre, arreglo);
  }

 private:
  /// What Enumeracion calls in programs built with 9.0.
  [[noreturn]] static void RechazaOrdinal(std::u16string_view nombre);

  template <typename T, typename Crea_>
  class HuecoDe : public HuecoRemotable {
   public:
    HuecoDe(std::unique_ptr<T>& objeto, Crea_ crea) : objeto_(objeto), crea_(std::move(crea)) {}
    TRemotable* Objeto() const noexcept override { return objeto_.get(); }
    TRemotable& Crea() override {
      objeto_ = crea_();
      return *objeto_;
    }
    void Vacia() noexcept override { objeto_.reset(); }
    std::unique_ptr<HuecoRemotable> Aparte() const override {
      return std::make_unique<ConLugar<HuecoDe, std::unique_ptr<T>, Crea_>>(crea_);
    }
    void Intercambia(HuecoRemotable& aparte) noexcept override {
      objeto_.swap(static_cast<HuecoDe&>(aparte).objeto_);
    }

   private:
    std::unique_ptr<T>& objeto_;
    Crea_ crea_;
  };

  template <typename T>
  class ArregloDe : public ArregloRemotable {
   public:
    explicit ArregloDe(std::vector<std::unique_ptr<T>>& objetos) : objetos_(objetos) {}
    std::size_t Cuenta() const noexcept override { return objetos_.size(); }
    void Dimensiona(std::size_t cuenta) override {
      objetos_.clear();
      objetos_.resize(cuenta);
    }
    void En(std::size_t indice, const std::function<void(HuecoRemotable&)>& uso) override {
      const auto crea = [] { return std::make_unique<T>(); };
      HuecoDe<T, decltype(crea)> hueco(objetos_[indice], crea);
      uso(hueco);
    }
    std::unique_ptr<ArregloRemotable> Aparte() const override {
      return std::make_unique<ConLugar<ArregloDe, std::vector<std::unique_ptr<T>>>>();
    }
    void Intercambia(ArregloRemotable& aparte) noexcept override {
      objetos_.swap(static_cast<ArregloDe&>(aparte).objetos_);
    }

   private:
    std::vector<std::unique_ptr<T>>& objetos_;
  };

  template <typename Lugar>
  struct Guardado {
    Lugar lugar{};
  };
  /// A place or array together with what it fills; that comes first, so that it is there before and after.
  template <typename De, typename Lugar, typename... Resto>
  class ConLugar final : private Guardado<Lugar>, public De {
   public:
    explicit ConLugar(Resto... resto) : De(Guardado<Lugar>::lugar, std::move(resto)...) {}
  };
};

/// Base of the classes whose published properties travel as XML. A class lists its properties once, in
/// order; the names are what other programs read.
/// Threads: one at a time.
class UTILVEL90_EXPORT TRemotable : public TObject {
 public:
  /// Shows the visitor each property, in order.
  virtual void Propiedades(VisitantePropiedades& visitante) = 0;
};

/// The object as XML in UTF-8: an element `nombre`, which must be a name in XML, with one child a property,
/// in order. Every value survives the way back, nulls, arrays and texts of any content included: a text with
/// what XML has no character for is written as hexadecimal digits, so that any parser takes the rest. Objects
/// nested more than 64 deep raise EInvalidOperation.
///
///     a TParamSelect of column "A&B", as "campo":
///     <campo><NombreCampo v="A&amp;B"/><NombreTabla v=""/><AliasCampo v=""/><Visible v="0"/></campo>
UTILVEL90_EXPORT std::string EscribeRemotableXML(const TRemotable& objeto, std::u16string_view nombre);

/// Sets the object's properties from what EscribeRemotableXML wrote. Objects that it owned are replaced, and
/// pointers to them end. What is no XML or declares a document type raises EInvalidOperation with its line,
/// and XML that lacks a property or holds a value that does not fit raises it naming the property. Whatever
/// is raised, the object is then as it was.
UTILVEL90_EXPORT void LeeRemotableXML(TRemotable& objeto, std::string_view xml);

}  // namespace vel
