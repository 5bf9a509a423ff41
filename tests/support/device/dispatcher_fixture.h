// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/button_factory.h"
#include "buttons/button_setter_impl.h"
#include "support/captured_log.h"
#include "support/device/facade_fixture.h"

#include <QBuffer>

#include <initializer_list>

namespace buttondriver::test {

/// A dispatcher with 24 buttons over a facade over a device that remembers.
class DispatcherFixture : public FacadeFixture {
protected:
  DispatcherFixture() {
    root.writeFontSize(8, 16);
    startFacade();
    dispatcher.emplace(root.paths());
    ButtonFactory().createButtons(buttons, &*fpga);
    dispatcher->setButtons(buttons);
    dispatcher->setFPGA(&*fpga);
    reply.open(QIODevice::ReadWrite);
  }

  ~DispatcherFixture() override {
    dispatcher.reset();
    for (const auto &[id, button] : buttons)
      delete button;
  }

  /// Delivers messages given in hexadecimal as one list.
  void deliver(std::initializer_list<QByteArray> hex_messages, qint32 client_id = 1000) {
    std::vector<QByteArray> messages;
    for (const QByteArray &hex : hex_messages)
      messages.push_back(QByteArray::fromHex(hex));
    dispatcher->process_messages(messages, &reply, client_id);
  }

  ButtonMap buttons;
  std::optional<ButtonSetterImpl> dispatcher;
  QBuffer reply;
};

} // namespace buttondriver::test
