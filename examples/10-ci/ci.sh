#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# What a service for continuous integration runs: all scenarios, each with a fresh panel and a fresh client. It needs
# buttonctl and buttondriver-sim in PATH. Give the service results.xml as the results (JUnit), and keep the folder
# failures. Exit status: 0 all is well, 3 a scenario has failed.
cd "$(dirname "$0")" || exit 2
exec buttonctl test "${1:-scenarios}" --junit results.xml --output failures \
  --client 'state=$(basename "$BUTTONDRIVER_SCENARIO" .scenario); ./client.sh "$state"'
