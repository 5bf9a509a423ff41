// SPDX-License-Identifier: Apache-2.0
#include "event_client_fixture.h"

#include <array>
#include <vector>

namespace buttondriver::test {
namespace {

using Request = std::function<int()>;

constexpr std::uint32_t all = BTC_ALL_BUTTONS;

Request colour(std::uint32_t id, int v1, int v2, int v3) {
  return [=] {
    return btc_set_colour(id, static_cast<std::uint8_t>(v1), static_cast<std::uint8_t>(v2),
                          static_cast<std::uint8_t>(v3));
  };
}

/// Values in the order of the arguments: three, a time, three, a time.
Request pair(std::uint32_t id, const std::array<std::uint8_t, 8> &v) {
  return [=] { return btc_set_colour_pair(id, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]); };
}

Request text(std::uint32_t id, const std::string &characters, std::uint32_t value) {
  return [=] { return btc_set_text(id, characters.c_str(), value); };
}

Request image(std::uint32_t id, std::int32_t image_id) {
  return [=] { return btc_set_image(id, image_id); };
}

Request upload(std::int32_t image_id, std::int32_t size = 120) {
  return [=] { return btc_upload_image(image_id, std::string(120, 'i').data(), size); };
}

struct Step {
  Request request;
  int sent; ///< 1 or 0, what the request returns
};

struct Rule {
  const char *name;
  std::vector<Step> steps;
};

/// Messages in a stream of frames; -1 when the last frame is not whole.
int count_frames(const std::string &stream) {
  int count = 0;
  std::size_t at = 0;
  for (; at + 4 <= stream.size(); ++count) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < 4; ++i)
      length = length << 8 | static_cast<unsigned char>(stream[at + i]);
    at += 4 + length;
  }
  return at == stream.size() ? count : -1;
}

class EventClientCacheTest : public EventClientTest {
protected:
  /// Each rule starts on a connection of its own, with nothing cached.
  void expect_rules(const std::vector<Rule> &rules) {
    for (const Rule &rule : rules) {
      SCOPED_TRACE(rule.name);
      ScriptedPeer peer;
      start_anew();
      meet(peer);
      int expected = 0;
      for (std::size_t i = 0; i < rule.steps.size(); ++i) {
        EXPECT_EQ(rule.steps[i].request(), rule.steps[i].sent) << "step " << i + 1;
        expected += rule.steps[i].sent;
      }
      reset_event_client();
      EXPECT_EQ(count_frames(peer.read_to_end()), expected);
    }
  }
};

TEST_F(EventClientCacheTest, colours_follow_their_rules) {
  expect_rules({
      {"same colour twice", {{colour(5, 1, 2, 3), 1}, {colour(5, 1, 2, 3), 0}}},
      {"any of three values differs",
       {{colour(5, 1, 2, 3), 1}, {colour(5, 9, 2, 3), 1}, {colour(5, 9, 9, 3), 1}, {colour(5, 9, 9, 9), 1}}},
      {"black on a button without a colour", {{colour(5, 0, 0, 0), 1}, {colour(5, 0, 0, 0), 0}}},
      {"another button", {{colour(5, 1, 2, 3), 1}, {colour(6, 1, 2, 3), 1}}},
      {"all buttons are always sent", {{colour(all, 1, 2, 3), 1}, {colour(all, 1, 2, 3), 1}}},
      {"all buttons, then one of them",
       {{colour(all, 1, 2, 3), 1}, {colour(0, 1, 2, 3), 0}, {colour(299, 1, 2, 3), 0}, {colour(5, 1, 2, 4), 1}}},
      {"a pair with a second time is not this colour",
       {{pair(5, {1, 2, 3, 10, 4, 5, 6, 7}), 1}, {colour(5, 1, 2, 3), 1}, {colour(5, 1, 2, 3), 0}}},
      {"a pair without a second time is", {{pair(5, {1, 2, 3, 10, 4, 5, 6, 0}), 1}, {colour(5, 1, 2, 3), 0}}},
      {"a colour clears the second time",
       {{pair(5, {1, 2, 3, 10, 4, 5, 6, 7}), 1}, {colour(5, 1, 2, 3), 1}, {pair(5, {1, 2, 3, 10, 4, 5, 6, 7}), 1}}},
      {"a colour leaves the first time and the second colour",
       {{pair(5, {1, 2, 3, 10, 4, 5, 6, 0}), 1}, {colour(5, 9, 8, 7), 1}, {pair(5, {9, 8, 7, 10, 4, 5, 6, 0}), 0}}},
      {"a colour of all clears every second time",
       {{pair(5, {1, 2, 3, 10, 4, 5, 6, 7}), 1}, {colour(all, 1, 2, 3), 1}, {colour(5, 1, 2, 3), 0}}},
  });
}

