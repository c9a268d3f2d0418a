"""The project's Markdown as Doxygen pages: each gets a name, its links lead to the other pages, and the names of the
library in it lead to the reference."""
import os
import re

# What Doxygen would take for a command or for markup.
ESCAPES = {"\\": "\\\\", "@": "\\@", "<": "&lt;", ">": "&gt;", "|": "\\|", "#": "\\#", "%": "\\%", "&": "&amp;",
           "*": "\\*", '"': "&quot;"}


class EnlaceRoto(Exception):
    pass


def nombre_de_pagina(ruta):
    return "pagina_" + re.sub(r"\W", "_", ruta.removesuffix(".md"))


def ancla(pagina, titulo):
    """The name of a heading, as code hosts make it of the heading's text."""
    return pagina + "_" + re.sub(r"[^\w-]", "", titulo.lower().replace("`", "").replace(" ", "-")).replace("-", "_")


class Paginas:
    def __init__(self, raiz, rutas, cabeceras, nombres, enumeraciones):
        self.raiz, self.cabeceras, self.nombres = raiz, set(cabeceras), nombres
        self.enumeraciones = enumeraciones
        self.rutas = {r: nombre_de_pagina(r) for r in rutas}
        self.anclas = set()
        for ruta in rutas:
            texto = (raiz / ruta).read_text(encoding="utf-8")
            self.anclas |= {ancla(self.rutas[ruta], t) for t in re.findall(r"^##+ +(.*)$", texto, re.M)}

    def pagina(self, ruta, titulo=None, subpaginas=()):
        """The text of a page for Doxygen."""
        salida, prosa, en_codigo = [], [], False

        def cierra_prosa():
            # As a whole: what stands in backticks may go on in the next line.
            if prosa:
                salida.append(self.linea(ruta, "\n".join(prosa)))
                prosa.clear()

        for linea in (self.raiz / ruta).read_text(encoding="utf-8").split("\n"):
            if en_codigo or linea.startswith(("```", "    ", "#")):
                cierra_prosa()
            if linea.startswith("```"):
                lengua = {"cpp": "{.cpp}"}.get(linea[3:], "{.unparsed}")
                salida.append("```" if en_codigo else "```" + lengua)
                en_codigo = not en_codigo
            elif en_codigo or linea.startswith("    "):
                salida.append(linea)
            elif linea.startswith("#"):
                marcas, texto = linea.split(" ", 1)
                nombre = self.rutas[ruta] if marcas == "#" else ancla(self.rutas[ruta], texto)
                texto = titulo if titulo and marcas == "#" else texto
                salida.append(f"{marcas} {texto.replace('`', '')} {{#{nombre}}}")
            else:
                prosa.append(linea)
        cierra_prosa()
        # For the tree alone: the page itself leads to them in its own words.
        if subpaginas:
            salida += ["@htmlonly <div hidden> @endhtmlonly", ""] + [f"- @subpage {s}" for s in subpaginas] + \
                ["", "@htmlonly </div> @endhtmlonly"]
        # A link may go on in the next line.
        return re.sub(r"(?<!!)\[([^\]`]+)\]\(([^)\s]+)\)", lambda m: self.enlace(ruta, m[1], m[2]),
                      "\n".join(salida))

    def en_orden(self, ruta):
        """The pages that a page leads to, in the order of its links."""
        texto = (self.raiz / ruta).read_text(encoding="utf-8")
        caminos = [os.path.normpath(os.path.join(os.path.dirname(ruta), d)) for d in re.findall(r"\]\(([^)#\s]+)", texto)]
        return [c for c in dict.fromkeys(caminos) if c in self.rutas]

    def linea(self, ruta, linea):
        partes = re.split(r"(`[^`]+`)", linea)
        for i, parte in enumerate(partes):
            if i % 2:
                partes[i] = self.codigo(parte[1:-1])
            else:
                partes[i] = re.sub(r"([\\@])", r"\\\1", parte)
        # Doxygen loses the end of what is bold and has code in it.
        return re.sub(r"\*\*([^*]+(?:\\\*[^*]*)*)\*\*", r"<b>\1</b>", "".join(partes))

    def codigo(self, texto):
        texto = " ".join(texto.split()) if "\n" in texto else texto
        visible = "<code>" + "".join(ESCAPES.get(c, c) for c in texto).replace("--", "\\--") + "</code>"
        nombre = re.match(r"(\w+)(::(\w+))?(\(.*)?$", texto)
        if texto in self.cabeceras:
            return f'@ref {texto} "{texto}"'
        if nombre and nombre[1] in self.nombres and not re.search(r'["\\]', texto):
            # A member of an enumeration stands on the enumeration's own page.
            miembro = "" if nombre[1] in self.enumeraciones else nombre[2] or ""
            return f'@ref {self.nombres[nombre[1]]}{miembro} "{texto}"'
        return visible

    def enlace(self, ruta, texto, destino):
        texto = " ".join(texto.split())
        if re.match(r"\w+:", destino):
            return f"[{texto}]({destino})"
        archivo, _, fragmento = destino.partition("#")
        camino = os.path.normpath(os.path.join(os.path.dirname(ruta), archivo)) if archivo else ruta
        if not (self.raiz / camino).exists():
            raise EnlaceRoto(f"{ruta}: there is no {destino}")
        if camino not in self.rutas:
            return texto
        if not fragmento:
            return f"[{texto}](@ref {self.rutas[camino]})"
        nombre = self.rutas[camino] + "_" + fragmento.replace("-", "_")
        if nombre not in self.anclas:
            raise EnlaceRoto(f"{ruta}: {camino} has no heading #{fragmento}")
        return f"[{texto}](@ref {nombre})"
