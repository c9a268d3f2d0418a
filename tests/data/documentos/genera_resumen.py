"""Writes resumen.txt: documents with the figures that an invoice of version 4.0 of the authority's standard
(Anexo 20 and its filling guide) prints, computed from the rules in fractions. python3 genera_resumen.py > resumen.txt"""
import json
import random
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


def case(claim, lines, n=6, d=2):
    print(f"D|{claim}|{n}|{d}")
    for line in lines:
        taxes = " ".join(f"{k}:{rate}:{code}" for k, (rate, code) in line["taxes"].items())
        fields = [line["qty"], line["price"], line.get("exchange", "1"), *(line.get("discounts", []) + ["0"] * 3)[:3],
                  line.get("of", 0), line.get("mode", ""), line.get("quota", "0"), line.get("units", ""),
                  "" if line.get("counts", True) else "K", "N" if line.get("shown", True) else "S", taxes]
        print("L|" + "|".join(map(str, fields)))
    print("J|" + json.dumps(summary(lines, n, d), ensure_ascii=False, separators=(",", ":")))


def chance(seed):
    rnd = random.Random(seed)
    lines = []
    for _ in range(rnd.randint(1, 4)):
        line = {"qty": text(F(rnd.randint(1, 9999999), 10**rnd.randint(0, 5)), 6), "price": text(F(rnd.randint(10**7, 10**10), 10**6), 6),
                "discounts": [str(rnd.randint(0, 300) / 10) for _ in range(rnd.randint(0, 3))], "exchange": rnd.choice(["1", "1", "16.7531"]),
                "taxes": {4: (rnd.choice(["16", "8", "0", "E"]), 0)}}
        if rnd.random() < 0.5:
            line["taxes"] |= {1: (rnd.choice(["8", "26.5", "53", "160"]), 0), 4: (line["taxes"][4][0], 1)}
            if rnd.random() < 0.5:
                line |= {"of": 1, "mode": rnd.choice("MCA"), "quota": str(rnd.randint(1, 10**6) / 1000)}
        line["taxes"] |= rnd.choice([{}, {2: ("10", 0), 3: ("10.6667", 0)}, {2: ("-1.25", 0)}, {5: ("3", 0), 6: ("0.5", 0)}])
        lines.append(line)
    n = rnd.randint(2, 6)
    case(f"random {seed}", lines, n, rnd.choice([2, 2, min(n, 3), 0]))


IVA, BOTH = {4: ("16", 0)}, {1: ("8", 0), 4: ("16", 1)}
print("# Written by genera_resumen.py. D|claim|decimals of lines|of the currency; L|quantity|price|exchange|discounts x 3|quota's tax|")
print("# mode|quota|units|element kind|shown|number:rate (E exempt):base code ...; J|what is printed, as JSON.")
case("ties round away from zero", [{"qty": "1", "price": "0.125", "taxes": IVA}, {"qty": "3", "price": "0.005", "taxes": {}}], 2)
case("a cent apart from the engine", [{"qty": "1", "price": "95.79", "taxes": BOTH}])
case("sums, not base by rate anew", [{"qty": "1", "price": "10.03", "taxes": IVA}] * 3, 2)
case("hidden and not counted", [{"qty": "1", "price": "10", "discounts": ["50"], "shown": False, "taxes": IVA},
                                {"qty": "1", "price": "10", "counts": False, "taxes": IVA}, {"qty": "1", "price": "7", "taxes": {}}])
case("discounts are each line's own", [{"qty": "1", "price": "100", "discounts": ["10", "5.5"], "taxes": IVA}, {"qty": "1", "price": "9", "discounts": ["50"], "taxes": {}}])
case("exempt is not zero", [{"qty": "1", "price": "10", "taxes": {4: (r, c)}} for r, c in (("E", 6), ("0", 0), ("E", 0))])
case("withheld by sign and by assignment", [{"qty": "1", "price": "100", "taxes": {2: ("-10", 0), 3: ("10.6667", 0), 4: ("16", 2)}}] * 2)
case("a fee with withholdings", [{"qty": "1", "price": "1234.56", "taxes": {2: ("-10", 0), 3: ("10.6667", 0), 4: ("16", 0)}}])
case("the printed rate has six decimals", [{"qty": "1000", "price": "99.99", "taxes": {3: ("10.666667", 0), 4: ("16", 0)}}])
for mode, quota in (("M", "7"), ("M", "9"), ("M", "8"), ("C", "5"), ("A", "5")):
    case(f"quota {mode} {quota}", [{"qty": "4", "price": "25", "of": 1, "mode": mode, "quota": quota, "taxes": BOTH}])
case("the quota of given units", [{"qty": "2", "price": "25", "of": 1, "mode": "C", "quota": "23.472", "units": "14.4", "taxes": BOTH}], 3)
case("a quota beyond its limits", [{"qty": "30000", "price": "1", "of": 1, "mode": "C", "quota": "10", "taxes": BOTH}])
case("quota A beside a base code that is none", [{"qty": "4", "price": "25", "of": 1, "mode": "A", "quota": "5", "taxes": {1: ("8", 8), 4: ("16", 1)}}])
case("a local tax goes by its rate", [{"qty": "2", "price": "10", "taxes": {5: (rate, 0)}} for rate in ("250", "3", "250")])
case("a large total", [{"qty": "123456", "price": "712345.67", "discounts": ["0.01"], "taxes": IVA}, {"qty": "0.000001", "price": "1000000.01", "taxes": IVA}])
for s in range(45):
    chance(s)
