// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/button_setter.h"
#include "fuzz/support/connections/conversation.h"
#include "server/connector.h"

#include <QObject>

#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace buttondriver::fuzz {

/// A server with clients of its own, and a sink that checks what is delivered. One at a time.
class ServerRig : public QObject, private ButtonSetter {
public:
  explicit ServerRig(std::size_t places);
  ~ServerRig() override;

  /// A client more, which is not accepted yet; null when there have been enough.
  Conversation *connectClient(std::uint8_t host);

  void pause();
  void resume();
  void holdAll();
  void releaseAll();
  void holdNullMessages();
  void releaseNullMessages();
  void hold(Conversation &conversation);
  void release(Conversation &conversation);
  /// Whether who sends a null message is held from then on.
  void holdAfterNullMessages(bool is_so) { _holds_after_null_messages = is_so; }
  /// How much of what waits a client sends between two rounds.
  void setPiece(qint64 bytes) { _piece = bytes; }

  /// One round of the event loop.
  void runRound();
  /// Lets all go on, and to their end, and checks that nothing was lost.
  void finish();

private:
  void process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 id) override;
  std::chrono::nanoseconds deviceTime(const QByteArray &message) const override;
  bool eventFilter(QObject *object, QEvent *event) override;

  static void accepted(int descriptor, std::uint16_t port);
  static void logged(QtMsgType, const QMessageLogContext &, const QString &line);

  bool isEverybodyWaiting() const { return _is_paused || _is_everybody_held; }
  Conversation *find(const ClientButtondriver *server_end) const;
  Conversation *findAccepted(int descriptor) const;
  void requireTurn(const Conversation &conversation, const std::vector<QByteArray> &messages) const;
  void deliver(Conversation &conversation, const QByteArray &message, QIODevice &reply);
  void noteLine(std::string_view line);
  void noteGone(qint32 id);
  void requireFairness();
  void requireAllDelivered(Conversation &conversation) const;
  template <class Condition> void runUntil(Condition is_done, const char *fact);

  std::vector<std::unique_ptr<Conversation>> _conversations;
  std::map<int, Conversation *> _by_descriptor;                                         // the newest one that had it
  std::map<std::pair<Conversation *, Conversation *>, std::chrono::nanoseconds> _ahead; // when both began to have more
  std::size_t _places;
  int _lowest_descriptor;
  qint64 _piece = 1 << 16;
  bool _is_paused = false;
  bool _is_everybody_held = false;
  bool _are_null_messages_held = false;
  bool _holds_after_null_messages = false;
  bool _is_finishing = false;
  bool _gives_way = false; // the next one that is gone
  std::optional<Connector> _connector;
  int _children = 0;
};

} // namespace buttondriver::fuzz
