#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace utilvel::cfdi {

/// Raises Rechazo at a place of the bytes, counted from 0.
[[noreturn]] void Rechaza(std::string_view bytes, std::size_t lugar, const std::string& razon);

/// Looks over the bytes before anything is built from them: raises Rechazo for an empty file, a zero byte,
/// bytes that are not UTF-8, a document type, and what goes beyond the limits of size, depth and number of
/// elements (of which a file up to 1 MiB has none: it cannot hold many). Whether the rest is well-formed is
/// for the parser to tell.
void ExploraXml(std::string_view bytes);

}  // namespace utilvel::cfdi
