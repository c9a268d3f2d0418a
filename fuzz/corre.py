#!/usr/bin/env python3
"""Runs the programs of fuzz/, one on each processor, and tells what each has done.

    fuzz/corre.py [--seconds N] [--release] [NAME...]

A program's first inputs are the files of fuzz/semillas/NAME and those that fuzz/semillas.txt names; what it finds
new is kept in build/fuzz/corpus/NAME and is where the next run goes on. An input that breaks something ends up in
build/fuzz/fallas. With --release programs take turns until a thousand million inputs have been run in all; it may be
stopped at any time and goes on from there.
"""

import argparse
import concurrent.futures
import json
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

RAIZ = pathlib.Path(__file__).resolve().parent.parent
PROGRAMAS = RAIZ / "build/sanitize/fuzz"
TRABAJO = RAIZ / "build/fuzz"
META = 10**9
# Of a release: long enough that starting a program and reading its corpus costs little.
TURNO = 600


def semillas(nombre):
    """Folder of the program's seeds, made anew from its own and from the rows of semillas.txt."""
    carpeta = TRABAJO / "semillas" / nombre
    carpeta.mkdir(parents=True, exist_ok=True)
    for vieja in carpeta.iterdir():
        vieja.unlink()
    entradas = [p.read_bytes() for p in sorted((RAIZ / "fuzz/semillas" / nombre).glob("*"))]
    cola = b""
    for linea in (RAIZ / "fuzz/semillas.txt").read_text(encoding="utf-8").splitlines():
        campos = linea.split("#")[0].split()
        if not campos or campos[0] != nombre:
            continue
        cola, clase, nombres = bytes(int(campos[1])), campos[2], campos[3:]
        if clase == "random":
            azar = random.Random(int(nombres[0]))
            entradas += [azar.randbytes(int(n)) for n in nombres]
        for patron in nombres if clase != "random" else []:
            rutas = sorted(RAIZ.glob(patron)) if not patron.startswith("/") else [pathlib.Path(patron)]
            if not rutas:
                sys.exit(f"fuzz/semillas.txt: nothing is called {patron}")
            for ruta in rutas:
                leido = ruta.read_bytes()
                if clase == "files":
                    entradas.append(leido)
                    continue
                for caso in leido.splitlines():
                    if caso and not caso.startswith(b"#"):
                        entradas += {caso, *re.split(rb" ; |\|", caso)}
    for numero, entrada in enumerate(entradas):
        (carpeta / f"{numero:04}").write_bytes(entrada + cola)
    return carpeta


def corre(nombre, segundos):
    """Runs one program; its figures, or what it printed of a fault."""
    corpus = TRABAJO / "corpus" / nombre
    corpus.mkdir(parents=True, exist_ok=True)
    fallas = TRABAJO / "fallas"
    fallas.mkdir(parents=True, exist_ok=True)
    programa = PROGRAMAS / f"fuzz_{nombre}"
    orden = [programa, f"-max_total_time={segundos}", "-max_len=4096", "-timeout=20", "-rss_limit_mb=2048",
             "-print_final_stats=1", f"-artifact_prefix={fallas}/{nombre}-"]
    diccionario = RAIZ / f"fuzz/diccionarios/{nombre}.dict"
    if diccionario.exists():
        orden.append(f"-dict={diccionario}")
    orden += [corpus, semillas(nombre)]
    with tempfile.TemporaryDirectory(dir="/dev/shm") as memoria:
        # Fail as the tests do: leaks count, and nobody's own options change a run.
        entorno = dict(os.environ, UBSAN_OPTIONS="print_stacktrace=1", ASAN_OPTIONS="detect_leaks=1", TZ="UTC",
                       TMPDIR=memoria)
        salida = subprocess.run(orden, env=entorno, cwd=RAIZ, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                check=False)
    texto = salida.stdout.decode("utf-8", "replace")

    def ultimo(patron):
        hallados = re.findall(patron, texto)
        return hallados[-1] if hallados else "0"

    cifras = {
        "executions": int(ultimo(r"stat::number_of_executed_units: (\d+)")),
        "seconds": int(ultimo(r"Done \d+ runs in (\d+) second") if "Done " in texto else segundos),
        "coverage": int(ultimo(r"cov: (\d+)")),
        "corpus": int(ultimo(r"corp: (\d+)")),
    }
    # One that has run nothing has found nothing.
    cifras["failed"] = salida.returncode != 0 or cifras["executions"] == 0
    if cifras["failed"]:
        cifras["artifact"] = ultimo(r"Test unit written to (\S+)")
        # Without libFuzzer's own account, and of the calls those of this project.
        ajena = re.compile(r"#\d+\t|INFO:|\s+NEW_FUNC|Dictionary:|stat::|MS: |NOTE: |0x|artifact_prefix|Base64:"
                           r"|\s+#\d+ (?!.*\.\./\.\./)")
        lineas = [l for l in texto.splitlines() if not ajena.match(l)]
        cifras["output"] = "\n".join(lineas[:60])
    return cifras


def tanda(nombres, segundos, cuentas):
    """Each program once; the faults that were found."""
    fallas = 0
    with concurrent.futures.ThreadPoolExecutor(max_workers=os.cpu_count() or 1) as manos:
        en_curso = {manos.submit(corre, nombre, segundos): nombre for nombre in nombres}
        for tarea in concurrent.futures.as_completed(en_curso):
            nombre = en_curso[tarea]
            c = tarea.result()
            cuentas[nombre] = cuentas.get(nombre, 0) + c["executions"]
            print(f"{nombre:14}{c['executions']:>12,} inputs{c['seconds']:>6} s{c['coverage']:>7} edges"
                  f"{c['corpus']:>6} in corpus{'   FAILED' if c['failed'] else ''}", flush=True)
            if c["failed"]:
                fallas += 1
                print(c["output"])
                programa = (PROGRAMAS / f"fuzz_{nombre}").relative_to(RAIZ)
                print(f"\nThe input: {c['artifact']}\nAgain: {programa} {c['artifact']}\n", flush=True)
    return fallas


def publica(nombres):
    """Runs up to META inputs in all, what earlier calls have run included."""
    libro = TRABAJO / "cuentas.json"
    cuentas = json.loads(libro.read_text()) if libro.exists() else {}
    while sum(cuentas.values()) < META:
        print(f"== {sum(cuentas.values()):,} of {META:,} inputs", flush=True)
        fallas = tanda(nombres, TURNO, cuentas)
        libro.write_text(json.dumps(cuentas, indent=1))
        if fallas:
            return fallas
    print(f"{sum(cuentas.values()):,} inputs: {json.dumps(cuentas)}")
    return 0


def main():
    opciones = argparse.ArgumentParser(prog="./run fuzz")
    opciones.add_argument("--seconds", type=int, default=10)
    opciones.add_argument("--release", action="store_true")
    opciones.add_argument("nombres", nargs="*", metavar="NAME")
    pedido = opciones.parse_args()
    todos = (PROGRAMAS / "programas.txt").read_text().split()
    ajenos = [n for n in pedido.nombres if n not in todos]
    if ajenos:
        sys.exit(f"{' '.join(ajenos)}: the programs are {' '.join(todos)}")
    nombres = pedido.nombres or todos
    TRABAJO.mkdir(parents=True, exist_ok=True)
    fallas = publica(nombres) if pedido.release else tanda(nombres, pedido.seconds, {})
    sys.exit(1 if fallas else 0)


if __name__ == "__main__":
    main()
