#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# Whether the completion in the file $1 offers what it should.
set -u
# shellcheck source=tests/support/completion/completion.sh
. "$(dirname "$0")/../../support/completion/completion.sh" buttonctl _buttonctl "$1"

# Commands, after options with and without values.
expect 'reconfig|record|replay' re
expect 'reconfig' recon
expect 'message' -n --host panel -p 3003 mes
expect 'led' --host = panel le
expect '' nonsense ''
# Arguments.
expect '0|1|2|all' text ''
expect 'on|off' led 5 o
expect 'blink' led 5 b
expect 'all' led a
expect 'on|off' status 3 ''
expect '3|30|31' status 3
expect '0|1|all' toggle ''
expect '0|1|2|3|4|5|6|7' text all ''
expect '0|1|2|3|4|5|6|7' subtext 1 ''
expect 'on|off' --dry-run toggle -p 3003 1 ''
expect '' text 0 1 ''
expect 'picture.png' image 1 pi
expect 'two words.png' upload 4 tw
expect 'picture.png' batch p
expect 'picture.png' decode p
expect '' decode picture.png p
expect 'picture.png' run folder/only.raw p
expect 'folder' test f
expect 'folder' test picture.png f
# Options.
expect '--version' --v
expect '--black-on-white' text 0 0 --b
expect '--black-on-white' text 0 0 Alarm --b
expect '' text -- --b
expect '--port|--panel' run a.scenario --p
expect '--host|--help' reconfig --h
expect 'folder' doctor --root f
expect 'folder' doctor --root = f
expect '' ping --count ''
expect 'picture.png' test --junit p
expect 'picture.png' test --client = x --simulator p
expect '0|1|2' screenshot --screen ''
expect 'auto|none|256|24bit' watch --colours ''
expect 'root' doctor --user roo
expect 'panel-left|panel-right' -H panel-
expect 'panel-right' record a --to = panel-r
# Messages and their fields.
expect 'BMS_SetLEDState|BMS_SetLEDStatusIndicator' message BMS_SetLEDSt
expect 'button_id=|state=|time=' message BMS_SetLEDState ''
expect 'state=' message BMS_SetLEDState button_id = 5 st
expect '' message BMS_SetLEDState button_id = ''
expect 'screen_id=|line_id=|flag=|text=' message BMS_TFTTextLine ''
expect 'picture.png' message BMS_DrawTFTImage _screen_id = 0 image = p
expect '' message BMS_Ping ''
cd folder
expect 'only.raw' message BMS_UploadImage image =
# shellcheck disable=SC2154 # completion.sh sets it
exit $failures
