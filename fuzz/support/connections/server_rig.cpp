// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/connections/server_rig.h"

#include "bytes/byte_view.h"
#include "bytes/view_of.h"
#include "fuzz/support/connections/system_calls.h"
#include "fuzz/support/require.h"
#include "protocol/records.h"
#include "server/client_buttondriver.h"

#include <QChildEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QTcpSocket>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <sched.h>
#include <unistd.h>

namespace buttondriver::fuzz {

namespace {

using std::chrono::nanoseconds;

/// Connections of one input: as many as the system keeps until they are accepted, at least.
constexpr std::size_t most_conversations = 32;
constexpr std::chrono::seconds longest_wait{5};
constexpr nanoseconds cost_step = std::chrono::microseconds(100);
constexpr nanoseconds most_of_a_message = 255 * cost_step;

ServerRig *current = nullptr;

std::uint32_t opcode_of(const QByteArray &message) { return view_of(message).bigEndian32(0); }

bool is_ping(const QByteArray &message) { return message.size() == 4 && opcode_of(message) == BMS_Ping::code; }

bool is_null_message(const QByteArray &message) {
  return !message.isEmpty() && opcode_of(message) == TYPE_NULL_MESSAGE::code;
}

int lowest_free_descriptor() {
  const int descriptor = ::dup(STDERR_FILENO);
  ::close(descriptor);
  return descriptor;
}

/// Bytes that are read ahead.
qint64 available(const ClientButtondriver &server_end) {
  const auto *socket = server_end.findChild<QTcpSocket *>();
  return socket ? socket->bytesAvailable() : 0;
}

} // namespace

ServerRig::ServerRig(std::size_t places) : _places(places), _lowest_descriptor(lowest_free_descriptor()) {
  current = this;
  qInstallMessageHandler(logged);
  system_calls = {0, std::numeric_limits<std::int64_t>::max(), 0, accepted};
  _connector.emplace(QString(), quint16{0}, static_cast<ButtonSetter *>(this), places);
  require(_connector->listen(), "a free port is there");
  system_calls.server_port = _connector->port();
  connect(&*_connector, &Connector::clientGone, this, [this](qint32 id) { noteGone(id); });
  _connector->installEventFilter(this);
  _children = static_cast<int>(_connector->children().size());
}

ServerRig::~ServerRig() {
  _is_finishing = true;
  _connector.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  _conversations.clear();
  require(lowest_free_descriptor() == _lowest_descriptor, "the server leaves no descriptor behind");
  current = nullptr;
}

Conversation *ServerRig::connectClient(std::uint8_t host) {
  if (_conversations.size() == most_conversations)
    return nullptr;
  _conversations.push_back(std::make_unique<Conversation>(_connector->port(), host));
  return _conversations.back().get();
}

void ServerRig::pause() {
  _is_paused = true;
  _connector->pauseReading();
}

void ServerRig::resume() {
  _is_paused = false;
  _connector->resumeReading();
}

void ServerRig::holdAll() {
  _is_everybody_held = true;
  _connector->holdAllClients();
}

void ServerRig::releaseAll() {
  _is_everybody_held = false;
  _connector->releaseAllClients();
}

void ServerRig::holdNullMessages() {
  _are_null_messages_held = true;
  _connector->holdNullMessages();
}

void ServerRig::releaseNullMessages() {
  _are_null_messages_held = false;
  _connector->releaseNullMessages();
}

void ServerRig::hold(Conversation &conversation) {
  if (!conversation.server_end)
    return;
  conversation.is_held = true;
  _connector->holdClient(conversation.server_end->clientId());
}

void ServerRig::release(Conversation &conversation) {
  if (!conversation.server_end)
    return;
  conversation.is_held = false;
  _connector->releaseClient(conversation.server_end->clientId());
}

void ServerRig::runRound() {
  std::vector<qint64> read_ahead;
  for (const auto &conversation : _conversations) {
    conversation->client.flush(_piece);
    conversation->client.acknowledge();
    const bool is_open = conversation->server_end && conversation->server_end->connected();
    if (is_open)
      acknowledge_at_once(static_cast<int>(conversation->server_end->descriptor()));
    read_ahead.push_back(is_open ? conversation->client.sent().position() + available(*conversation->server_end) : 0);
  }
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  require(_connector->clients().size() <= _places, "there are no more connections than places");
  for (std::size_t i = 0; i < _conversations.size(); ++i) {
    Conversation &conversation = *_conversations[i];
    const bool has_more = conversation.server_end && !conversation.is_held && !isEverybodyWaiting() &&
                          !_are_null_messages_held && i < read_ahead.size() &&
                          conversation.client.sent().hasFrameWithin(read_ahead[i]);
    conversation.rounds_with_more = has_more ? conversation.rounds_with_more + 1 : 0;
  }
  requireFairness();
}

/// Who always has something gets as much of the device's time as others like it.
void ServerRig::requireFairness() {
  constexpr int rounds_to_join = 3;
  constexpr nanoseconds most = limits::time_per_turn + 2 * (limits::time_per_turn + most_of_a_message);
  for (const auto &one : _conversations) {
    for (const auto &other : _conversations) {
      if (std::min(one->rounds_with_more, other->rounds_with_more) < rounds_to_join) {
        _ahead.erase({one.get(), other.get()});
        continue;
      }
      const nanoseconds now = one->used - other->used;
      const nanoseconds before = _ahead.try_emplace({one.get(), other.get()}, now).first->second;
      require(now - before <= most, "those that always have more get equal times of the device");
    }
  }
}

nanoseconds ServerRig::deviceTime(const QByteArray &message) const {
  return message.size() > 4 ? static_cast<std::uint8_t>(message[4]) * cost_step : nanoseconds{};
}

void ServerRig::process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 id) {
  const auto &ends = _connector->clients();
  const auto server_end =
      std::find_if(ends.begin(), ends.end(), [id](const ClientButtondriver *end) { return end->clientId() == id; });
  require(server_end != ends.end(), "a client's messages come under its id");
  Conversation *const conversation = find(*server_end);
  require(conversation != nullptr, "somebody has sent the messages");
  requireTurn(*conversation, messages);
  for (const QByteArray &message : messages)
    deliver(*conversation, message, *reply);
}

