#!/usr/bin/env python3
"""Verifies thousands of invoices with the program, and in Python with ElementTree and decimal, which does only the
sums: amount = quantity x price, tax = base x rate, their sums by tax and rate, subtotal, discount and total. Both
sides must find the same sums on every file, of which each tenth has a total that is a cent off.

Both are whole processes that read a list of files and write what they found: the program its report, Python the sums
that are not those printed. The shorter of three runs each, in turn; the program works on every core, Python on one.

    Facturas.py [PROGRAM]
"""
import base64
import json
import pathlib
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ET
from decimal import ROUND_HALF_UP, Decimal

# The build writes the places in.
PROGRAM = "$<TARGET_FILE:utilvel>"
CERTIFICATE = "$<TARGET_PROPERTY:utilvel,SOURCE_DIR>/../../tests/data/crypto/sello.cer"
FILES = 10_000
# Our time by Python's, of all the files.
LIMIT = 0.1
RUNS = 3
CENT = Decimal("0.01")
LINE = Decimal("0.000001")
CFDI = "{http://www.sat.gob.mx/cfd/4}"


def cents(x):
    return x.quantize(CENT, ROUND_HALF_UP)


def line_decimals(x):
    return x.quantize(LINE, ROUND_HALF_UP)


def invoice(number, lines, certificate):
    """One invoice of so many lines, its amounts made from its number."""
    concepts, subtotal, discount = [], Decimal(0), Decimal(0)
    groups, withheld = {}, Decimal(0)
    for i in range(lines):
        seed = number * 31 + i * 7
        quantity = Decimal(1 + seed % 40)
        price = Decimal(100 + seed * 7919 % 1_000_000) / 10_000
        amount = line_decimals(quantity * price)
        off = line_decimals(amount * Decimal("0.05")) if seed % 3 == 0 else Decimal(0)
        base = amount - off
        ieps = line_decimals(base * Decimal("0.08")) if seed % 4 == 0 else None
        iva_base = base + (ieps or 0)
        iva = line_decimals(iva_base * Decimal("0.16"))
        isr = line_decimals(base * Decimal("0.0125"))
        taxes = ""
        for key, rate, tax_base, tax in (("003", "0.080000", base, ieps), ("002", "0.160000", iva_base, iva)):
            if tax is None:
                continue
            taxes += (f'<cfdi:Traslado Base="{tax_base}" Impuesto="{key}" TipoFactor="Tasa" TasaOCuota="{rate}" '
                      f'Importe="{tax}"/>')
            old = groups.get((key, rate), (Decimal(0), Decimal(0)))
            groups[key, rate] = (old[0] + tax_base, old[1] + tax)
        concepts.append(
            f'<cfdi:Concepto ClaveProdServ="01010101" NoIdentificacion="ART-{seed}" Cantidad="{quantity}" '
            f'ClaveUnidad="H87" Unidad="PIEZA" Descripcion="Artículo de prueba número {seed}" ValorUnitario="{price}" '
            f'Importe="{amount}" Descuento="{off}" ObjetoImp="02"><cfdi:Impuestos><cfdi:Traslados>{taxes}'
            f'</cfdi:Traslados><cfdi:Retenciones><cfdi:Retencion Base="{base}" Impuesto="001" TipoFactor="Tasa" '
            f'TasaOCuota="0.012500" Importe="{isr}"/></cfdi:Retenciones></cfdi:Impuestos></cfdi:Concepto>')
        subtotal, discount, withheld = subtotal + amount, discount + off, withheld + isr
    transferred = sum((cents(tax) for _, tax in groups.values()), Decimal(0))
    total = cents(subtotal) - cents(discount) + transferred - cents(withheld)
    if number % 10 == 0:
        total += CENT
    summary = "".join(
        f'<cfdi:Traslado Base="{cents(base)}" Impuesto="{key}" TipoFactor="Tasa" TasaOCuota="{rate}" '
        f'Importe="{cents(tax)}"/>' for (key, rate), (base, tax) in groups.items())
    return (
        '<?xml version="1.0" encoding="UTF-8"?>\n'
        '<cfdi:Comprobante xmlns:cfdi="http://www.sat.gob.mx/cfd/4" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" '
        'xsi:schemaLocation="http://www.sat.gob.mx/cfd/4 http://www.sat.gob.mx/sitio_internet/cfd/4/cfdv40.xsd" '
        f'Version="4.0" Serie="F" Folio="{number}" Fecha="2024-05-13T10:20:30" Sello="{"A" * 344}" FormaPago="03" '
        f'NoCertificado="00001000000509876543" Certificado="{certificate}" SubTotal="{cents(subtotal)}" '
        f'Descuento="{cents(discount)}" Moneda="MXN" Total="{total}" TipoDeComprobante="I" Exportacion="01" '
        'MetodoPago="PUE" LugarExpedicion="06000"><cfdi:Emisor Rfc="PEPJ800101AB1" Nombre="JUANA PEREZ" '
        'RegimenFiscal="612"/><cfdi:Receptor Rfc="XAXX010101000" Nombre="PUBLICO EN GENERAL" '
        'DomicilioFiscalReceptor="06000" RegimenFiscalReceptor="616" UsoCFDI="S01"/><cfdi:Conceptos>'
        + "".join(concepts) +
        f'</cfdi:Conceptos><cfdi:Impuestos TotalImpuestosRetenidos="{cents(withheld)}" '
        f'TotalImpuestosTrasladados="{transferred}"><cfdi:Retenciones><cfdi:Retencion Impuesto="001" '
        f'Importe="{cents(withheld)}"/></cfdi:Retenciones><cfdi:Traslados>{summary}</cfdi:Traslados></cfdi:Impuestos>'
        '</cfdi:Comprobante>\n')


