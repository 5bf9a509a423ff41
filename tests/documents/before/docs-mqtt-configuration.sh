# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
printf '[panels]\nhall = 127.0.0.1\n' >mqtt.ini
echo secret >mqtt.password
chmod 600 mqtt.password
: >plant-ca.pem
