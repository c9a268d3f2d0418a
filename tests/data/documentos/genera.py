#!/usr/bin/env python3
"""Writes the results of documentos.txt: the rules of the document engine, one plain step after another.

Python's floats are the doubles that the engine uses, and "%.15g" the fifteen digits of its texts."""
import math
import pathlib


def texto(x):
    """The general text of a number; only its digits and point matter to rounding."""
    t = '%.15g' % x
    if 'e' in t:
        mantisa, exponente = t.split('e')
        return mantisa + 'E' + str(int(exponente))
    return '0' if t == '-0' else t


def redondea(x, n):
    t = texto(x)
    if n <= 0 or not math.isfinite(x) or '.' not in t or len(t.split('.')[1]) <= n:
        return x
    p = float('1e-%d' % n)
    w = x / p - 0.5 if x < 0 else x / p + 0.5
    return float(texto(w).split('.')[0]) * p


def divide(a, b):
    return a / b if b else math.copysign(math.inf, a) if a else math.nan


class Documento:
    def __init__(self, ajustes, lineas):
        self.a = {'Modulo': 2, 'Proceso': 0, 'IgnoraTipoCambio': 0, 'SubtotalSimple': 1}
        self.a |= {'IncluyeImpuesto%d' % n: 1 for n in range(1, 9)} | ajustes
        self.lineas = lineas
        self.con_codigo = {c for linea in lineas for c in linea if c.endswith('APLA')}
        self.con_muestra = any('MUESTRA_PAR' in linea for linea in lineas)
        self.impuesto, self.total, self.listas = [0.0] * 8, [0.0] * 8, [{} for _ in range(8)]
        self.porcentaje, self.descuento, self.descuentos = [0.0] * 3, [0.0] * 3, [0.0] * 3
        self.subtotal = 0.0

    def descuenta(self, importe):
        self.descuento = [redondea(p / 100 * importe, 6) for p in self.porcentaje]
        return self.descuento[0] + self.descuento[1] + self.descuento[2]

    def aplica(self, base, tasa, codigo, i):
        if 0 <= codigo <= 7:
            for k in range(codigo):
                base += self.impuesto[k]
            self.impuesto[i] += base / 100 * tasa
        self.total[i] += redondea(self.impuesto[i], 6)
        return redondea(self.impuesto[i], 6)

    def aplica_cuota(self, linea, base, tasa, codigo, i):
        cuota, modo = numero(linea, 'MTO_CUOTA'), linea.get('APL_MAN_IEPS', '')
        if modo == 'M' and self.aplica(base, tasa, codigo, i) < cuota or modo == 'C':
            self.impuesto[i] = cuota
        elif modo == 'A':
            self.aplica(base, tasa, codigo, i)
            self.impuesto[i] += cuota
        self.total[i] = redondea(self.impuesto[i], 6)
        return self.impuesto[i]

    def grava(self, linea, cambio):
        self.impuesto = [0.0] * 8
        for i in range(8):
            codigo = int(linea.get('IMP%dAPLA' % (i + 1), 0)) if 'IMP%dAPLA' % (i + 1) in self.con_codigo else 6
            if codigo in (4, 6):
                continue
            tasa = redondea(numero(linea, 'IMPU%d' % (i + 1)), 6)
            precio = redondea(numero(linea, 'PREC' if self.a['Modulo'] == 2 else 'COST'), 6)
            importe = redondea(divide(redondea(numero(linea, 'CANT'), 6) * precio, cambio), 6)
            base = importe - self.descuenta(importe)
            if linea.get('MAN_IEPS') == 'S' and int(numero(linea, 'APL_MAN_IMP')) == i + 1:
                impuesto = self.aplica_cuota(linea, base, tasa, codigo, i)
            else:
                impuesto = self.aplica(base, tasa, codigo, i)
            if tasa > 0:
                lista = self.listas[i]
                b, t = lista.get(texto(tasa), (0.0, 0.0))
                lista[texto(tasa)] = (float(texto(b + base)), float(texto(t + impuesto)))

    def importe(self, linea, cambio):
        cantidad, precio = redondea(numero(linea, 'CANT'), 6), redondea(numero(linea, 'PREC'), 6)
        if self.a['SubtotalSimple']:
            return divide(cantidad * precio, cambio)
        importe = 0.0
        for i in range(8):
            p = precio
            if self.a['IncluyeImpuesto%d' % (i + 1)]:
                p += redondea(divide(divide(self.impuesto[i], cantidad), cambio), 6)
            importe += divide(cantidad * p, cambio)
        return importe

    def calcula(self):
        clave = self.lineas[0].get('CVE_DOC', '')
        for n, linea in enumerate(self.lineas):
            nombres = ('DESC1', 'DESC2', 'DESC3') if self.a['Modulo'] == 2 else ('DESCU', '', '')
            self.porcentaje = [numero(linea, c) for c in nombres]
            cambio = 1.0 if self.a['IgnoraTipoCambio'] else redondea(numero(linea, 'TIP_CAM'), 6)
            producto, elemento = linea.get('TIPO_PROD', ''), linea.get('TIPO_ELEM', '')
            cuenta = not (producto in ('P', 'S') and elemento == 'K' or producto == 'G' and elemento == 'N')
            if cuenta and (not self.con_muestra or linea.get('MUESTRA_PAR', '') in ('', 'N')):
                self.grava(linea, cambio)
            self.subtotal += self.importe(linea, cambio) if cuenta else 0.0
            siguiente = self.lineas[min(n + 1, len(self.lineas) - 1)].get('CVE_DOC', '')
            if self.a['Proceso'] == 9 and siguiente != clave:
                clave, self.subtotal = siguiente, redondea(self.subtotal, 2)
                self.descuenta(self.subtotal)
            self.descuentos = [t + d for t, d in zip(self.descuentos, self.descuento)]
        suma_descuentos = 0.0 + self.descuentos[0] + self.descuentos[1] + self.descuentos[2]
        impuestos = 0.0
        for k in range(8):
            if len(self.listas[k]) > 1:
                self.total[k] = 0.0
                for _, t in self.listas[k].values():
                    self.total[k] += redondea(t, 2)
            impuestos += self.total[k]
        da = {'Subtotal': redondea(self.subtotal, 2), 'SumaDescuentos': suma_descuentos,
              'TotalImpuestosRedondeado': redondea(impuestos, 2),
              'TotalImpuestos': redondea(impuestos, 2) + redondea(self.subtotal - suma_descuentos, 2)}
        da |= {'TotalDescuento%d' % (i + 1): d for i, d in enumerate(self.descuentos) if d}
        da |= {'TotalImpuesto%d' % (i + 1): t for i, t in enumerate(self.total) if t}
        da |= {'ImpuestoPartida%d' % (i + 1): t for i, t in enumerate(self.impuesto) if t}
        escrito = [nombre + '=' + repr(valor) for nombre, valor in da.items()]
        for i, lista in enumerate(self.listas):
            if lista:
                entradas = ['%s: %s + %s' % (r, texto(b), texto(t)) for r, (b, t) in lista.items()]
                escrito.append('ListaImpuesto%d=%s' % (i + 1, '; '.join(entradas)))
        return escrito


OMISION = {'CANT': 1.0, 'PREC': 1.0, 'TIP_CAM': 1.0, 'COST': 2.0}


def numero(linea, campo):
    return float(linea.get(campo, OMISION.get(campo, 0.0)))


def principal():
    archivo = pathlib.Path(__file__).with_name('documentos.txt')
    salida, ajustes, lineas = [], {}, []

    def cierra():
        if lineas:
            salida.extend('da | ' + r for r in Documento(dict(ajustes), list(lineas)).calcula())
        ajustes.clear()
        lineas.clear()

    for renglon in archivo.read_text(encoding='utf-8').splitlines() + ['']:
        clave, _, valor = renglon.partition(' | ')
        pares = dict(par.split('=') for par in valor.split(', ')) if clave in ('ajuste', 'partida') else {}
        if clave == 'da':
            continue
        if clave == 'ajuste':
            ajustes.update({c: int(v) for c, v in pares.items()})
        elif clave == 'partida':
            lineas.append(pares)
        elif not renglon:
            cierra()
        salida.append(renglon)
    archivo.write_text('\n'.join(salida[:-1]) + '\n', encoding='utf-8')


principal()
