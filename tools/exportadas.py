#!/usr/bin/env python3
"""Holds what a built library exports against its public headers: the same names, and nothing else.

    tools/exportadas.py [--herramientas PREFIX] LIBRARY FOLDER

LIBRARY is a shared library of Linux or a DLL; FOLDER holds the public headers, as they are installed. PREFIX
stands before nm, objdump and c++filt ("x86_64-w64-mingw32-"). In the headers a name counts as public where
UTILVEL90_EXPORT stands before it; a class with all that it holds. Ends with 1 and a line for each difference.
"""

import argparse
import pathlib
import re
import subprocess
import sys

MARCA = "UTILVEL90_EXPORT"


def ejecuta(*orden, entrada=None):
    return subprocess.run(orden, input=entrada, capture_output=True, text=True, check=True).stdout


def simbolos(biblioteca, prefijo):
    """The names that a library exports, demangled, and the kind of each as nm gives it (D for a DLL's)."""
    if biblioteca.read_bytes()[:2] == b"MZ":
        tabla = ejecuta(prefijo + "objdump", "-p", str(biblioteca)).partition("[Ordinal/Name Pointer] Table")[2]
        # Some versions of the tool write a second number before the name.
        crudos = [("D", n) for n in re.findall(r"^\s*\[ *\d+\](?: \+base\[ *\d+\] +[0-9a-f]+)? (\S+)$", tabla, re.M)]
    else:
        lineas = ejecuta(prefijo + "nm", "--dynamic", "--defined-only", str(biblioteca)).splitlines()
        crudos = [tuple(linea.split()[-2:]) for linea in lineas]
    # Tools for 32-bit Windows would take a "_" from the names, which these have not got.
    nombres = ejecuta(prefijo + "c++filt", "--no-strip-underscore", entrada="\n".join(n for _, n in crudos)).splitlines()
    return [(clase, nombre) for (clase, _), nombre in zip(crudos, nombres)]


def nombre_de(simbolo):
    """Qualified name of a demangled symbol, without what is told of it and without arguments."""
    simbolo = re.sub(r"^(typeinfo name|typeinfo|vtable|VTT|guard variable) for ", "", simbolo)
    simbolo = re.sub(r"^(non-virtual|virtual) thunk to ", "", simbolo)
    simbolo = re.sub(r"\[abi:\w+\]", "", simbolo)
    return re.match(r"(?:operator\(\)|operator[^\w\s(]+|operator (?:new|delete)(?:\[\])?|[^(])*", simbolo).group(0)


def sin_comentarios(texto):
    texto = re.sub(r"//[^\n]*|/\*.*?\*/", " ", texto, flags=re.S)
    texto = re.sub(r'"(?:\\.|[^"\\\n])*"', '""', texto)
    return re.sub(r"^[ \t]*#(?:\\\n|[^\n])*", "", texto, flags=re.M)


def publicos(texto):
    """Functions and classes that a header marks, by qualified name."""
    piezas = re.findall(r"operator *(?:\(\)|[^\w\s(]+|\w+)|[A-Za-z_]\w*|::|[^\s]", sin_comentarios(texto))
    funciones, clases, ambito, abre = set(), set(), [], None
    for i, pieza in enumerate(piezas):
        if pieza == "namespace":
            abre = ""
            for otra in piezas[i + 1:]:
                if otra == "{":
                    break
                abre += otra
        elif pieza in ("class", "struct", "union") and (i == 0 or piezas[i - 1] not in ("enum", "friend", "<", ",")):
            resto = [p for p in piezas[i + 1:i + 4] if p != MARCA and p not in ("[", "]")]
            abre = resto[0]
        elif pieza == "{":
            ambito.append(abre)
            abre = None
        elif pieza == "}":
            ambito.pop()
        elif pieza in (";", ")"):
            abre = None
        elif pieza == MARCA:
            donde = [a for a in ambito if a]
            if piezas[i - 1] in ("class", "struct"):
                clases.add("::".join(donde + [piezas[i + 1]]))
                continue
            declaracion = piezas[i + 1:]
            fin = next(j for j, p in enumerate(declaracion) if p in "(;={")
            # A friend is a function of the namespace around the class.
            if piezas[i - 1] == "friend" or declaracion[0] == "friend":
                donde.pop()
            funciones.add("::".join(donde + [declaracion[fin - 1].replace(" ", "")]))
    return funciones, clases


def main():
    argumentos = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    argumentos.add_argument("--herramientas", default="", metavar="PREFIX")
    argumentos.add_argument("biblioteca", type=pathlib.Path, metavar="LIBRARY")
    argumentos.add_argument("carpeta", type=pathlib.Path, metavar="FOLDER")
    pedido = argumentos.parse_args()

    funciones, clases = set(), set()
    for encabezado in sorted(pedido.carpeta.rglob("*.h")):
        f, c = publicos(encabezado.read_text(encoding="utf-8"))
        funciones |= f
        clases |= c
    faltas, vistos = [], set()
    exportados = simbolos(pedido.biblioteca, pedido.herramientas)
    for clase, simbolo in exportados:
        nombre = nombre_de(simbolo)
        if nombre.replace("operator ", "operator") in funciones:
            vistos.add(nombre.replace("operator ", "operator"))
            continue
        dueno = nombre
        while dueno and dueno not in clases:
            dueno = dueno.rpartition("::")[0]
        # What templates of the standard library leave is the same in whoever uses them; ELF shares it.
        if not dueno and (clase not in "WVu" or nombre.startswith("vel::")):
            faltas.append(f"exported, but in no public header: {simbolo}")
    # A class whose members are all inline need not export any.
    faltas += [f"public, but not exported: {nombre}" for nombre in sorted(funciones - vistos)]
    for falta in faltas:
        print(falta)
    print(f"{pedido.biblioteca.name}: {len(exportados)} symbols of {len(funciones)} functions and {len(clases)} classes")
    if not funciones or not clases or faltas:
        sys.exit(1)


if __name__ == "__main__":
    main()
