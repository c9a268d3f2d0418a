#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Root of every error that the library raises, apart from the bare integers that LanzaThrow throws in a
/// service host. Carries a message for the user, in Spanish.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT Exception : public std::exception {
 public:
  /// Carries that message.
  explicit Exception(std::u16string_view mensaje) : mensaje_(mensaje), utf8_(UTF8Encode(mensaje)) {}
  /// The message in UTF-16.
  const UnicodeString& Message() const noexcept { return mensaje_; }
  /// The message in UTF-8.
  const char* what() const noexcept override { return utf8_.c_str(); }

 private:
  UnicodeString mensaje_;
  std::string utf8_;
};

/// Input that an operation rejects.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT EInvalidOperation : public Exception {
 public:
  using Exception::Exception;
};

/// A text that does not convert to a number, a date or a boolean.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT EConvertError : public Exception {
 public:
  using Exception::Exception;
};

/// A variant that does not convert to the type asked for.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT EVariantTypeCastError : public Exception {
 public:
  using Exception::Exception;
};

/// Unknown field or parameter, record operation out of place, broken data packet.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT EDatabaseError : public Exception {
 public:
  using Exception::Exception;
};

/// Index out of range or refused duplicate in a string list.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT EStringListError : public Exception {
 public:
  using Exception::Exception;
};

/// A file that cannot be read, created or written.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT EStreamError : public Exception {
 public:
  using Exception::Exception;
};

}  // namespace vel