def sums(path):
    """The peer: what the printed figures of a file give; None where they are those printed."""
    root = ET.parse(path).getroot()
    subtotal, discount, wrong = Decimal(0), Decimal(0), []
    groups, withheld = {}, {}

    def check(printed, computed):
        if printed != computed:
            wrong.append(computed)

    for concept in root.iter(CFDI + "Concepto"):
        amount = Decimal(concept.get("Importe"))
        check(amount, line_decimals(Decimal(concept.get("Cantidad")) * Decimal(concept.get("ValorUnitario"))))
        subtotal += amount
        discount += Decimal(concept.get("Descuento", "0"))
        for tax in concept.iter(CFDI + "Traslado"):
            base, value = Decimal(tax.get("Base")), Decimal(tax.get("Importe"))
            check(value, line_decimals(base * Decimal(tax.get("TasaOCuota"))))
            key = tax.get("Impuesto"), tax.get("TipoFactor"), tax.get("TasaOCuota")
            old = groups.get(key, (Decimal(0), Decimal(0)))
            groups[key] = old[0] + base, old[1] + value
        for tax in concept.iter(CFDI + "Retencion"):
            value = Decimal(tax.get("Importe"))
            check(value, line_decimals(Decimal(tax.get("Base")) * Decimal(tax.get("TasaOCuota"))))
            withheld[tax.get("Impuesto")] = withheld.get(tax.get("Impuesto"), Decimal(0)) + value
    taxes = root.find(CFDI + "Impuestos")
    transferred = held = Decimal(0)
    for tax in taxes.iter(CFDI + "Traslado"):
        base, value = groups[tax.get("Impuesto"), tax.get("TipoFactor"), tax.get("TasaOCuota")]
        check(Decimal(tax.get("Base")), cents(base))
        check(Decimal(tax.get("Importe")), cents(value))
        transferred += Decimal(tax.get("Importe"))
    for tax in taxes.iter(CFDI + "Retencion"):
        check(Decimal(tax.get("Importe")), cents(withheld[tax.get("Impuesto")]))
        held += Decimal(tax.get("Importe"))
    check(Decimal(taxes.get("TotalImpuestosTrasladados")), transferred)
    check(Decimal(taxes.get("TotalImpuestosRetenidos")), held)
    check(Decimal(root.get("SubTotal")), cents(subtotal))
    check(Decimal(root.get("Descuento")), cents(discount))
    check(Decimal(root.get("Total")), cents(subtotal) - cents(discount) + transferred - held)
    return wrong


def run(command, folder):
    """Seconds that a process takes that writes to the file "salida"."""
    with open(folder / "salida", "wb") as output:
        start = time.perf_counter()
        subprocess.run(command, stdout=output, check=False)
        return time.perf_counter() - start


def ours(folder, *options):
    return run([PROGRAM, "cfdi", "--lista", folder / "lista", *options], folder)


def theirs(folder):
    return run([sys.executable, __file__, "--par", folder / "lista"], folder)


def peer(names):
    for name in pathlib.Path(names).read_text().split():
        print(json.dumps([str(x) for x in sums(name)]))


def compare(what, count, names, folder, limit=None):
    (folder / "lista").write_text("\n".join(map(str, names)) + "\n")
    times = [(ours(folder), theirs(folder)) for _ in range(RUNS)]
    found = [[Decimal(x) for x in json.loads(line)] for line in (folder / "salida").read_text().splitlines()]
    ours(folder, "--json")
    reports = [json.loads(line) for line in (folder / "salida").read_text().splitlines()]
    if found != [[Decimal(d["calculado"]) for d in report["diferencias"]] for report in reports]:
        sys.exit("the two sides do not find the same sums")
    mine, other = (min(t) for t in zip(*times))
    if JSON:
        figure = {"name": f"cfdi, {count} {what}", "ns": {"ours": mine / count * 1e9, "Python": other / count * 1e9},
                  "ratio": mine / other}
        print(json.dumps(figure | ({} if limit is None else {"limit": limit})), flush=True)
        return
    print(f"{what:20} {count:>7} {mine:8.3f} s {count / mine:9.0f}/s {other:10.3f} s {count / other:9.0f}/s "
          f"{other / mine:6.1f} times   {sum(map(len, found))} sums differ on both sides", flush=True)


def main():
    certificate = base64.b64encode(pathlib.Path(CERTIFICATE).read_bytes()).decode()
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        names = [folder / f"{number}.xml" for number in range(FILES)]
        for number, name in enumerate(names):
            name.write_text(invoice(number, 3 + number % 3, certificate))
        size = sum(n.stat().st_size for n in names) / FILES
        print(f"Invoices of 3 to 5 lines and {size:.0f} bytes: the program, ElementTree and decimal")
        compare("files", FILES // 10, names[: FILES // 10], folder)
        compare("files", FILES, names, folder, LIMIT)
        (folder / "lista").write_text("\n".join(map(str, names * 10)) + "\n")
        mine = ours(folder)
        print(f"{'files':20} {10 * FILES:>7} {mine:8.3f} s {10 * FILES / mine:9.0f}/s")
        for lines in (100, 1_000, 10_000):
            name = folder / "grande.xml"
            name.write_text(invoice(10, lines, certificate))
            compare("lines of one file", lines, [name], folder)


JSON = False
if sys.argv[1:2] == ["--par"]:
    peer(sys.argv[2])
else:
    JSON = "--json" in sys.argv
    PROGRAM = next((a for a in sys.argv[1:] if a != "--json"), PROGRAM)
    main()
