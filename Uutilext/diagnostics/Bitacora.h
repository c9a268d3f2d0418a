#pragma once

#include <string_view>

#include "utilvel90_export.h"

namespace vel {

/// Appends one line to the log "0010552.log" in the library's folder, creating the file when it is missing:
/// the local time as "dd/mm/yyyy hh:mm:ss zzz", " - ", the message and "\r\n". `mensaje` is 8-bit text in the
/// system code page and goes to the file as it is. The line is written at once at the file's end, so lines
/// of several programs and threads do not mix. Raises EStreamError when the file cannot be opened or written;
/// of a line that a full disk cuts, what fits stays as a line of its own.
UTILVEL90_EXPORT void logInterAux(std::string_view mensaje);

/// Deletes the log; a missing one is no error.
UTILVEL90_EXPORT void Deletelog();

}  // namespace vel
