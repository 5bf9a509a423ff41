# SPDX-License-Identifier: Apache-2.0
# Installs only what a panel needs of BUILD below TREE, with the prefix /usr, and looks at what is there. TREE/here gets
# it once more, with the prefix that it really has.
file(REMOVE_RECURSE "${TREE}")
function(install_below folder prefix)
  set(ENV{DESTDIR} "${folder}")
  execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${prefix}" --component daemon OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()
install_below("" "${TREE}/here")
install_below("${TREE}" /usr)

set(expected
  bin/buttondriver
  lib/systemd/system/buttondriver.service
  lib/systemd/system/buttondriver.service.d/device.conf
  lib/sysusers.d/buttondriver.conf
  lib/tmpfiles.d/buttondriver.conf
  lib/udev/rules.d/60-buttondriver.rules
  libexec/buttondriver/ping-check
  share/doc/buttondriver/examples/buttondriver.nft
  share/doc/buttondriver/examples/buttonlevel
  share/doc/buttondriver/examples/journal.conf
  share/doc/buttondriver/examples/launcher.cfg
  share/doc/buttondriver/examples/network.conf
  share/doc/buttondriver/examples/port.conf
  share/man/man5/buttonlevel.5
  share/man/man5/launcher.cfg.5
  share/man/man8/buttondriver.8)
file(GLOB_RECURSE files RELATIVE "${TREE}/usr" "${TREE}/usr/*")
if(NOT files STREQUAL expected)
  message(SEND_ERROR "installed: ${files}")
endif()

# The port stands in one line, which both programs read.
file(STRINGS "${TREE}/usr/lib/systemd/system/buttondriver.service" lines REGEX "^Exec|^Environment|3003")
if(NOT lines STREQUAL "Environment=BUTTONDRIVER_PORT=3003;ExecStart=/usr/bin/buttondriver no-map-file '' \
\${BUTTONDRIVER_PORT};ExecStartPost=/usr/libexec/buttondriver/ping-check 127.0.0.1 \${BUTTONDRIVER_PORT} 20")
  message(SEND_ERROR "the unit says: ${lines}")
endif()

# The group is one.
file(READ "${TREE}/usr/lib/sysusers.d/buttondriver.conf" accounts)
file(READ "${TREE}/usr/lib/systemd/system/buttondriver.service" unit)
file(READ "${TREE}/usr/lib/udev/rules.d/60-buttondriver.rules" rules)
if(NOT accounts MATCHES "\ng fpga-reg " OR NOT unit MATCHES "\nSupplementaryGroups=fpga-reg\n"
    OR NOT rules MATCHES "\nKERNEL==\"fpga-reg\", GROUP=\"fpga-reg\", MODE=\"0660\", TAG\\+=\"systemd\"\n")
  message(SEND_ERROR "account, unit and rule do not have the same group")
endif()
