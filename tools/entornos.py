#!/usr/bin/env python3
"""Runs the tests of a built tree under other languages, time zones and users.

    tools/entornos.py BUILD [TEXT...]    only the environments whose name holds one of the texts

Each test program runs whole, once in each environment. The locales are made in the build folder by localedef; the
machine's own are not touched. Programs that write the log beside the library run one at a time.
"""
import concurrent.futures
import contextlib
import dataclasses
import json
import os
import pathlib
import subprocess
import sys
import threading
import time

NADIE = 65534
IDIOMAS = ('es_MX', 'de_DE', 'tr_TR')
# They take long, and what they show does not depend on the environment.
LARGAS = ('Muertes.*', '*AfterAKill*', 'SinMemoria.*', 'Fallas.Each*', 'Fallas.FullDisk',
          'ReemplazaArchivo.IsNeverSeenHalfDone')
# They write beside the library, where another user may not.
JUNTO_A_LA_BIBLIOTECA = ':Configuracion.GivesItsDefaultsOnABareMachine'


def entornos(carpeta):
    """The environments by name: variables that are added, and what else is special."""
    anfitrion = {'LD_PRELOAD': str(carpeta / 'tests' / 'entornos' / 'libanfitrion.so')}
    utf8 = {'LOCPATH': str(carpeta / 'locales')}
    lista = {
        'C, Tijuana': {'LC_ALL': 'C', 'TZ': 'America/Tijuana'},
        'es_MX, Kiritimati': {**utf8, 'LC_ALL': 'es_MX.UTF-8', 'TZ': 'Pacific/Kiritimati'},
        'es_MX of the host too, Kathmandu': {**utf8, **anfitrion, 'LC_ALL': 'es_MX.UTF-8', 'TZ': 'Asia/Kathmandu'},
        'de_DE of the host too, Lord Howe': {**utf8, **anfitrion, 'LC_ALL': 'de_DE.UTF-8',
                                             'TZ': 'Australia/Lord_Howe'},
        'tr_TR of the host too, New York by rule': {**utf8, **anfitrion, 'LC_ALL': 'tr_TR.UTF-8',
                                                    'TZ': 'EST5EDT,M3.2.0,M11.1.0'},
        'no environment': None,
    }
    if os.geteuid() == 0:
        lista['another user without a home'] = {'HOME': '/nonexistent', 'USER': 'nobody'}
    else:
        print('another user: left out, only root can become one')
    return lista


@dataclasses.dataclass
class Trabajo:
    orden: list
    carpeta: str
    variables: dict
    # It writes the log beside the library, and so not at the same time as another.
    bitacora: bool
    # It writes in the build folder, which is not another user's.
    construye: bool
    # Others read what it makes, so it goes before them.
    prepara: bool


def trabajos(construccion):
    """The commands of the tests; of a program of GoogleTest one for all of its tests."""
    salida = subprocess.run(['ctest', '--test-dir', str(construccion), '--show-only=json-v1', '-LE', 'bases'],
                            check=True, capture_output=True, text=True).stdout
    lista = {}
    for prueba in json.loads(salida)['tests']:
        # What looks at sources and objects, or compiles, sees no environment; threads have a run of their own.
        if prueba['name'].startswith(('Casa.', 'Hilos.', 'Consulta.DeslicesSeDicenSolos', 'Fin.LlamaTodo')):
            continue
        orden = prueba.get('command')
        if orden is None:
            sys.exit(f'{prueba["name"]} is not built')
        # Engines keep locks of the machine, and break off by the clock.
        if orden[0].endswith('/pruebas_bases'):
            continue
        propiedades = {p['name']: p['value'] for p in prueba['properties']}
        if any(parte.startswith('--gtest_filter=') for parte in orden):
            orden = [orden[0], '--gtest_brief=1', '--gtest_filter=-' + ':'.join(LARGAS)]
        variables = dict(v.split('=', 1) for v in propiedades.get('ENVIRONMENT', []))
        bitacora = 'bitacora' in str(propiedades.get('RESOURCE_LOCK', ''))
        prepara = 'FIXTURES_SETUP' in propiedades
        construye = bitacora or prueba['name'].startswith(('Fin.', 'Recortes.')) or prepara
        lista[(*orden, *sorted(variables.items()))] = Trabajo(
            orden, propiedades.get('WORKING_DIRECTORY'), variables, bitacora, construye, prepara)
    return list(lista.values())


def corre(trabajo, variables, usuario, candado):
    ambiente = {} if variables is None else {'PATH': os.environ['PATH'], **variables}
    ambiente.update(trabajo.variables)
    orden = [parte + JUNTO_A_LA_BIBLIOTECA if usuario is not None and parte.startswith('--gtest_filter=') else parte
             for parte in trabajo.orden]
    with candado if trabajo.bitacora else contextlib.nullcontext():
        hecho = subprocess.run(orden, cwd=trabajo.carpeta, env=ambiente, user=usuario, group=usuario,
                               extra_groups=None if usuario is None else [], stdin=subprocess.DEVNULL, text=True,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, errors='replace', timeout=300)
    return hecho.returncode, hecho.stdout


def main():
    construccion = pathlib.Path(sys.argv[1]).resolve()
    locales = construccion / 'locales'
    locales.mkdir(exist_ok=True)
    for idioma in IDIOMAS:
        if not (locales / f'{idioma}.UTF-8').exists():
            subprocess.run(['localedef', '-i', idioma, '-f', 'UTF-8', str(locales / f'{idioma}.UTF-8')], check=True)
    lista = trabajos(construccion)
    candado = threading.Lock()
    faltas = 0
    todos = entornos(construccion)
    pedidos = [n for n in todos if not sys.argv[2:] or any(texto in n for texto in sys.argv[2:])]
    if not pedidos or not lista:
        sys.exit(f'Nothing to run; the environments are {"; ".join(todos)}')
    for nombre in pedidos:
        variables = todos[nombre]
        inicio = time.monotonic()
        usuario = NADIE if 'another user' in nombre else None
        # Programs of the pages print with the host's own streams, which follow its language.
        suyos = [t for t in lista if (usuario is None or not t.construye)
                 and not ('of the host' in nombre and any(parte.startswith('-DCARPETA=') for parte in t.orden))]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as hilos:
            hechos = [(t, corre(t, variables, usuario, candado)) for t in suyos if t.prepara]
            demas = [t for t in suyos if not t.prepara]
            hechos += zip(demas, hilos.map(lambda t: corre(t, variables, usuario, candado), demas))
            for trabajo, (codigo, texto) in hechos:
                if codigo != 0:
                    faltas += 1
                    print(f'-- {nombre}: {" ".join(trabajo.orden)} ended with {codigo}\n{texto[-4000:]}')
        print(f'{nombre}: {len(suyos)} programs, {time.monotonic() - inicio:.1f} s', flush=True)
    sys.exit(1 if faltas else 0)


if __name__ == '__main__':
    main()
