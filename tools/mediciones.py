#!/usr/bin/env python3
"""Runs benchmark programs and keeps their figures: tools/mediciones.py FOLDER PROGRAM...

Prints one JSON document with every figure, for records, and writes docs/performance.md from it.
"""

import json
import os
import platform
import subprocess
import sys
from datetime import date
from pathlib import Path

RAIZ = Path(__file__).resolve().parent.parent
PAGINA = RAIZ / "docs" / "performance.md"


def mide(carpeta, programa):
    """The figures of one program; what it prints besides goes to standard error."""
    salida = subprocess.run([carpeta / programa, "--json"], stdout=subprocess.PIPE, text=True, check=True).stdout
    figuras = []
    for linea in salida.splitlines():
        if linea.startswith("{"):
            figuras.append({"program": programa} | json.loads(linea))
        else:
            print(linea, file=sys.stderr)
    return figuras


def procesador():
    for linea in Path("/proc/cpuinfo").read_text().splitlines():
        if linea.startswith("model name"):
            return linea.split(":", 1)[1].strip()
    return platform.machine()


def tiempo(nanos):
    for unidad, tamano in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanos >= tamano:
            return f"{nanos / tamano:.3g} {unidad}"
    return f"{nanos:.3g} ns"


def fila(figura):
    limite = figura.get("limit")
    veredicto = "" if limite is None else f"{limite:.3g}" + ("" if figura["ratio"] <= limite else " **missed**")
    tiempos = ", ".join(f"{nombre} {tiempo(ns)}" for nombre, ns in figura["ns"].items())
    nombre = figura["name"].replace("|", "\\|")
    return f"| {nombre} | {tiempos} | {figura['ratio']:.3g} | {veredicto} |"


def pagina(registro):
    partes = [
        "# Performance",
        "",
        "Written by `./run bench --json`. Each ratio is our time by the other side's in the same process, both run by",
        "turns, the median of nine repetitions; in rows of sizes, the last time a unit by the first. Both sides' results",
        "are compared before anything is measured.",
        "",
        f"{registro['date']}, {registro['processor']}, {registro['cores']} cores.",
    ]
    for programa in dict.fromkeys(f["program"] for f in registro["figures"]):
        partes += ["", f"## {programa}", "", "| what | times | ratio | limit |", "|---|---|---|---|"]
        partes += [fila(f) for f in registro["figures"] if f["program"] == programa]
    return "\n".join(partes) + "\n"


def main():
    carpeta, programas = Path(sys.argv[1]), sys.argv[2:]
    registro = {
        "date": date.today().isoformat(),
        "processor": procesador(),
        "cores": len(os.sched_getaffinity(0)),
        "figures": [figura for programa in programas for figura in mide(carpeta, programa)],
    }
    PAGINA.write_text(pagina(registro), encoding="utf-8")
    json.dump(registro, sys.stdout, indent=1, ensure_ascii=False)
    print()


if __name__ == "__main__":
    main()
