# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
start_panel
