#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "framework/TObject.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// What a sorted list does with a text that it already holds.
enum class TDuplicates : std::uint8_t { dupIgnore, dupAccept, dupError };

/// Ordered texts, each with an object that the list may own. Indexes are 0-based; one out of range raises
/// EStringListError. Texts and names match without regard to case (SameText). An operation that throws leaves
/// the list as it was.
///
///     TStringList lista;
///     lista.SetValue(u"A", u"1");   // the text "A=1"
///     lista.Values(u"a") == u"1"    lista.Values(u"b") == u""
///
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT TStringList : public TObject {
 public:
  TStringList() = default;
  TStringList(const TStringList&) = delete;
  TStringList& operator=(const TStringList&) = delete;
  TStringList(TStringList&&) noexcept = default;
  TStringList& operator=(TStringList&&) noexcept = default;
  ~TStringList() override = default;

  /// How many texts there are.
  std::size_t Count() const noexcept { return entradas_.size(); }
  /// The text of that index.
  const UnicodeString& Strings(std::size_t indice) const;
  const UnicodeString& operator[](std::size_t indice) const { return Strings(indice); }
  /// The object attached to a text, still owned by the list; null when there is none.
  TObject* Objects(std::size_t indice) const;

  /// Appends the text (a sorted list: inserts it in its place) and returns its index. A sorted list that
  /// already holds the text obeys Duplicates: refuses with EStringListError, returns the index of the one
  /// that stands (the object given is destroyed), or adds it all the same.
  std::size_t Add(std::u16string_view texto) { return AddObject(texto, nullptr); }
  std::size_t AddObject(std::u16string_view texto, std::unique_ptr<TObject> objeto);
  /// Inserts before `indice` (Count() appends). A sorted list refuses.
  void Insert(std::size_t indice, std::u16string_view texto);
  /// Replaces a text, its object stays. A sorted list refuses.
  void Put(std::size_t indice, std::u16string_view texto);
  /// Removes a text and destroys its object.
  void Delete(std::size_t indice);
  /// Removes all of them, objects too.
  void Clear() noexcept { entradas_.clear(); }
  /// Makes room for so many entries in all: adding up to that many needs no memory but the texts'.
  void SetCapacity(std::size_t cuenta) { entradas_.reserve(cuenta); }
  /// Adds copies of the other list's texts, without their objects.
  void AddStrings(const TStringList& otra);
  /// Adds the other list's own entries, objects included, and leaves it empty.
  void AddStrings(TStringList&& otra);
  /// Replaces the list by these texts.
  void SetStrings(std::vector<UnicodeString> textos);
  /// Puts a text in the place of another, which the caller gets; needs no memory. A sorted list refuses.
  void Swap(std::size_t indice, UnicodeString& texto);

  /// Index of the text, or -1.
  std::ptrdiff_t IndexOf(std::u16string_view texto) const noexcept;
  /// Index of the first text whose part before "=" is `nombre`, or -1.
  std::ptrdiff_t IndexOfName(std::u16string_view nombre) const noexcept;
  /// Part before the first "=" of a text; empty when it has none.
  UnicodeString Names(std::size_t indice) const;
  /// Part after the first "=" of a text; empty when it has none.
  UnicodeString ValueFromIndex(std::size_t indice) const;
  /// Value of the first entry of that name; empty when there is none.
  UnicodeString Values(std::u16string_view nombre) const;
  /// Sets the value of the first entry of that name (a sorted list refuses), or adds name=value.
  void SetValue(std::u16string_view nombre, std::u16string_view valor);

  /// Turning sorting on sorts what is there.
  void SetSorted(bool ordenada);
  /// Whether the list keeps itself sorted.
  bool Sorted() const noexcept { return ordenada_; }
  /// What a sorted list does with a text that it holds already.
  void SetDuplicates(TDuplicates duplicados) noexcept { duplicados_ = duplicados; }
  TDuplicates Duplicates() const noexcept { return duplicados_; }

  /// The texts, each followed by "\r\n".
  UnicodeString Text() const;
  /// Replaces the list by the lines of a text; "\r\n", "\n" and "\r" end a line.
  void SetText(std::u16string_view texto);

 private:
  struct Entrada {
    UnicodeString texto;
    std::unique_ptr<TObject> objeto;
  };
  std::size_t Coloca(Entrada entrada);
  const Entrada& En(std::size_t indice) const;
  void ExigeSinOrden() const;
  /// First entry not below the text, in a sorted list.
  std::size_t CotaInferior(std::u16string_view texto) const noexcept;

  std::vector<Entrada> entradas_;
  TDuplicates duplicados_ = TDuplicates::dupIgnore;
  bool ordenada_ = false;
};

}  // namespace vel
