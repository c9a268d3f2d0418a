#!/usr/bin/env bash
# Runs the example programs one after another: bash demo.sh <folder of the programs> <folder of their inputs>.
set -euo pipefail
programs=$1
data=$2
