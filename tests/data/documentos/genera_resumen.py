"""Writes the figures of resumen.txt (its lines J) anew: what an invoice of version 4.0 of the authority's standard
(Anexo 20 and its filling guide) prints of the documents there, computed from the rules in fractions."""
import json
import pathlib
from fractions import Fraction as F
from math import ceil, floor

TAXES = {1: ("003", False), 2: ("001", True), 3: ("002", True), 4: ("002", False), 5: ("ISH", False), 6: ("Cedular", True)}
LOCAL = ("ISH", "Cedular")
HALF = F(1, 2)


def cut(x, n, how=lambda v: floor(v + HALF)):
    return F(how(x * 10**n), 10**n)


def text(x, n):
    units = round(x * 10**n)
    whole, rest = divmod(abs(units), 10**n)
    return ("-" if units < 0 else "") + str(whole) + (f".{rest:0{n}d}" if n else "")


def line_taxes(line, net, n):
    """(number, withheld, factor, base, rate, amount) of each tax."""
    before = [F(0)] * 9
    for number, (rate, code) in sorted(line["taxes"].items()):
        withheld = TAXES[number][1]
        base = net + (sum(before[1:code + 1]) if code < 4 else 0)
        if rate == "E":
            yield number, False, "Exento", base, None, None
            continue
        by_rate = cut(base * cut(abs(F(rate)) / 100, 6), n)
        quota, units = F(line.get("quota", 0)), F(line.get("units") or line["qty"])
        per_unit, printed_units = cut(quota / units, 6), cut(units, n)
        margin = HALF / 10**n
        low = cut((printed_units - margin) * per_unit, n, floor)
        high = cut((printed_units + margin - F(1, 10**12)) * per_unit, n, ceil)
        by_quota = min(max(cut(quota, n), low), high)
        mode = line.get("mode") if line.get("of") == number else None
        if mode == "A" and not 0 <= code < 8:
            mode = "C"  # such a code adds no percentage
        if mode == "M":
            mode = None if cut(base * cut(F(rate) / 100, 6), 6) >= quota else "C"
        if mode != "C" and (F(rate) > 0 or (F(rate) == 0 and not withheld)) or F(rate) < 0:
            yield number, withheld or F(rate) < 0, "Tasa", base, cut(abs(F(rate)) / 100, 6), by_rate
            before[number] += by_rate if F(rate) > 0 else -by_rate
        if mode:
            yield number, withheld, "Cuota", printed_units, per_unit, by_quota
            before[number] += by_quota


def summary(lines, n, d):
    sums, groups, printed = [F(0), F(0)], {}, []
    for record, line in enumerate(lines, 1):
        if not line.get("counts", True):
            continue
        qty, price, exchange = F(line["qty"]), F(line["price"]), F(line.get("exchange", 1))
        amount = cut(qty * price / exchange, n)
        discount = cut(amount * sum(map(F, line.get("discounts", []))) / 100, n)
        sums = [sums[0] + amount, sums[1] + discount]
        taxes = []
        for number, withheld, factor, base, rate, tax in line_taxes(line, amount - discount, n) if line.get("shown", True) else []:
            name = TAXES[number][0]
            entry = {"Numero": number, "Tipo": "Retencion" if withheld else "Traslado", "Impuesto": name,
                     "TipoFactor": factor, "Base": text(base, n)}
            if factor != "Exento":
                entry |= {"TasaOCuota": text(rate, 6), "Importe": text(tax, n)}
            taxes.append(entry)
            key = (name, withheld) if withheld and name not in LOCAL else (name, withheld, factor if name not in LOCAL else "", rate)
            bases, amounts = groups.get(key, (0, 0))
            groups[key] = (bases + base, amounts + (tax or 0))
        printed.append({"Renglon": record, "Cantidad": text(qty, 6), "ValorUnitario": text(cut(price / exchange, 6), 6),
                        "Importe": text(amount, n), "Descuento": text(discount, n), "Impuestos": taxes})
    closed = {k: (cut(b, d), cut(a, d)) for k, (b, a) in groups.items()}

    def total(local, withheld):
        return sum((a for k, (_, a) in closed.items() if (k[0] in LOCAL) == local and k[1] == withheld), F(0))
    transfers = [{"Impuesto": k[0], "TipoFactor": k[2], "Base": text(b, d)} |
                 ({} if k[2] == "Exento" else {"TasaOCuota": text(k[3], 6), "Importe": text(a, d)})
                 for k, (b, a) in closed.items() if not k[1] and k[0] not in LOCAL]
    parts = [cut(sums[0], d), -cut(sums[1], d), total(False, False), -total(False, True), total(True, False), -total(True, True)]
    shown = [text(abs(p), d) for p in parts]
    return {"Partidas": printed, "SubTotal": shown[0], "Descuento": shown[1], "Traslados": transfers,
            "Retenciones": [{"Impuesto": k[0], "Importe": text(a, d)} for k, (_, a) in closed.items() if k[1] and k[0] not in LOCAL],
            "Locales": [{"Tipo": "Retencion" if k[1] else "Traslado", "Nombre": k[0], "TasaOCuota": text(k[3], 6), "Importe": text(a, d)}
                        for k, (_, a) in closed.items() if k[0] in LOCAL],
            "TotalImpuestosTrasladados": shown[2], "TotalImpuestosRetenidos": shown[3], "TotalLocalesTrasladados": shown[4],
            "TotalLocalesRetenidos": shown[5], "Total": text(sum(parts), d), "Diferencia": None, "Motivos": []}


def read(fields):
    qty, price, exchange, *discounts = fields[:6]
    of, mode, quota, units, element, shown, taxes = fields[6:]
    return {"qty": qty, "price": price, "exchange": exchange, "discounts": discounts, "of": int(of), "mode": mode, "quota": quota,
            "units": units, "counts": element != "K", "shown": shown != "S",
            "taxes": {int(k): (rate, int(code)) for k, rate, code in (tax.split(":") for tax in taxes.split())}}


path = pathlib.Path(__file__).with_name("resumen.txt")
written, lines = [], []
for row in path.read_text(encoding="utf-8").splitlines():
    kind, *fields = row.split("|")
    if kind == "D":
        lines, decimals = [], (int(fields[1]), int(fields[2]))
    elif kind == "L":
        lines.append(read(fields))
    elif kind == "J":
        row = "J|" + json.dumps(summary(lines, *decimals), ensure_ascii=False, separators=(",", ":"))
    written.append(row)
path.write_text("\n".join(written) + "\n", encoding="utf-8")
