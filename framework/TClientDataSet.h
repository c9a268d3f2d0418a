#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/TDateTime.h"
#include "framework/TFieldType.h"
#include "framework/TObject.h"
#include "framework/Texto.h"
#include "framework/Variant.h"
#include "utilvel90_export.h"

namespace vel {

class TClientDataSet;

namespace conjunto {
struct Columna;
struct Estado;
}  // namespace conjunto

/// Definition of one field of a data set.
struct TFieldDef {
  /// Name of the field; names match without regard to case.
  UnicodeString Name;
  /// What the field holds.
  TFieldType DataType = TFieldType::ftUnknown;
  /// Characters of a text field, bytes of a binary one; 0 means no limit.
  int Size = 0;
  /// Whether a record without a value is refused.
  bool Required = false;
  /// Fields of the records of a nested data set (ftDataSet); empty for any other type.
  std::vector<TFieldDef> ChildDefs = {};
  friend bool operator==(const TFieldDef&, const TFieldDef&) = default;
};

/// A field of a data set, read and written in the data set's current record. Belongs to the data set and
/// stays valid until its structure changes (CreateDataSet, AssignData, LoadFromXML, Close). Look it up once
/// and read it per record: no name is searched.
/// Threads: one at a time.
class UTILVEL90_EXPORT TField {
 public:
  /// Definition of the field, as in its TFieldDef.
  const UnicodeString& FieldName() const noexcept;
  TFieldType DataType() const noexcept;
  int Size() const noexcept;
  bool Required() const noexcept;

  /// Whether the current record has no value here.
  bool IsNull() const noexcept;
  /// Readers: null gives "", 0 or false. A text that is no number raises EConvertError naming the field.
  UnicodeString AsString() const;
  double AsFloat() const;
  std::int32_t AsInteger() const;
  std::int64_t AsLargeInt() const;
  bool AsBoolean() const;
  TDateTime AsDateTime() const;
  Variant Value() const;
  /// The text of a text field without a copy, valid until the record changes; any other type raises
  /// EDatabaseError.
  std::u16string_view TextView() const;

  /// Writers: the data set must be in Edit or Append, else EDatabaseError. A value that does not fit the
  /// field's type raises EConvertError or EDatabaseError naming the field; the record keeps what it had.
  void SetAsString(std::u16string_view valor);
  void SetAsFloat(double valor);
  void SetAsInteger(std::int32_t valor);
  void SetAsLargeInt(std::int64_t valor);
  void SetAsBoolean(bool valor);
  void SetAsDateTime(TDateTime valor);
  void SetValue(const Variant& valor);
  void Clear();

  /// The nested data set of the current record, owned by that record; null when the field is of another
  /// type or there is no current record.
  TClientDataSet* NestedDataSet() const;

  TField(const TField&) = delete;
  TField& operator=(const TField&) = delete;
  ~TField();

 private:
  friend struct conjunto::Estado;
  TField(conjunto::Estado& estado, const TFieldDef& def);
  conjunto::Columna& EnEdicion();

  conjunto::Estado& estado_;
  std::unique_ptr<conjunto::Columna> columna_;
};

/// In-memory table of typed, named fields with a current record. Field names match without regard to case.
/// Next past the last record sets Eof and leaves the last record current. Records are kept by columns, so
/// that reading one field of many records is cheap; appending costs constant time, Delete the records that
/// follow. Binary, object and variant fields (ftBytes, ftBlob, ftADT, ftVariant and the like) are refused.
///
/// Changes are applied at once: there is no change log, and Append and Edit work in the record itself, which
/// Cancel puts back as it was. An operation that throws leaves the data set as it was.
///
///     TClientDataSet datos;
///     datos.CreateDataSet({{.Name = u"CVE", .DataType = TFieldType::ftString, .Size = 5},
///                          {.Name = u"PREC", .DataType = TFieldType::ftFloat}});
///     datos.Append();
///     datos.FieldByName(u"cve").SetAsString(u"A1");
///     datos.FieldByName(u"PREC").SetAsFloat(9.5);
///     datos.Post();
///     datos.Locate(u"PREC", Variant(9.5));   // true; RecNo() == 1
///
/// Threads: one at a time.
class UTILVEL90_EXPORT TClientDataSet : public TObject {
 public:
  TClientDataSet();
  /// What was moved from may only be assigned to or destroyed.
  TClientDataSet(TClientDataSet&&) noexcept;
  TClientDataSet& operator=(TClientDataSet&&) noexcept;
  ~TClientDataSet() override;