void ServerRig::requireTurn(const Conversation &conversation, const std::vector<QByteArray> &messages) const {
  require(messages.size() <= limits::messages_per_turn, "a turn has a bounded number of messages");
  require(!conversation.is_held || messages.empty(), "who is held gets nothing delivered");
  nanoseconds cost{};
  for (const QByteArray &message : messages) {
    require(cost < limits::time_per_turn, "a turn ends with the message that uses up its time");
    cost += std::max(deviceTime(message), limits::least_time_of_a_message);
    require(!isEverybodyWaiting() || is_ping(message), "while everybody waits, only leading pings are delivered");
    require(!is_null_message(message) || (!_are_null_messages_held && &message == &messages.back()),
            "a null message ends its turn, and waits while those are held");
  }
}

void ServerRig::deliver(Conversation &conversation, const QByteArray &message, QIODevice &reply) {
  conversation.client.sent().deliver(message);
  conversation.has_spoken = true;
  conversation.used += std::max(deviceTime(message), limits::least_time_of_a_message);
  if (is_ping(message)) {
    ++conversation.pings;
    require(reply.write(answer, answer_size) == answer_size, "an answer is always taken");
  }
  if (_is_finishing)
    return;
  if (is_null_message(message) && _holds_after_null_messages)
    hold(conversation);
  // As the panel's queue does when it is full, and the log when its reader does not follow.
  if (message.startsWith('P'))
    pause();
  else if (message.startsWith('H'))
    holdAll();
  else if (message.startsWith('N'))
    holdNullMessages();
}

Conversation *ServerRig::find(const ClientButtondriver *server_end) const {
  const auto found = std::find_if(_conversations.begin(), _conversations.end(),
                                  [&](const auto &any) { return any->server_end == server_end; });
  return found == _conversations.end() ? nullptr : found->get();
}

Conversation *ServerRig::findAccepted(int descriptor) const {
  const auto found = _by_descriptor.find(descriptor);
  return found == _by_descriptor.end() ? nullptr : found->second;
}

void ServerRig::accepted(int descriptor, std::uint16_t port) {
  // In the order in which they have connected: a port may be used again.
  const auto &all = current->_conversations;
  const auto found = std::find_if(all.begin(), all.end(),
                                  [port](const auto &any) { return !any->was_accepted && any->client.port() == port; });
  require(found != all.end(), "who is accepted has connected, and is accepted once");
  (*found)->was_accepted = true;
  current->_by_descriptor[descriptor] = found->get();
}

/// A connection gets to know its socket when it is made.
bool ServerRig::eventFilter(QObject *object, QEvent *event) {
  if (event->type() != QEvent::ChildAdded)
    return false;
  QObject *const child = static_cast<QChildEvent *>(event)->child();
  if (object == &*_connector) {
    child->installEventFilter(this);
  } else if (const auto *socket = qobject_cast<QTcpSocket *>(child)) {
    Conversation *const conversation = findAccepted(static_cast<int>(socket->socketDescriptor()));
    require(conversation && !conversation->has_place, "every connection has one socket of its own");
    conversation->server_end = static_cast<ClientButtondriver *>(object);
    conversation->has_place = true;
  }
  return false;
}

