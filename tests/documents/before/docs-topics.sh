# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
start_panel
mosquitto -p 1883 &
await_ports 1883
printf '[panels]\nhall = 127.0.0.1\n[groups]\ndoors = hall\n' >mqtt.ini
buttondriver-mqtt --config mqtt.ini &
cp examples/scenarios/01-first-picture.png logo.png
cp logo.png logo.bmp
