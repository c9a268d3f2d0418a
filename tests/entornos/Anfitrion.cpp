// A host that takes its user's locale for itself, C's and C++'s, before any other code of the program runs.
#include <clocale>
#include <locale>

namespace {
[[gnu::constructor]] void TomaElIdioma() {
  std::setlocale(LC_ALL, "");
  std::locale::global(std::locale(""));
}
}  // namespace
