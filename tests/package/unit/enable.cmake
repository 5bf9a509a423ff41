# SPDX-License-Identifier: Apache-2.0
# Enables the unit of TREE and looks at what ties it to the device.
execute_process(COMMAND "${SYSTEMCTL}" "--root=${TREE}" enable buttondriver.service ERROR_VARIABLE words
  COMMAND_ERROR_IS_FATAL ANY)
# Not by CMake's own means, which take a backslash for the mark between folders.
execute_process(COMMAND ls "${TREE}/etc/systemd/system" OUTPUT_VARIABLE links COMMAND_ERROR_IS_FATAL ANY)
# What systemd makes of /dev/fpga-reg: "-" is for "/", so that the other one is written as its number.
set(device "dev-fpga\\x2dreg.device")
if(NOT links STREQUAL "${device}.wants\n")
  message(SEND_ERROR "enabled by: ${links}")
endif()
file(STRINGS "${TREE}/usr/lib/systemd/system/buttondriver.service.d/device.conf" lines REGEX "^[A-Z]")
if(NOT lines STREQUAL "Requisite=${device};After=${device};StopPropagatedFrom=${device}")
  message(SEND_ERROR "tied by: ${lines}")
endif()
