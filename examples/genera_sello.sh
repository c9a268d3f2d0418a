#!/usr/bin/env bash
# Makes an example seal: bash genera_sello.sh <folder>. Writes sello.cer, a certificate in DER form whose serial
# is the twenty digits of its number, and sello.key, its private key as encrypted PKCS#8 in DER form.
set -euo pipefail
folder=$1
mkdir -p "$folder"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

number=00001000000700000017
serial=0x$(printf %s "$number" | od -An -tx1 | tr -d ' \n')
# The password of the example in the code page of the suite (Windows-1252): "Sello de año 1".
password=$(printf 'Sello de a\361o 1')

printf '[req]\ndistinguished_name = name\n[name]\n' >"$work/req.cnf"
openssl genrsa -out "$work/key.pem" 2048 2>/dev/null
openssl req -new -x509 -config "$work/req.cnf" -key "$work/key.pem" -utf8 \
  -subj '/CN=Comercializadora de Ejemplo/x500UniqueIdentifier=CEJ010203AB1 \/ XEXX010101000' \
  -set_serial "$serial" -days 1460 -outform DER -out "$folder/sello.cer"
openssl pkcs8 -topk8 -in "$work/key.pem" -v2 aes-256-cbc -passout "pass:$password" \
  -outform DER -out "$folder/sello.key"
