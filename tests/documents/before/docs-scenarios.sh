# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
cp examples/scenarios/01-first-screen-0.png .
cp examples/scenarios/01-first-picture.png logo.png
