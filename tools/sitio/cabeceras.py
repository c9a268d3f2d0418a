"""The public headers, as the folders' CMakeLists.txt list them, and the names that they declare."""
import re


def publicas(raiz):
    """Paths from the source folder, those of the whole library first."""
    lista = ["UtilVel90.h", "utilvel90_export.h"]
    for cmake in sorted(raiz.glob("*/**/CMakeLists.txt")):
        if cmake.relative_to(raiz).parts[0] in ("build", "tests", "cmake"):
            continue
        for llamada in re.findall(r"utilvel90_carpeta\(([^)]*)\)", cmake.read_text(encoding="utf-8")):
            _, _, nombres = llamada.partition("CABECERAS")
            lista += [str((cmake.parent / n).relative_to(raiz)) for n in nombres.split()]
    return lista


def nombres(raiz, cabeceras):
    """From a bare name to the qualified one, and the set of the enumerations; a name that the front has too is the
    front's."""
    dichos, enumeraciones = {}, set()
    for cabecera in cabeceras:
        espacio = "vel::facil::" if cabecera.startswith("facil/") else "vel::"
        texto = re.sub(r"//.*", "", (raiz / cabecera).read_text(encoding="utf-8"))
        funciones = re.findall(r"^UTILVEL90_EXPORT [^;{(]*?(\w+)\(", texto, re.M)
        tipos = re.findall(r"^(?:class|struct|enum class)(?: UTILVEL90_EXPORT)? (\w+)[^;{]*\{", texto, re.M)
        enumeraciones |= set(re.findall(r"^enum class (\w+)", texto, re.M))
        for nombre in funciones + tipos:
            if nombre not in dichos or espacio == "vel::facil::":
                dichos[nombre] = espacio + nombre
    return dichos, enumeraciones


def privados(raiz, cabeceras):
    """From each class, by its qualified name, to the words of its private parts."""
    palabras = {}
    for cabecera in cabeceras:
        espacio = "vel::facil::" if cabecera.startswith("facil/") else "vel::"
        texto = re.sub(r"//.*", "", (raiz / cabecera).read_text(encoding="utf-8"))
        for clase, cuerpo in re.findall(r"^class (?:UTILVEL90_EXPORT )?(\w+)[^;{]*\{(.*?)^\};", texto, re.M | re.S):
            for parte in re.findall(r"^ private:(.*?)(?=^ public:|^ protected:|\Z)", cuerpo, re.M | re.S):
                palabras.setdefault(espacio + clase, set()).update(re.findall(r"\w+", parte))
    return palabras