TEST_F(EventClientCacheTest, colour_pairs_follow_their_rules) {
  const Request usual = pair(5, {1, 2, 3, 4, 5, 6, 7, 8});
  std::vector<Step> one_value_differs;
  for (std::size_t i = 0; i < 8; ++i) {
    std::array<std::uint8_t, 8> values{1, 2, 3, 4, 5, 6, 7, 8};
    values[i] = 0xFF;
    one_value_differs.push_back({usual, 1});
    one_value_differs.push_back({pair(5, values), 1});
  }
  expect_rules({
      {"same pair twice", {{usual, 1}, {usual, 0}}},
      {"any of eight values differs", one_value_differs},
      {"zeros on a button without a colour", {{pair(5, {}), 1}, {pair(5, {}), 0}}},
      {"all buttons are always sent",
       {{pair(all, {1, 2, 3, 4, 5, 6, 7, 8}), 1}, {pair(all, {1, 2, 3, 4, 5, 6, 7, 8}), 1}}},
      {"a pair of all does not give a button its first colour",
       {{pair(all, {1, 2, 3, 4, 5, 6, 7, 8}), 1}, {usual, 1}, {usual, 0}}},
      {"a pair of all changes a button that has a colour",
       {{colour(5, 9, 9, 9), 1}, {pair(all, {1, 2, 3, 4, 5, 6, 7, 8}), 1}, {usual, 0}}},
      {"a pair of all does not make a colour known",
       {{pair(all, {1, 2, 3, 0, 0, 0, 0, 0}), 1}, {colour(5, 1, 2, 3), 1}}},
  });
}

TEST_F(EventClientCacheTest, texts_follow_their_rules) {
  const std::string hundred = std::string(99, 'a') + "b";
  expect_rules({
      {"same text twice", {{text(5, "a", 1), 1}, {text(5, "a", 1), 0}}},
      {"text or value differs",
       {{text(5, "a", 1), 1}, {text(5, "a", 2), 1}, {text(5, "ab", 2), 1}, {text(5, "a", 2), 1}}},
      {"no text and value 0 is what a fresh button has", {{text(5, "", 0), 0}, {text(5, "", 1), 1}}},
      {"100 characters are compared whole",
       {{text(5, hundred, 1), 1}, {text(5, hundred, 1), 0}, {text(5, std::string(100, 'a'), 1), 1}}},
      {"101 characters are always sent", {{text(5, hundred + "c", 1), 1}, {text(5, hundred + "c", 1), 1}}},
      {"101 characters count as their first 100",
       {{text(5, hundred + "c", 1), 1}, {text(5, hundred, 1), 0}, {text(5, hundred + "d", 1), 1}}},
      {"all buttons are always sent", {{text(all, "a", 1), 1}, {text(all, "a", 1), 1}}},
      {"a text of all is noted, its value is not",
       {{text(5, "a", 9), 1},
        {text(all, "b", 4), 1},
        {text(5, "b", 9), 0},
        {text(5, "b", 4), 1},
        {text(6, "b", 0), 0}}},
      {"a text makes the image unknown", {{image(5, 7), 1}, {text(5, "a", 1), 1}, {image(5, 7), 1}}},
      {"a skipped text does not", {{text(5, "a", 1), 1}, {image(5, 7), 1}, {text(5, "a", 1), 0}, {image(5, 7), 0}}},
      {"a text of all makes every image unknown",
       {{image(0, 7), 1}, {image(299, 8), 1}, {text(all, "a", 1), 1}, {image(0, 7), 1}, {image(299, 8), 1}}},
  });
}

