#!/usr/bin/env python3
"""Plants the faults of a list, one at a time, and says which of them no test notices.

    tools/mutantes.py [TEXT...]    only the faults whose file or program holds one of the texts
    tools/mutantes.py --check      plants none: names those that the code has left behind

A fault is a head, the lines to take away and the lines to put there. The head names the file and the test program,
with a filter of its tests where the others take long:

    Paramsql/Redactor.cpp | pruebas_Paramsql
    - if (balance < 0) salida_.append(
    + if (balance < -1) salida_.append(

The text taken away stands exactly once in the file. A third field says why a fault may live: it changes
nothing that can be seen, or nothing that can be provoked. Work is done on a copy of the tree below build/, so
that an interrupted run leaves no fault behind.
"""
import dataclasses
import pathlib
import shutil
import subprocess
import sys

RAIZ = pathlib.Path(__file__).resolve().parent.parent
COPIA = RAIZ / 'build' / 'mutantes'
# A fault may send a test into a loop; whole programs take a few seconds.
SEGUNDOS = 120


@dataclasses.dataclass
class Falta:
    archivo: str
    programa: str
    motivo: str
    quita: str = ''
    pone: str = ''

    def __str__(self):
        return f'{self.archivo}\n' + ''.join(
            f'    {signo} {linea}\n' for signo, texto in (('-', self.quita), ('+', self.pone))
            for linea in texto.splitlines())


def lee_lista(texto):
    faltas = []
    for renglon in texto.splitlines():
        if not renglon.strip() or renglon.startswith('#'):
            continue
        if renglon.startswith('- ') or renglon == '-':
            faltas[-1].quita += ('\n' if faltas[-1].quita else '') + renglon[2:]
        elif renglon.startswith('+ ') or renglon == '+':
            faltas[-1].pone += ('\n' if faltas[-1].pone else '') + renglon[2:]
        else:
            campos = [campo.strip() for campo in renglon.split(' | ')]
            faltas.append(Falta(campos[0], campos[1], campos[2] if len(campos) > 2 else ''))
    return faltas


def copia_arbol():
    """Brings the copy up to date; files that did not change keep their time, so that little is built again."""
    archivos = subprocess.run(['git', 'ls-files', '-co', '--exclude-standard', '-z'], cwd=RAIZ, check=True,
                              capture_output=True, text=True).stdout.split('\0')
    for nombre in filter(None, archivos):
        origen, destino = RAIZ / nombre, COPIA / nombre
        if not origen.exists():
            destino.unlink(missing_ok=True)
            continue
        if destino.exists() and destino.read_bytes() == origen.read_bytes():
            continue
        destino.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(origen, destino)


def construye(objetivos):
    objetivos = {objetivo.split()[0] for objetivo in objetivos}
    return subprocess.run(['cmake', '--build', '--preset', 'dev', '--target', *sorted(objetivos)], cwd=COPIA,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


def ruta_y_filtro(programa):
    nombre, _, filtro = programa.partition(' ')
    return next((COPIA / 'build' / 'dev' / 'tests').rglob(nombre)), filtro or '*'


def sin_pruebas(programa):
    """The patterns of its filter that no test fits any more."""
    ruta, filtro = ruta_y_filtro(programa)
    return [patron for patron in filtro.lstrip('-').split(':')
            if not subprocess.run([ruta, '--gtest_list_tests', '--gtest_filter=' + patron], check=True,
                                  capture_output=True).stdout]


def pasa(programa):
    ruta, filtro = ruta_y_filtro(programa)
    orden = [ruta, '--gtest_fail_fast', '--gtest_filter=' + filtro]
    try:
        return subprocess.run(orden, cwd=ruta.parent, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=SEGUNDOS).returncode == 0
    except subprocess.TimeoutExpired:
        return False


class ErrorDeLista(Exception):
    """A fault that cannot be planted any more, or does not compile."""


def exige_lugar(falta, sano):
    if sano.count(falta.quita) != 1:
        raise ErrorDeLista(f'the text to take away stands {sano.count(falta.quita)} times')


def vive(falta):
    """Whether the tests pass with the fault planted."""
    archivo = COPIA / falta.archivo
    sano = archivo.read_text(encoding='utf-8')
    exige_lugar(falta, sano)
    try:
        archivo.write_text(sano.replace(falta.quita, falta.pone), encoding='utf-8')
        if not construye([falta.programa]):
            raise ErrorDeLista('does not compile')
        return pasa(falta.programa)
    finally:
        archivo.write_text(sano, encoding='utf-8')


def comprueba(faltas):
    """How many faults cannot be planted, each told."""
    errores = 0
    for falta in faltas:
        try:
            exige_lugar(falta, (RAIZ / falta.archivo).read_text(encoding='utf-8'))
        except (ErrorDeLista, OSError) as error:
            errores += 1
            print(f'{error}: {falta}')
    print(f'{len(faltas)} faults, {errores} that cannot be planted')
    return errores


def main():
    faltas = lee_lista((RAIZ / 'tools' / 'mutantes.txt').read_text(encoding='utf-8'))
    if sys.argv[1:] == ['--check']:
        return 1 if comprueba(faltas) or not faltas else 0
    faltas = [f for f in faltas if not sys.argv[1:] or any(t in f.archivo or t in f.programa for t in sys.argv[1:])]
    copia_arbol()
    subprocess.run(['cmake', '--preset', 'dev'], cwd=COPIA, check=True, stdout=subprocess.DEVNULL)
    programas = sorted({f.programa for f in faltas})
    if not construye(programas):
        sys.exit('The tree does not build')
    for programa in programas:
        if perdidos := sin_pruebas(programa):
            sys.exit(f'{programa}: no test fits {", ".join(perdidos)}')
        if not pasa(programa):
            sys.exit(f'{programa} fails without any fault')
    vivas, errores = [], 0
    for n, falta in enumerate(faltas, 1):
        try:
            viva = vive(falta)
        except ErrorDeLista as error:
            errores += 1
            print(f'NOT PLANTED, {error}: {falta}', flush=True)
            continue
        if viva:
            vivas.append(falta)
            print(f'LIVES {n}/{len(faltas)} {falta}' + (f'    {falta.motivo}' if falta.motivo else ''), flush=True)
        elif falta.motivo:
            print(f'NOTICED though the list says that it lives: {falta}', flush=True)
    print(f'{len(faltas)} faults, {len(faltas) - len(vivas) - errores} noticed, {len(vivas)} live '
          f'({sum(1 for f in vivas if f.motivo)} of them explained), {errores} not planted')
    return 1 if errores or any(not f.motivo for f in vivas) else 0


sys.exit(main())
