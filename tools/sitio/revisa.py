"""Checks on the site that was made: its links lead somewhere, and every exported symbol has its page."""
import html.parser
import re
import subprocess
import urllib.parse
import xml.etree.ElementTree as ET


class Enlaces(html.parser.HTMLParser):
    def __init__(self, texto):
        super().__init__()
        self.salen, self.anclas = [], set()
        self.feed(texto)

    def handle_starttag(self, etiqueta, atributos):
        a = dict(atributos)
        self.anclas |= {a[k] for k in ("id", "name") if a.get(k)}
        self.salen += [a[k] for k in ("href", "src", "data") if a.get(k)]


def enlaces_rotos(sitio):
    textos = {p.name: p.read_text(encoding="utf-8", errors="replace") for p in sitio.glob("*.html")}
    paginas = {nombre: Enlaces(texto) for nombre, texto in textos.items()}
    # Doxygen shows its own commands where it lost its way, and says nothing.
    rotos = [f"{nombre}: shows {m[0]}" for nombre, texto in textos.items()
             if (m := re.search(r"[@\\](code\{|endcode|ref |section |subpage )[^<\n]{0,40}", texto))]
    for nombre, pagina in paginas.items():
        for enlace in pagina.salen:
            if re.match(r"(https?|mailto|javascript|data):", enlace):
                continue
            archivo, _, ancla = enlace.partition("#")
            archivo = urllib.parse.unquote(archivo) or nombre
            if not (sitio / archivo).exists():
                rotos.append(f"{nombre}: {enlace}")
            elif ancla and archivo in paginas and urllib.parse.unquote(ancla) not in paginas[archivo].anclas:
                rotos.append(f"{nombre}: {enlace} (no such anchor)")
    return sorted(set(rotos)), len(paginas)


def sin_corchetes(texto):
    """A demangled symbol without what stands in <>, (), [] after its name."""
    texto = re.sub(r"operator(\(\)|<=>|<<|>>|<=|>=|->|<|>)", lambda m: "operator" + m[1].translate(OPERADOR), texto)
    salida, hondo = "", 0
    for c in texto:
        if c in "<([":
            if c == "(" and hondo == 0 and salida:
                break
            hondo += 1
        elif c in ">)]":
            hondo -= 1
        elif hondo == 0:
            salida += c
    return salida.strip().split(" ")[-1]


OPERADOR = str.maketrans("()<>=-", "ABCDEF")


def documentados(etiquetas):
    """Qualified names that have a page or a place in one, from Doxygen's tag file."""
    nombres = set()
    for compuesto in ET.parse(etiquetas).getroot().findall("compound"):
        dueno = compuesto.findtext("name")
        clase = compuesto.get("kind")
        if clase in ("class", "struct", "namespace"):
            nombres.add(dueno)
        for miembro in compuesto.findall("member"):
            nombre = miembro.findtext("name")
            if miembro.get("kind") == "enumvalue":
                continue
            nombres.add(f"{dueno}::{nombre}" if clase in ("class", "struct", "namespace") else nombre)
    return nombres


def es_privado(nombre, dichos, privados):
    """Whether the name belongs to the private part of a class that has its page: the class exports it, nobody calls it."""
    while "::" in nombre:
        nombre, _, ultimo = nombre.rpartition("::")
        if nombre in dichos:
            return ultimo in privados.get(nombre, ())
    return False


def exportados_sin_pagina(biblioteca, etiquetas, privados, nm="nm"):
    """What the library exports and the reference does not tell; and how many names it exports."""
    dichos = {re.sub(r"operator\s*(.+)", lambda m: "operator" + m[1].translate(OPERADOR), n) for n in documentados(etiquetas)}
    salida = subprocess.run([nm, "-DC", "--defined-only", str(biblioteca)], text=True, capture_output=True, check=True)
    faltan, cuenta = set(), set()
    for linea in salida.stdout.splitlines():
        clase, simbolo = linea.split(" ", 2)[1:]
        simbolo = re.sub(r"^(vtable|typeinfo name|typeinfo|VTT|construction vtable|(non-)?virtual thunk|guard variable) (for|to) ",
                         "", simbolo)
        if clase == "A" or not simbolo.startswith(("vel::", "uv90_")):
            continue
        nombre = sin_corchetes(simbolo)
        # The standard library's templates on our types.
        if not re.fullmatch(r"(vel::|uv90_)[\w:~]+[=!]*", nombre):
            continue
        cuenta.add(nombre)
        dueno, _, ultimo = nombre.rpartition("::")
        propio = ultimo.startswith("~") or ultimo == dueno.rpartition("::")[2] or ultimo.startswith("operator")
        if nombre not in dichos and not (propio and dueno in dichos) and not es_privado(nombre, dichos, privados):
            faltan.add(nombre)
    return sorted(faltan), len(cuenta)
