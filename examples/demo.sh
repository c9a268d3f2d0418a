#!/usr/bin/env bash
# Runs the example programs one after another: bash demo.sh <folder of the programs> <folder of their inputs>.
set -euo pipefail
programs=$1
data=$2

title() { printf '\n=== %s ===\n\n' "$1"; }

title 'Documento: descuentos, impuestos y totales'
"$programs/documento" "$data"
title 'Consulta: sentencia, parámetros y renglones'
"$programs/consulta" "$data"
title 'Fórmulas: comisión, margen y flete'
"$programs/formulas" "$data"
title 'Textos: direcciones y claves'
"$programs/textos" "$data"
title 'Sello: número, vigencia y llave de un certificado recién hecho'
seal=$(mktemp -d)
trap 'rm -rf "$seal"' EXIT
bash "$(dirname "$0")/genera_sello.sh" "$seal"
"$programs/sello" "$seal"
title 'Zonas horarias de México'
"$programs/zonas" "$data"
title 'Empresas del catálogo'
"$programs/empresas" "$data"
title 'Rangos de fechas'
"$programs/rangos" "$data"

# The command-line program stands beside the examples.
utilvel=$programs/../tools/utilvel/utilvel
title 'utilvel: una consulta guardada en la base de ejemplo'
sqlite3 "$seal/ventas.db" <"$data/base.sql"
"$utilvel" consulta "$data/consulta.ini" --base "sqlite3://$seal/ventas.db"
title 'utilvel: las cifras de una factura'
"$utilvel" cfdi "$data/factura.xml"
title 'utilvel: el margen de cada venta de un CSV'
# A row without its cost has no value: the program says so and ends with 5.
"$utilvel" formula '(VENTA-COSTO)/VENTA*100' --csv "$data/ventas.csv" || [ $? -eq 5 ]
title 'utilvel: el sello de arriba'
printf 'Sello de año 1\n' | "$utilvel" certificado "$seal/sello.cer" --llave "$seal/sello.key"
