#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "framework/Excepciones.h"

namespace vel::xml {

/// A text that is no XML, or not of the kind that is read here, and the byte where that shows.
class ErrorXml final : public Exception {
 public:
  ErrorXml(std::u16string_view que, std::size_t lugar) : Exception(que), lugar_(lugar) {}
  std::size_t Lugar() const noexcept { return lugar_; }

 private:
  std::size_t lugar_;
};

/// An attribute of the element that was just opened.
struct Atributo {
  std::string_view nombre;
  /// With its references resolved and its line ends and tabs turned into blanks (XML 1.0, section 3.3.3).
  std::string_view valor;
  /// Number of the name, from 0 on: equal names have equal numbers throughout a document.
  std::uint32_t numero = 0;
};

/// Reads a document in UTF-8 from front to back, event by event, without building a tree: what it holds is
/// the names in use and the element at hand, however long the text.
///
///     LectorXml lector(texto);
///     while (lector.Siguiente() != LectorXml::Suceso::Fin) { ... lector.Nombre() ... }
///
/// It takes well-formed documents (XML 1.0, fifth edition) without a document type declaration, and no
/// others: so there are no entities but the five predefined ones, and nothing expands. Namespaces are not
/// interpreted; a prefix is part of the name. Elements may nest 512 deep. Its time grows with the text alone,
/// whatever that holds. Any fault raises ErrorXml, whose message is Spanish and complete but for the place.
class LectorXml {
 public:
  enum class Suceso : std::uint8_t { Abre, Cierra, Texto, Fin };

  /// The text must outlive the reader.
  explicit LectorXml(std::string_view texto);
  LectorXml(const LectorXml&) = delete;
  LectorXml& operator=(const LectorXml&) = delete;
  ~LectorXml() = default;

  /// Goes on to the next event: an element opens, one closes (`<a/>` does both), character data that is not
  /// all blank, or the end of the document, again at each further call. Views of the event before end.
  Suceso Siguiente();
  /// Name of the element that was opened or closed; a view of the document's own text.
  std::string_view Nombre() const noexcept { return nombre_; }
  std::span<const Atributo> Atributos() const noexcept { return atributos_; }
  /// The character data: a piece of it, where comments or CDATA sections part it.
  std::string_view Texto() const noexcept { return datos_; }
  /// Byte at which the event begins.
  std::size_t Lugar() const noexcept { return Distancia(evento_); }

 private:
  struct Nombrado {
    std::string_view nombre;
    /// The name that followed this one in an element the last time.
    std::uint32_t siguiente = 0;
    /// The last element that had it.
    std::uint64_t elemento = 0;
  };
  /// A value that stands in `decodificado_`, which may move while the element is read.
  struct Movido {
    std::size_t atributo = 0;
    std::size_t desde = 0;
    std::size_t largo = 0;
  };

  std::size_t Distancia(const char* lugar) const noexcept {
    return static_cast<std::size_t>(lugar - inicio_);
  }
  std::string_view Resto() const noexcept { return {cursor_, static_cast<std::size_t>(fin_ - cursor_)}; }
  [[noreturn]] void Falla(std::u16string_view que, const char* lugar) const;
  bool Quita(std::string_view comienzo) noexcept;
  bool SaltaBlancos() noexcept;
  std::string_view LeeNombre();
  std::uint32_t LeeNombreAtributo(std::uint32_t anterior);
  std::string_view LeeValor(bool& decodifica);
  std::size_t LeeReferencia(std::string_view crudo, std::string& salida) const;
  void Decodifica(std::string_view crudo, bool enAtributo, std::string& salida) const;
  void LeeAtributos();
  void LeeInicio();
  void LeeFinal();
  bool LeeTexto();
  void LeeCdata();
  void SaltaComentario();
  void SaltaInstruccion();

  const char* inicio_;
  const char* cursor_;
  const char* fin_;
  const char* evento_;
  bool huboRaiz_ = false;
  bool vacio_ = false;
  std::string_view nombre_;
  std::string_view datos_;
  std::vector<std::string_view> abiertos_;
  std::vector<Atributo> atributos_;
  std::vector<Movido> movidos_;
  std::string decodificado_;
  std::vector<Nombrado> nombres_;
  // Ordered: the names come from the document, and no document may choose names that collide.
  std::map<std::string_view, std::uint32_t> indice_;
  std::uint64_t elemento_ = 0;
};

/// The document of those bytes in UTF-8: converted into `convertido` from UTF-16 with a byte-order mark, or
/// from the ISO-8859-1 or windows-1252 that its declaration names; the bytes themselves when they are UTF-8
/// (or ASCII). Any other encoding raises ErrorXml.
std::string_view EnUtf8(std::string_view bytes, std::string& convertido);

/// 1-based line of a byte of the text.
std::size_t Linea(std::string_view texto, std::size_t lugar) noexcept;

}  // namespace vel::xml
