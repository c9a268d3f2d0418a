#!/usr/bin/env python3
"""Makes the site of the reference, the guide and the decisions: hace.py SOURCE-FOLDER BUILD-FOLDER LIBRARY

The site stands in BUILD-FOLDER/sitio: plain files, to be opened from the disk. A warning of Doxygen, a broken link or an
exported symbol without a page ends it with an error that names each.
"""
import pathlib
import shutil
import subprocess
import sys

import cabeceras
import modulos
import paginas
import revisa

PORTADA = """# UtilVel90 {#mainpage}

La biblioteca compartida de la suite: arma sus sentencias `SELECT`, calcula descuentos, impuestos y totales de sus
documentos, evalúa fórmulas y rangos de fechas, guarda ajustes y catálogos, da forma a textos y lee certificados de sello.

- @subpage pagina_README
- @subpage pagina_docs_guia_indice
- @subpage aprende
- @subpage porque
- @subpage modulos
- @subpage proyecto

En el menú, todas las clases y funciones; el cuadro de arriba las busca por nombre.
"""


def grupo(destino, nombre, titulo, texto, subpaginas):
    lista = "\n".join(f"- @subpage {s}" for s in subpaginas)
    (destino / f"{nombre}.md").write_text(f"# {titulo} {{#{nombre}}}\n\n{texto}\n\n{lista}\n", encoding="utf-8")


def ejemplos(raiz, destino):
    """A page with the example programs, each under what its first comment says of it."""
    texto = ["# Ejemplos {#ejemplos}", "", "`./run demo` los compila y los corre sobre los datos de `examples/datos`.", ""]
    for archivo in sorted((raiz / "examples").glob("*.cpp")):
        lineas = archivo.read_text(encoding="utf-8").rstrip("\n").split("\n")
        codigo = next(i for i, linea in enumerate(lineas) if not linea.startswith("//"))
        dice = " ".join(linea.removeprefix("//").strip() for linea in lineas[:codigo])
        texto += [f"## {archivo.name} {{#ejemplo_{archivo.stem}}}", "", dice, "", "```{.cpp}"] + lineas[codigo:] + ["```", ""]
    (destino / "ejemplos.md").write_text("\n".join(texto), encoding="utf-8")
    return "ejemplos"


def main():
    raiz, obra, biblioteca = (pathlib.Path(a).resolve() for a in sys.argv[1:4])
    intermedio = obra / "paginas"
    shutil.rmtree(obra, ignore_errors=True)
    intermedio.mkdir(parents=True)

    publicas = cabeceras.publicas(raiz)
    rutas = ["README.md", "CONTRIBUTING.md", "CHANGELOG.md"] + \
        sorted(str(p.relative_to(raiz)) for p in (raiz / "docs").rglob("*.md"))
    todas = paginas.Paginas(raiz, [r for r in rutas if (raiz / r).exists()], publicas,
                            *cabeceras.nombres(raiz, publicas))
    nombres = todas.rutas
    indice = "docs/guia/indice.md"
    guia = [nombres[r] for r in todas.en_orden(indice) if r.startswith("docs/guia/")]
    perdidas = {n for r, n in nombres.items() if r.startswith("docs/guia/")} - set(guia) - {nombres[indice]}
    if perdidas:
        sys.exit(f"{indice} does not lead to {sorted(perdidas)}")
    for ruta, nombre in nombres.items():
        hijas = guia if ruta == indice else ()
        (intermedio / f"{nombre}.md").write_text(todas.pagina(ruta, subpaginas=hijas), encoding="utf-8")
    decisiones = [n for r, n in nombres.items() if r.startswith("docs/decisions/")]
    aprende = [nombres["docs/recetas.md"], ejemplos(raiz, intermedio)]
    porque = [n for r, n in nombres.items()
              if r in ("docs/precio-con-impuestos.md", "docs/resumen-fiscal.md", "docs/verificacion-cfdi.md",
                       "docs/known-limits.md")] + decisiones
    puestas = set(guia + aprende + porque + [nombres["README.md"], nombres[indice]])
    proyecto = [n for n in nombres.values() if n not in puestas]
    (intermedio / "portada.md").write_text(PORTADA, encoding="utf-8")
    grupo(intermedio, "aprende", "Recetas y ejemplos",
          "Trozos de cinco líneas para lo de todos los días, y programas enteros.", aprende)
    grupo(intermedio, "porque", "Explicaciones y decisiones", "Por qué es así, y qué no hace.", porque)
    grupo(intermedio, "modulos", "Módulos",
          "Una página para cada carpeta, de abajo hacia arriba: ninguna incluye algo de las que le siguen.\n\n"
          "![Qué carpeta incluye a cuál](capas.svg)",
          modulos.escribe(raiz, intermedio, publicas, lambda t: todas.linea("README.md", t)))
    grupo(intermedio, "proyecto", "Instalación y proyecto", "Para quien instala la biblioteca o la cambia.", proyecto)

    aqui = raiz / "tools/sitio"
    entrada = [intermedio, aqui / "espacios.dox"] + [raiz / p for p in publicas]
    version = (raiz / "CMakeLists.txt").read_text(encoding="utf-8").split("VERSION ")[2].split()[0]
    configuracion = (aqui / "Doxyfile").read_text(encoding="utf-8") + "\n".join([
        f"OUTPUT_DIRECTORY={obra}", f"PROJECT_NUMBER={version}", f"STRIP_FROM_PATH={raiz} {intermedio}",
        f"STRIP_FROM_INC_PATH={raiz}",
        "INPUT=" + " ".join(str(e) for e in entrada), f"IMAGE_PATH={intermedio}",
        f"GENERATE_TAGFILE={obra}/etiquetas.xml", f"WARN_LOGFILE={obra}/avisos.txt",
        f'FILTER_PATTERNS=*.h="python3 {aqui}/filtro.py"', ""])
    (obra / "Doxyfile").write_text(configuracion, encoding="utf-8")
    subprocess.run(["doxygen", "-q", str(obra / "Doxyfile")], check=True, stdout=subprocess.DEVNULL)

    faltas = (obra / "avisos.txt").read_text(encoding="utf-8").splitlines()
    rotos, cuantas = revisa.enlaces_rotos(obra / "sitio")
    faltas += [f"broken link: {r}" for r in rotos]
    sin_pagina, simbolos = revisa.exportados_sin_pagina(biblioteca, obra / "etiquetas.xml",
                                                        cabeceras.privados(raiz, publicas))
    faltas += [f"exported without a page: {s}" for s in sin_pagina]
    if not simbolos:
        faltas.append(f"{biblioteca}: exports nothing that could have a page")
    if faltas:
        sys.exit("\n".join(faltas))
    print(f"{obra}/sitio/index.html: {cuantas} pages, {len(publicas)} headers, {simbolos} exported names")


if __name__ == "__main__":
    try:
        main()
    except paginas.EnlaceRoto as e:
        sys.exit(f"broken link: {e}")