TEST_F(EventClientCacheTest, images_follow_their_rules) {
  expect_rules({
      {"same image twice", {{image(5, 7), 1}, {image(5, 7), 0}}},
      {"another image", {{image(5, 7), 1}, {image(5, 8), 1}, {image(5, 7), 1}}},
      {"image 0 on a fresh button", {{image(5, 0), 1}, {image(5, 0), 0}}},
      {"image -1 is what a fresh button has", {{image(5, -1), 0}}},
      {"all buttons are always sent", {{image(all, 7), 1}, {image(all, 7), 1}}},
      {"all buttons, then one of them", {{image(all, 7), 1}, {image(0, 7), 0}, {image(299, 7), 0}, {image(5, 8), 1}}},
      {"an image of all forgets the texts but not their values",
       {{text(5, "a", 9), 1}, {image(all, 7), 1}, {text(5, "", 9), 0}, {text(5, "a", 9), 1}}},
      {"an image of one button keeps its text", {{text(5, "a", 9), 1}, {image(5, 7), 1}, {text(5, "a", 9), 0}}},
      {"an upload makes its image unknown on every button",
       {{image(3, 7), 1}, {image(299, 7), 1}, {upload(7), 1}, {image(3, 7), 1}, {image(3, 7), 0}, {image(299, 7), 1}}},
      {"an upload of another image does not", {{image(3, 7), 1}, {upload(8), 1}, {image(3, 7), 0}}},
      {"an upload of a wrong size does", {{image(3, 7), 1}, {upload(7, 119), 0}, {image(3, 7), 1}}},
      {"uploads are always sent", {{upload(7), 1}, {upload(7), 1}}},
  });
}

TEST_F(EventClientCacheTest, ids_from_300_on_are_always_sent) {
  for (const std::uint32_t id : {uncached_button, std::uint32_t{301}, std::uint32_t{0xFFFFFFFE}}) {
    SCOPED_TRACE(id);
    expect_rules({
        {"colour", {{colour(id, 1, 2, 3), 1}, {colour(id, 1, 2, 3), 1}}},
        {"pair", {{pair(id, {1, 2}), 1}, {pair(id, {1, 2}), 1}}},
        {"text", {{text(id, "", 0), 1}, {text(id, "", 0), 1}}},
        {"image", {{image(id, -1), 1}, {image(id, -1), 1}}},
    });
  }
}

TEST_F(EventClientCacheTest, requests_without_a_button_are_always_sent) {
  const Request value = [] { return btc_set_value(1, 2); };
  expect_rules({
      {"value", {{value, 1}, {value, 1}}},
      {"parameter off", {{btc_parameter_off, 1}, {btc_parameter_off, 1}}},
      {"verbose on", {{btc_verbose_on, 1}, {btc_verbose_on, 1}}},
      {"reconfig", {{btc_reconfig, 1}, {btc_reconfig, 1}}},
  });
}

TEST_F(EventClientCacheTest, request_that_connects_is_sent_once_more_before_it_is_skipped) {
  ScriptedPeer peer(ScriptedPeer::Door::closed);
  ASSERT_EQ(btc_set_server(local_host, peer.port()), 0);
  peer.open_door();
  advance_ms(1000);
  EXPECT_EQ(btc_set_image(3, 7), 1);
  EXPECT_EQ(btc_set_image(3, 7), 1);
  EXPECT_EQ(btc_set_image(3, 7), 0);
}

TEST_F(EventClientCacheTest, failed_request_is_skipped_until_another_message_has_connected) {
  ScriptedPeer peer(ScriptedPeer::Door::closed);
  ASSERT_EQ(btc_set_server(local_host, peer.port()), 0);
  EXPECT_EQ(btc_set_colour(5, 1, 2, 3), 0);
  peer.open_door();
  advance_ms(1000);
  EXPECT_EQ(btc_set_colour(5, 1, 2, 3), 0);
  EXPECT_EQ(connects(), 1);
  EXPECT_EQ(btc_reconfig(), 1);
  EXPECT_EQ(btc_set_colour(5, 1, 2, 3), 1);
  EXPECT_EQ(btc_set_colour(5, 1, 2, 3), 0);
}

TEST_F(EventClientCacheTest, image_0_is_not_skipped_before_the_first_connection) {
  ScriptedPeer peer(ScriptedPeer::Door::closed);
  ASSERT_EQ(btc_set_server(local_host, peer.port()), 0);
  peer.open_door();
  advance_ms(1000);
  EXPECT_EQ(btc_set_image(5, 0), 1);
}

} // namespace
} // namespace buttondriver::test