  /// Gives the data set these fields and no records. A repeated or empty name raises EDatabaseError.
  void CreateDataSet(std::vector<TFieldDef> campos);
  /// Drops fields and records.
  void Close();
  /// Definitions of its fields, in order.
  const std::vector<TFieldDef>& FieldDefs() const noexcept;
  /// How many fields it has.
  std::size_t FieldCount() const noexcept;
  /// The field of that 0-based index; one out of range raises EDatabaseError.
  TField& Fields(std::size_t indice) const;
  /// The field of that name, or null.
  TField* FindField(std::u16string_view nombre) const noexcept;
  /// The field of that name; an unknown one raises EDatabaseError naming it.
  TField& FieldByName(std::u16string_view nombre) const;

  /// How many records there are.
  std::size_t RecordCount() const noexcept;
  /// Whether there is none.
  bool IsEmpty() const noexcept { return RecordCount() == 0; }
  /// 1-based number of the current record; 0 when there is none.
  std::size_t RecNo() const noexcept;
  /// Moves: an edit under way is posted first.
  void First();
  void Last();
  void Next();
  void Prior();
  /// Whether a move went past the last record, or before the first one; both without records.
  bool Eof() const noexcept;
  bool Bof() const noexcept;
  /// Makes the first record whose field equals the value current; false, and no move, when there is none.
  bool Locate(std::u16string_view campo, const Variant& valor);

  /// Begins a new record at the end, all its fields null; an edit under way is posted first.
  void Append();
  /// Begins to change the current record. Without a record raises EDatabaseError.
  void Edit();
  /// Stores the record under edit; a required field that is null raises EDatabaseError and the edit goes on.
  void Post();
  /// Ends the edit and puts the record back as it was; a new one is gone.
  void Cancel();
  /// Removes the current record; the next one (or the last) becomes current.
  void Delete();
  /// Drops all records; the fields stay.
  void EmptyDataSet();

  /// Replaces fields and records by a copy of the other's, with all else that its packet held; First.
  void AssignData(const TClientDataSet& otro);
  /// Appends copies of the other's records, fields matched by name; a data set without fields takes the
  /// other's. A field that is missing here raises EDatabaseError and nothing is appended. Other fields are
  /// null.
  void AppendData(const TClientDataSet& otro);

  /// Replaces fields and records by those of an XML data packet (version 2.0) in UTF-8, UTF-16 with a
  /// byte-order mark, or the ISO-8859-1 or windows-1252 that it declares. `nombre` names the source in
  /// messages. What is no XML, declares a document type, or is no such packet raises EDatabaseError with
  /// source, line and field; the data set is then as it was.
  void LoadFromXML(std::string_view bytes, std::u16string_view nombre);
  /// The records as an XML data packet in UTF-8, without change log. What a loaded packet held besides
  /// (parameters, width and decimals of numbers, attributes and elements of other programs in its
  /// definitions) is written back. Raises EDatabaseError, naming the
  /// field, for a value that XML cannot hold (a control character in a text, a number that is not finite).
  std::string SaveToXML() const;
  /// The same from and to a file, by its path in the suite's notation or the system's (RutaNativa); the
  /// platform's file functions do it, so these two are defined in platform/ArchivoDatos.cpp. A save replaces
  /// the file in one step: readers and a crash find the old packet or the new one, whole. A file that cannot
  /// be read or written raises EStreamError naming it; data set and file are then as they were.
  void LoadFromFile(std::u16string_view ruta);
  void SaveToFile(std::u16string_view ruta) const;

 private:
  friend struct conjunto::Estado;

  std::unique_ptr<conjunto::Estado> estado_;
};

}  // namespace vel