void ServerRig::logged(QtMsgType, const QMessageLogContext &, const QString &line) {
  if (current)
    current->noteLine(line.toStdString());
}

/// What the server does of its own accord, it logs.
void ServerRig::noteLine(std::string_view line) {
  if (getenv("DBG"))
    fprintf(stderr, "LOG %s\n", std::string(line).c_str());
  constexpr std::string_view before_number = "descriptor ";
  const std::size_t place = line.find(before_number);
  if (place == std::string_view::npos)
    return;
  Conversation *const conversation = findAccepted(std::atoi(line.data() + place + before_number.size()));
  const auto is_about = [&](std::string_view text) { return line.find(text) != std::string_view::npos; };
  if (is_about("gives its place")) {
    require(_connector->clients().size() == _places, "a place is given up when all are taken");
    _gives_way = true;
  } else if (is_about("frame does not arrive")) {
    conversation->client.sent().giveUpNext();
  } else if (is_about("further ones are dropped")) {
    require(conversation->pings > limits::owed_answers, "answers are dropped when many are owed");
    conversation->may_miss_answers = true;
  }
}

void ServerRig::noteGone(qint32 id) {
  const auto found = std::find_if(_conversations.begin(), _conversations.end(), [id](const auto &any) {
    return any->server_end && any->server_end->clientId() == id;
  });
  require(found != _conversations.end(), "who is gone was there, and goes once");
  Conversation &conversation = **found;
  conversation.was_evicted = _gives_way;
  conversation.server_end = nullptr;
  if (_gives_way && conversation.has_spoken)
    for (const auto &other : _conversations)
      require(!other->server_end || !other->server_end->connected() || other->has_spoken,
              "who has never sent a message gives way first");
  _gives_way = false;
}

template <class Condition> void ServerRig::runUntil(Condition is_done, const char *fact) {
  const auto end = std::chrono::steady_clock::now() + longest_wait;
  for (int rounds = 1; !is_done(); ++rounds) {
    runRound();
    if (rounds % 64 == 0) {
      // The system may need the processor to bring what was sent.
      ::sched_yield();
      require(std::chrono::steady_clock::now() < end, fact);
    }
  }
}

void ServerRig::requireAllDelivered(Conversation &conversation) const {
  if (getenv("DBG"))
    fprintf(stderr, "acc %d evicted %d state %d pings %ld answers %ld hasFrame %d\n", conversation.has_place,
            conversation.was_evicted, (int)conversation.client.state(), (long)conversation.pings,
            (long)conversation.client.answers(), conversation.client.sent().hasFrame());
  if (!conversation.has_place)
    require(_conversations.size() > _places, "who finds a place is not refused");
  if (!conversation.has_place || conversation.was_evicted)
    return;
  Client &client = conversation.client;
  if (client.state() == Client::State::read_out) {
    require(!client.sent().hasFrame(), "all that a client sent before it closed its side is delivered");
    require(client.answers() == conversation.pings ||
                (conversation.may_miss_answers && client.answers() < conversation.pings),
            "each ping is answered once");
  } else if (client.hasSystemAll()) {
    require(!client.sent().hasFrame(), "what the system has of a client that left is delivered");
  }
}

void ServerRig::finish() {
  _is_finishing = true;
  _piece = std::numeric_limits<qint64>::max();
  system_calls.refusals = 0;
  system_calls.room = std::numeric_limits<std::int64_t>::max();
  resume();
  releaseAll();
  releaseNullMessages();
  for (const auto &conversation : _conversations)
    release(*conversation);
  const auto is_through = [](const std::unique_ptr<Conversation> &conversation) {
    // A large frame may wait until others have ended.
    Client &client = conversation->client;
    return !conversation->isServed() || client.sent().isNextLarge() ||
           (!client.hasMoreToSend() && !client.sent().hasFrame());
  };
  runUntil([&] { return std::all_of(_conversations.begin(), _conversations.end(), is_through); },
           "all that was sent is delivered");
  for (const auto &conversation : _conversations)
    conversation->client.finish();
  runUntil(
      [&] {
        for (const auto &conversation : _conversations)
          conversation->client.readAnswers();
        return _connector->clients().empty() &&
               std::all_of(_conversations.begin(), _conversations.end(), [](const auto &conversation) {
                 return conversation->was_accepted && conversation->client.isGone();
               });
      },
      "all connections end");
  for (const auto &conversation : _conversations)
    requireAllDelivered(*conversation);
  require(static_cast<int>(_connector->children().size()) == _children, "no connection is left");
}

} // namespace buttondriver::fuzz
