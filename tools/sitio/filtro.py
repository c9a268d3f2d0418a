#!/usr/bin/env python3
"""A public header as Doxygen is to read it: filtro.py HEADER, to the standard output.

In the headers a comment is plain text, with code indented, and stands for all the functions below it, up to a blank line
or the next comment: here each of them gets it, and nothing in it is taken for a command or for markup. Private parts are
left out. Copies, moves, comparisons and destructors without a comment of their own are left out: they are what they are in
every class, and a comment could only repeat it.
"""
import re
import sys

PROPIAS = re.compile(r"=\s*(default|delete)\s*;|^(virtual\s+)?~\w+\(|"
                     r"^(?P<a>\w+)\((?P=a)\s*&&|^(?P<b>\w+)&\s+operator=\((?P=b)\s*&&")


COMPARACION = re.compile(r"\bfriend\b.*\boperator(==|<=>)")


def sin_textos(linea):
    """The line without comments and literals, whose braces and semicolons do not count."""
    linea = re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])+\'', '""', linea)
    return re.sub(r"//.*", "", linea)


def comentario(bloque):
    """The lines of a comment as Doxygen is to have them."""
    sangria = bloque[0][:bloque[0].index("/")]
    salida, codigo = [], False
    for linea in bloque:
        texto = linea.strip()[3:]
        es_codigo = texto.startswith("     ") or (codigo and not texto.strip())
        if es_codigo and not codigo:
            salida.append(sangria + "/// @code{.cpp}")
        elif codigo and not es_codigo:
            salida.append(sangria + "/// @endcode")
        codigo = es_codigo
        if not codigo:
            # Within quotes Doxygen undoes no escape.
            texto = texto.replace('"\\"', "`\\`")
            partes = re.sub(r'("[^"`]*\\[^"`]*")', r"`\1`", texto).split("`")
            partes[::2] = [re.sub(r"([\\@<>])", r"\\\1", p) for p in partes[::2]]
            texto = "`".join(partes)
        salida.append(sangria + "///" + texto)
    return salida + [sangria + "/// @endcode"] if codigo else salida


def sin_plantilla(texto):
    """The declaration after `template <...>` and `requires`, or as it is."""
    while texto.startswith("template"):
        hondo = 0
        for i, c in enumerate(texto):
            hondo += {"<": 1, ">": -1}.get(c, 0)
            if c == ">" and hondo == 0:
                texto = texto[i + 1:].lstrip()
                break
        else:
            break
    return texto


def declaracion(lineas, i, entera=False):
    """From line i on: the lines of one declaration, whether it opens a class or a namespace, and its text. A class that is
    asked for `entera` comes with its body."""
    texto = ""
    for fin in range(i, len(lineas)):
        texto += sin_textos(lineas[fin]).strip() + " "
        cuerpo = sin_plantilla(texto.strip())
        abre = re.match(r'(class|struct|union|namespace|extern "")\b[^;{]*\{', cuerpo)
        if abre and not entera and cuerpo.count("{") > cuerpo.count("}"):
            return lineas[i:fin + 1], True, cuerpo
        if texto.count("{") == texto.count("}") and texto.count("(") == texto.count(")") and \
                texto.rstrip().endswith((";", "}")):
            return lineas[i:fin + 1], False, cuerpo
    return lineas[i:], False, texto


def filtra(lineas):
    salida, bloque, vigente = [], [], []
    # Comments that stand alone: they are about the header.
    sueltos = []
    # Of each class or namespace that is open, whether its private part is being read.
    oculta = [False]
    i = 0
    while i < len(lineas):
        linea = lineas[i].strip()
        if linea in ("private:", "public:", "protected:"):
            oculta[-1] = linea == "private:"
        if linea.startswith("}"):
            oculta.pop()
        if oculta[-1] and not linea.startswith("}"):
            # A declaration as a whole: the braces of a class in it are not those that end this one.
            paso = 1
            if linea and not linea.startswith(("//", "private:")):
                paso = len(declaracion(lineas, i, entera=True)[0])
            salida += [""] * paso
            i += paso
            continue
        if linea.startswith("///"):
            inicio = i
            while i < len(lineas) and lineas[i].strip().startswith("///"):
                i += 1
            bloque = comentario(lineas[inicio:i])
            if i < len(lineas) and not lineas[i].strip():
                sueltos += ["///"] + bloque
                bloque = [""] * len(bloque)
            salida += bloque
            continue
        if not linea or linea.startswith(("//", "#", "}", "public:", "private:", "protected:")):
            if not linea or not linea.startswith("#"):
                bloque, vigente = [], []
            salida.append(lineas[i])
            i += 1
            continue
        partes, abre, texto = declaracion(lineas, i)
        i += len(partes)
        if (not bloque and PROPIAS.search(texto)) or COMPARACION.search(texto):
            salida[len(salida) - len(bloque):] = [""] * (len(bloque) + len(partes))
            bloque = []
            continue
        if bloque:
            vigente = bloque
        elif vigente and not abre and "(" in texto and not texto.startswith(("using", "enum", "friend", "static constexpr")):
            sangria = partes[0][:len(partes[0]) - len(partes[0].lstrip())]
            salida += [sangria + v.strip() for v in vigente]
        salida += partes
        if abre:
            vigente = []
            oculta.append(False)
        bloque = []
    return salida, sueltos


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as archivo:
        filtradas, del_encabezado = filtra(archivo.read().split("\n"))
    # A header has a page of its own, with all that it declares.
    print("\n".join(["/// @file"] + del_encabezado + [""] + filtradas), end="")
