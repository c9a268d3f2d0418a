#!/usr/bin/env bash
# Makes the certificates and keys of this folder anew: bash genera.sh (openssl 3 with its legacy provider).
# They are committed; run it only to change them, since every run draws new keys. The keys take one round of
# password derivation, so that the tests stay fast: never do that with a real key.
set -euo pipefail
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cat >"$work/ca.cnf" <<CONF
[ca]
default_ca = own
[own]
database = $work/index.txt
new_certs_dir = $work
serial = $work/serial
default_md = sha256
policy = any
unique_subject = no
[any]
commonName = supplied
CONF
: >"$work/index.txt"

# certificate <file> <key> <serial in hexadecimal> <first moment> <last moment>
certificate() {
  echo "$3" >"$work/serial"
  openssl req -new -key "$2" -subj "/CN=Sello de prueba" -out "$work/request.pem"
  openssl ca -batch -notext -selfsign -config "$work/ca.cnf" -keyfile "$2" -in "$work/request.pem" \
    -startdate "$4" -enddate "$5" -out "$work/cert.pem" 2>/dev/null
  openssl x509 -in "$work/cert.pem" -outform DER -out "$1"
}

# key <file> <form> <password> <option of pkcs8>...: of a second -iter the last one counts
key() {
  local file=$1 form=$2 password=$3
  shift 3
  openssl pkcs8 -topk8 -in "$work/own.pem" -outform "$form" -iter 1 -passout "pass:$password" "$@" -out "$file"
}

openssl genrsa -out "$work/own.pem" 2048
openssl genrsa -out "$work/other.pem" 2048

# The octets of the serial are the digits 00001000000509876543.
certificate sello.cer "$work/own.pem" 3030303031303030303030353039383736353433 20240102030405Z 20551231235959Z
# A serial with a high bit, which DER writes after a zero octet; of another key.
certificate ajeno.cer "$work/other.pem" 80314145 20491230000000Z 20491231235959Z
# A serial with a zero octet in it.
certificate cero.cer "$work/own.pem" 3132003334 20240102030405Z 20341231235959Z
openssl x509 -inform DER -in sello.cer -out sello.pem

# A taxpayer's, as the tax authority writes names, of an issuer of its own.
cat >>"$work/ca.cnf" <<CONF
[taxpayer]
name = supplied
organizationName = supplied
commonName = supplied
x500UniqueIdentifier = supplied
serialNumber = supplied
CONF
openssl req -new -x509 -newkey rsa:2048 -nodes -keyout "$work/ca.pem" -out "$work/ca_cert.pem" -days 9999 \
  -subj "/CN=AC de prueba/O=Autoridad de prueba" 2>/dev/null
openssl req -new -utf8 -key "$work/other.pem" -out "$work/request.pem" -subj "/CN=Seis palabras/name=Peña y Ñu SA\
/O=Tercer nombre/x500UniqueIdentifier=PEN010203AB1 \/ XEXX010101000/serialNumber= \/ XEXX010101HDFXXX04"
echo 3030303031303030303030353039383736353434 >"$work/serial"
openssl ca -batch -notext -utf8 -config "$work/ca.cnf" -policy taxpayer -cert "$work/ca_cert.pem" \
  -keyfile "$work/ca.pem" -in "$work/request.pem" -startdate 20240102030405Z -enddate 20551231235959Z \
  -out "$work/cert.pem" 2>/dev/null
openssl x509 -in "$work/cert.pem" -outform DER -out contribuyente.cer

# The password is "Contraseña€ Ü" in Windows-1252.
accents=$(printf 'Contrase\xf1a\x80 \xdc')
key aes256.key DER "$accents" -v2 aes-256-cbc
key des3.key DER 12345678a -v2 des3
key pbes1.key DER 12345678a -v1 PBE-MD5-DES -provider default -provider legacy
key des.key DER 12345678a -v2 des-cbc -provider default -provider legacy
key rc2.key DER 12345678a -v1 PBE-SHA1-RC2-40 -provider default -provider legacy
key rc4.key DER 12345678a -v1 PBE-SHA1-RC4-128 -provider default -provider legacy
key aes256.pem PEM "$accents" -v2 aes-256-cbc
openssl pkcs8 -topk8 -nocrypt -in "$work/own.pem" -outform DER -out claro.key
key pkcs12.key DER 12345678a -v1 PBE-SHA1-3DES
key scrypt.key DER 12345678a -v2 aes-256-cbc -scrypt -scrypt_N 2 -scrypt_r 1 -scrypt_p 1

# Keys that ask for more work than the library does: just above the limit, so that they open without it.
key pbkdf2_larga.key DER 12345678a -v2 aes-256-cbc -iter 10000001
key pkcs12_larga.key DER 12345678a -v1 PBE-SHA1-3DES -iter 10000001
key scrypt_larga.key DER 12345678a -v2 aes-256-cbc -scrypt -scrypt_N 32768 -scrypt_r 1 -scrypt_p 320

# A pair of another kind than RSA.
openssl ecparam -genkey -name prime256v1 -noout -out "$work/ec.pem"
certificate ec.cer "$work/ec.pem" 31 20240102030405Z 20341231235959Z
openssl pkcs8 -topk8 -in "$work/ec.pem" -outform DER -iter 1 -passout pass:12345678a -v2 aes-256-cbc -out ec.key

# PBKDF2 with the parameters of another scheme, and 64 letters.
{
  printf '\x30\x5e\x30\x1a\x06\x09\x2a\x86\x48\x86\xf7\x0d\x01\x05\x0c'
  printf '\x30\x0d\x04\x08''12345678''\x02\x01\x01\x04\x40'
  printf 'x%.0s' {1..64}
} >sin_cifrado.key

# Files that hold nothing of use.
head -c 300 sello.cer >cortado.cer
head -c 1000 des3.key >cortada.key
openssl rand 700 >azar.bin
: >vacio.bin
chmod 644 ./*.key ./*.pem
