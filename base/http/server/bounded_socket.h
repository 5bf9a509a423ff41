// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTcpSocket>

namespace buttondriver {

/// A connection that ends when its peer does not read: once more than `most_unsent` bytes wait to be taken, nothing
/// more is kept for it, whoever writes it, and the connection is cut off as soon as the event loop gets to it.
class BoundedSocket : public QTcpSocket {
  Q_OBJECT

public:
  explicit BoundedSocket(qint64 most_unsent, QObject *parent = nullptr);

protected:
  qint64 writeData(const char *bytes, qint64 size) override;

private:
  qint64 _most_unsent;
  bool _is_cut_off = false;
};

} // namespace buttondriver
