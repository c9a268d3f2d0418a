"""A page for each folder of the library: what it holds, the picture of its includes and its public headers."""
import re
import subprocess


def inclusiones(raiz, carpetas):
    """From each file of those folders to what it includes, both as paths from the source folder."""
    mapa = {}
    for carpeta in carpetas:
        for archivo in sorted((raiz / carpeta).rglob("*")):
            if archivo.suffix not in (".h", ".cpp"):
                continue
            texto = archivo.read_text(encoding="utf-8")
            mapa[str(archivo.relative_to(raiz))] = re.findall(r'^#include "([^"]+)"', texto, re.M)
    return mapa


def carpeta_de(ruta, carpetas):
    """The longest of the folders that holds the file; empty when none does."""
    return max((c for c in carpetas if ruta.startswith(c + "/")), key=len, default="")


def dibuja(salida, lineas):
    dot = "digraph g {\nrankdir=TB;\nnode [shape=box fontname=Helvetica fontsize=10 style=filled fillcolor=white];\n" + \
        "edge [color=gray40];\n" + "\n".join(lineas) + "\n}\n"
    reducido = subprocess.run(["tred"], input=dot, text=True, capture_output=True, check=True).stdout
    subprocess.run(["dot", "-Tsvg", "-o", str(salida)], input=reducido, text=True, check=True)


def de_carpetas(salida, mapa, carpetas):
    """Which folder includes which; what follows from others is left out."""
    pares = {(carpeta_de(a, carpetas), carpeta_de(b, carpetas)) for a, bs in mapa.items() for b in bs}
    dibuja(salida, [f'"{c}";' for c in carpetas] + [f'"{a}" -> "{b}";' for a, b in sorted(pares) if a and b and a != b])


def de_carpeta(salida, mapa, carpeta, carpetas, publicas):
    """The headers of a folder among themselves, public ones in colour, and the other folders that each and its source
    include."""
    propios = [a for a in mapa if carpeta_de(a, carpetas) == carpeta and a.endswith(".h")]
    lineas, pares = [], set()
    for h in propios:
        color = " fillcolor=lightblue" if h in publicas else ""
        lineas.append(f'"{h}" [label="{h.removeprefix(carpeta + "/")}"{color}];')
    for a, bs in mapa.items():
        if carpeta_de(a, carpetas) != carpeta:
            continue
        de = a.removesuffix(".cpp") + ".h" if a.endswith(".cpp") else a
        for b in bs:
            otra = carpeta_de(b, carpetas)
            if otra == carpeta and b in propios and a in propios:
                pares.add((a, b))
            elif otra and otra != carpeta:
                pares.add((de if de in propios else carpeta, otra))
    if any(a == carpeta for a, _ in pares):
        lineas.append(f'"{carpeta}" [label="(otras fuentes)" style=dashed];')
    for otra in sorted({b for _, b in pares if b not in propios}):
        lineas.append(f'"{otra}" [shape=folder];')
    dibuja(salida, lineas + [f'"{a}" -> "{b}";' for a, b in sorted(pares)])


def que_es(raiz):
    """From each folder to what README says that it holds."""
    filas = re.findall(r"^\| `([\w/]+)/` \| (.+) \|$", (raiz / "README.md").read_text(encoding="utf-8"), re.M)
    return dict(filas)


def capas(raiz):
    """The folders in the order of the layers, from the bottom up."""
    return [c for c in re.findall(r'^  "([\w/]+):', (raiz / "tools/capas.cmake").read_text(encoding="utf-8"), re.M)
            if not c.startswith("tools/")]


def escribe(raiz, destino, publicas, pagina):
    """Writes the pages and their pictures into `destino`; `pagina` makes a line of README a line of Doxygen's. Returns the
    names of the pages."""
    carpetas = capas(raiz)
    mapa = inclusiones(raiz, [c for c in carpetas if "/" not in c])
    de_carpetas(destino / "capas.svg", mapa, carpetas)
    dichos = que_es(raiz)
    nombres = []
    for raizc in [c for c in carpetas if "/" not in c]:
        if raizc not in dichos:
            raise SystemExit(f"README.md: its table of folders has no row for {raizc}/")
        texto = [f"# {raizc} {{#modulo_{raizc}}}", "", pagina(dichos[raizc]) + ".", ""]
        for c in [c for c in carpetas if c == raizc or c.startswith(raizc + "/")]:
            imagen = "incluye_" + c.replace("/", "_") + ".svg"
            suyas = [h for h in publicas if carpeta_de(h, carpetas) == c]
            de_carpeta(destino / imagen, mapa, c, carpetas, publicas)
            if c != raizc:
                texto += [f"## {c} {{#modulo_{c.replace('/', '_')}}}", ""]
            texto += [f"- @ref {h}" for h in suyas] + ["", f"![Qué incluye {c}; en color, lo público]({imagen})", ""]
        (destino / f"modulo_{raizc}.md").write_text("\n".join(texto), encoding="utf-8")
        nombres.append(f"modulo_{raizc}")
    return nombres
