// SPDX-License-Identifier: Apache-2.0
// Writes inputs for the fuzz targets to start from, one folder a target:
//
//   write_fuzz_seeds FOLDER
//
// A target without seeds starts from its corpus alone.
#include "bridge/topics/topic_table.h"
#include "fuzz/seeds/seed.h"
#include "fuzz/support/connections/steps.h"
#include "protocol/catalogue.h"
#include "protocol/framing.h"
#include "tools/reference/contents/worked_examples.h"

#include <cstdio>
#include <exception>
#include <iterator>
#include <vector>

#include <zlib.h>

namespace buttondriver::fuzz {

namespace {

namespace filesystem = std::filesystem;

std::string big_endian(std::uint32_t value) { return Seed().number(value).input(); }

std::string little_endian(std::uint32_t value) {
  const std::string bytes = big_endian(value);
  return {bytes.rbegin(), bytes.rend()};
}

std::string read_file(const filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string unpacked(const filesystem::path &path) {
  std::string content;
  char place[4096];
  const gzFile file = gzopen(path.c_str(), "rb");
  int count = 0;
  while (file && (count = gzread(file, place, sizeof place)) > 0)
    content.append(place, static_cast<std::size_t>(count));
  if (!file || gzclose(file) != Z_OK)
    throw std::runtime_error("cannot read " + path.string());
  return content;
}

std::string bmp(std::uint32_t width, std::uint32_t height, const std::string &pixels, char depth = 24) {
  return "BM" + little_endian(static_cast<std::uint32_t>(54 + pixels.size())) + little_endian(0) + little_endian(54) +
         little_endian(40) + little_endian(width) + little_endian(height) + std::string("\1\0", 2) + depth + '\0' +
         little_endian(0) + little_endian(static_cast<std::uint32_t>(pixels.size())) + little_endian(2835) +
         little_endian(2835) + little_endian(0) + little_endian(0) + pixels;
}

/// A frame with every number of its head 1, and with two of what the message counts.
std::string frame(const MessageType &type) {
  constexpr std::uint32_t counted = 2;
  std::string message = big_endian(type.opcode);
  for (std::size_t i = 1; i < type.fieldCount(); ++i) {
    const Field &field = type.fields[i];
    const bool is_count = type.counted != Counted::nothing && i + 1 == type.fieldCount();
    if (field.kind == FieldKind::bytes)
      message.append(field.width, '\x55');
    else if (field.width == 1)
      message += '\1';
    else
      message += big_endian(is_count ? counted : 1);
  }
  if (type.counted == Counted::text_bytes)
    message.append("A", 2);
  else
    message.append(type.countedWidth() * counted, '\0');
  const auto prefix = frame_prefix(static_cast<std::uint32_t>(message.size()));
  return std::string(prefix.begin(), prefix.end()) + message;
}

void write_commands(const filesystem::path &parent) {
  const SeedFolder folder(parent, "commands");
  const auto stream = [](const std::string &bytes) {
    return Seed(bytes).number(std::uint8_t{0}).number(std::uint8_t{3}).number(std::int32_t{1000});
  };
  std::string all;
  for (const MessageType &type : catalogue) {
    folder.write(type.name, stream(frame(type)));
    all += frame(type);
    const documents::WorkedExample *example = documents::find_worked_example(type.opcode);
    if (!example)
      continue;
    const documents::HexBytes bytes(example->frame);
    const std::string text(reinterpret_cast<const char *>(bytes.view().data()), bytes.view().size());
    folder.write(std::string(type.name) + "-example", stream(text));
    all += text;
  }
  folder.write("all-at-once", stream(all));
  folder.write("all-in-pieces", Seed(all)
                                    .number(std::uint8_t{2})
                                    .number(std::uint8_t{5})
                                    .number(std::uint8_t{64})
                                    .number(std::uint8_t{40})
                                    .number(std::int32_t{2000}));
}

using namespace steps;

/// A step of one of the clients, with the bytes after it.
std::string step(Step kind, int client = 0, const std::string &more = {}) {
  return std::string(1, static_cast<char>(kind | client << 5)) + more;
}

void write_connections(const filesystem::path &parent) {
  const SeedFolder folder(parent, "connections");
  const std::string host("\0", 1);
  const std::string now("\1", 1);
  const std::string some_rounds = step(rounds, 0, "\xf");
  const std::string two = step(connect, 0, host) + step(connect, 1, host);
  const std::string three = two + step(connect, 2, host);
  const auto script = [&](const char *name, const std::string &steps, char flags = 0, char places = 5) {
    folder.write(name, Seed(std::string{places, flags} + steps));
  };
  const auto repeated = [](const std::string &text, int count) {
    std::string all;
    while (count-- > 0)
      all += text;
    return all;
  };
  const std::string costly = step(work, 0, "\x3f\xff" + now);
  const std::string cheap = step(work, 1, std::string("\x3f\0", 2) + now);
  script("equal-times", two + repeated(costly + cheap, 3) + repeated(some_rounds, 6));
  const std::string work_and_pings = step(work, 0, "\x14\1" + now) + step(pings, 1, "\x1e" + now);
  script("pauses", two + work_and_pings + step(round) + step(pause) + some_rounds + step(pings, 0, "\5" + now) +
                       step(finish, 1) + some_rounds + step(resume) + step(round) + step(hold_all) + some_rounds);
  script("pause-within-a-turn", two + step(frame_of_any_length, 0, "\1P" + now) + work_and_pings + some_rounds +
                                    step(reset, 1) + some_rounds + step(resume) + step(round));
  script("ends-in-a-pause", three + step(pause) + work_and_pings + step(pings, 2, "\x1e" + now) + some_rounds +
                                step(close, 0) + step(reset, 2) + step(round) + step(finish, 1) + some_rounds);
  script("null-messages",
         two + step(null_messages, 0, "\3" + now) + work_and_pings + some_rounds + step(hold_null_messages) +
             step(null_messages, 1, "\2" + now) + step(release, 0) + some_rounds + step(release_null_messages),
         2);
  script("holds", two + step(round) + step(hold, 0) + work_and_pings + some_rounds + step(finish, 0) + some_rounds +
                      step(release, 0) + some_rounds + step(read_answers, 1));
  const std::string large =
      step(large_frame, 0, "\xf0" + now) + step(large_frame, 1, "\xe0" + now) + step(large_frame, 2, "\xd0" + now);
  for (const char flags : {'\0', '\1'})
    script(flags ? "large-frames-of-patient-ones" : "large-frames",
           three + step(piece, 0, "\x20") + large + some_rounds + work_and_pings + some_rounds + step(reset, 0) +
               step(piece, 0, "\xff") + some_rounds,
           flags);
  script("too-long-and-wrapping", two + step(frame_that_is_too_long, 0, "\1\7" + now) + work_and_pings + step(round) +
                                      step(length_that_wraps, 1, "\2\3abc" + now) + some_rounds + step(finish, 0));
  script("bytes", two + step(any_bytes, 0, std::string("\x0a\0\0\0\4\0\0\0\x0c\0\0", 11) + now) + some_rounds +
                      step(empty_frames, 1, "\x8" + now) + step(finish, 0) + some_rounds);
  script("no-room-for-answers", two + step(room, 0, "\x0c") + step(pings, 0, "\x3f" + now) +
                                    step(pings, 1, "\x0a" + now) + some_rounds + step(finish, 0) + some_rounds +
                                    step(room, 0, "\xff") + some_rounds + step(read_answers, 0) + step(close, 1));
  script("few-places",
         two + step(pings, 0, "\1" + now) + step(pings, 1, "\1" + now) + some_rounds + step(connect, 2, "\1") +
             step(connect, 3, host) + some_rounds + step(pings, 2, "\2" + now) + some_rounds + step(connect, 4, "\2") +
             step(pings, 4, "\x9" + now) + some_rounds,
         0, 1);
  script("before-they-are-accepted", two + work_and_pings + step(reset, 0) + step(finish, 1) + step(refusals, 0, "\2") +
                                         some_rounds + step(connect, 0, host) + some_rounds);
  script("server-ends-first", three + work_and_pings + large + some_rounds + step(finish, 1), 4);
}

void write_bmp(const filesystem::path &parent) {
  const SeedFolder folder(parent, "bmp");
  const auto place = [](const std::string &file) {
    return Seed(file).number(std::int8_t{1}).number(std::int32_t{3}).number(std::int32_t{4}).number(std::uint16_t{3});
  };
  const std::string four_pixels("\xff\0\0\xff\xff\xff\0\0\0\0\xff\0\xff\0\0\0", 16);
  folder.write("bottom-up", place(bmp(2, 2, four_pixels)));
  folder.write("top-down", place(bmp(2, 0xFFFFFFFE, four_pixels)));
  folder.write("padded-by-one", place(bmp(1, 2, std::string(8, '\x33'))));
  folder.write("cut-short", place(bmp(100, 3, std::string(10, '\x33'))));
  folder.write("more-than-a-transfer", place(bmp(300, 300, "")));
  folder.write("largest", place(bmp(8192, 8192, "")));
  folder.write("without-columns", place(bmp(0, 0x7FFFFFFF, "")));
  folder.write("of-8-bits", place(bmp(2, 2, four_pixels, 8)));
  folder.write("on-all-screens", Seed(bmp(2, 2, four_pixels))
                                     .number(std::int8_t{-1})
                                     .number(std::int32_t{-5})
                                     .number(std::int32_t{126})
                                     .number(std::uint16_t{0xFFFF}));
}

void write_text(const filesystem::path &parent) {
  const SeedFolder folder(parent, "text");
  const auto text_in = [](const std::string &font, std::int32_t offset, std::int32_t characters) {
    return Seed("AB .W")
        .bytes(font)
        .number(std::uint16_t{5})
        .number(std::int8_t{0})
        .number(std::int32_t{1})
        .number(offset)
        .number(characters)
        .number(0xFF0000U)
        .number(0x00FF00U);
  };
  for (const auto &entry : filesystem::directory_iterator(BUTTONDRIVER_TEST_FONTS)) {
    if (entry.path().extension() != ".gz")
      continue;
    const std::string name = entry.path().stem().string();
    folder.write(name, text_in(unpacked(entry.path()), 2, 7));
    folder.write(name + ".gz", text_in(read_file(entry.path()), -1, 2));
    folder.write(name + "-for-ever", text_in(unpacked(entry.path()), 0, 0x7FFFFFFF));
    folder.write(name + "-largest", text_in(unpacked(entry.path()), 0, 1 << 18));
  }
  for (const auto &entry : filesystem::directory_iterator(FUZZ_FONT_SOURCES))
    if (entry.path().extension() == ".bdf")
      folder.write(entry.path().filename().string(), text_in(read_file(entry.path()), 0, 3));
  folder.write("no-font", text_in("no font at all", 0, 3));
}

void write_level_file(const filesystem::path &parent) {
  const SeedFolder folder(parent, "level_file");
  const char *const files[] = {"lcd 100\nscr 100\n", "led 5\nlcd 50\nscr 70", "scr\nlcd\n\n", "lcd 1 2\nLCD 3\n# x\n",
                               "scr -1\r\nled 99999999999\nlcd 0x10\n"};
  int number = 0;
  for (const char *file : files)
    folder.write("file-" + std::to_string(++number), Seed(file).number(std::uint8_t{0}));
  folder.write("long-line", Seed("lcd " + std::string(300, '7') + "\nscr 3\n").number(std::uint8_t{1}));
}

void write_launcher_configuration(const filesystem::path &parent) {
  const SeedFolder folder(parent, "launcher_configuration");
  const char *const files[] = {
      "[font]\nwidth=8\nheight=16\n",
      "[other]\ncolour=blue\n[font]\nwidth = 5 ; narrow\nheight=\"4\"\n",
      "[font]\nwidth=33, 2\nheight=\\x32\n",
      "[font]\nwidth=@Invalid()\nheight=@ByteArray(16)\n",
      "[font]\nwidth=@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x5)\nheight=@Size(8 16)\n",
      "[font]\nwidth=@Rect(1 2 3 4)\nheight=@Point(1 2)\n",
      "[font]\nwidth=-8\nheight=99999999999\n",
      "font/width=8\n[General]\nfont\\height=16\n[%General]\n[FONT]\n%77idth=8\n",
      "[font\nwidth\n=\n",
  };
  int number = 0;
  for (const char *file : files)
    folder.write("file-" + std::to_string(++number), Seed(file));
}

void write_event_client(const filesystem::path &parent) {
  const SeedFolder folder(parent, "event_client");
  // Each call on its own, with ones as arguments and with zeros, on a system and a peer that do as they are asked.
  for (std::uint8_t call = 0; call < 12; ++call) {
    Seed zeros(std::string(60, '\0'));
    folder.write("call-" + std::to_string(call), zeros.number(call));
    folder.write("call-" + std::to_string(call) + "-with-arguments", Seed(std::string(120, '\1')).number(call));
  }
}

void write_recording(const filesystem::path &parent) {
  const SeedFolder folder(parent, "recording");
  const std::string title = "buttonctl recording 1\n";
  std::string all = title;
  int time = 0;
  for (const MessageType &type : catalogue) {
    std::string digits;
    for (const char byte : frame(type)) {
      constexpr char hexadecimal[] = "0123456789abcdef";
      digits += hexadecimal[static_cast<std::uint8_t>(byte) >> 4];
      digits += hexadecimal[static_cast<std::uint8_t>(byte) & 0xF];
    }
    time += 1000;
    all += std::to_string(time) + " " + std::to_string(1 + type.opcode % 3) + " " + digits + "\n";
  }
  folder.write("all", Seed(all));
  const char *const lines[] = {"",
                               "0 1 000000040000000c\n",
                               "# x\n\n 5\t2  00000000 \r\n",
                               "9 1 00000000\n8 1 00000000\n",
                               "1000000000000000 2147483647 00000001FF",
                               "1 1 0000000400\n1 1 00000000\n"};
  int number = 0;
  for (const char *line : lines)
    folder.write("lines-" + std::to_string(++number), Seed(title + line));
  folder.write("of-another-version", Seed("buttonctl recording 2\n0 1 00000000\n"));
}

void write_scenario(const filesystem::path &parent) {
  const SeedFolder folder(parent, "scenario");
  const char *const files[] = {
      "blackout\nblackout all\ntext 0 1 'Start me' --black-on-white\nsubtext 1 2 3 \"ab\" --colour FF0000 --count 4\n",
      "image all good.png --at 10,20 --crop\nimage 0 bad.png\n",
      "led all off\nled 5 on\nled 4 blink 500\nstatus 31 on\ntoggle 1 off\nping --count 2\nreconfig\nnull 3\n",
      "expect-led 31 on\nexpect-led 4 blinking 500 --timeout 20\nexpect-led 0 blinking\nexpect-status 3 off\n",
      "expect-toggle 1 on\nexpect-intensity 63\nexpect-text 2 127 'a b' # x\nexpect-text 0 0 \\#\n",
      "expect-screen 2 good.png\nexpect-screen 1 none.png\nexpect-screen 0 bad.png\n",
      "raw 0000000c\nraw --unframed 00 00 00 0c\nupload 40 good.png --invert\n",
      "expect-led -- -1 on\n",
      "text 0 0 'open\n",
      "text 0 0 x\\",
      "expect-nothing\n"};
  int number = 0;
  for (const char *file : files)
    folder.write("file-" + std::to_string(++number), Seed(file).number(std::uint8_t{0}));
}

void write_bridge_configuration(const filesystem::path &parent) {
  const SeedFolder folder(parent, "bridge_configuration");
  const char *const files[] = {
      "[bridge]\nname = a\nprefix = b/c\nshare = 2/3\nstatistics = 0\nmetrics_port = 1\ndiscovery = on\n[panels]\na = "
      "b\n",
      "[panels]\na = b\n[bridge]\ndiscovery_prefix = d\n[broker]\nhost = e\nport = 1884\nprotocol = 3.1.1\nkeep_alive "
      "= 60\n",
      "[broker]\nuser = f\npassword_file = secret\ntls = on\ncert_file = secret\nkey_file = secret\n[panels]\na = b\n",
      "[broker]\nca_file = pipe\npassword_file = absent\n",
      "# comment\n; comment\r\n\n[panels]\na = b\nc = d:1\ne = [::1]\nf = [::1]:2\n[groups]\ng = a, c\nh = e,f\n",
      "[panels]\ngroup = x\na b = y\nc = ::1\nc = d:0\n[groups]\nz = c, c, e\n",
      "\xEF\xBB\xBF[panels\nx\n= 1\n[]\n[ panels ]\na =\n[other]\n[panels]\n"};
  int number = 0;
  for (const char *file : files)
    folder.write("file-" + std::to_string(++number), Seed(file));
}

void write_topics(const filesystem::path &parent) {
  const SeedFolder folder(parent, "topics");
  int number = 0;
  const auto publish = [&](const std::string &topic, const std::string &payload) {
    folder.write(std::to_string(++number), Seed(static_cast<char>(topic.size()) + topic + payload));
  };
  // After the BMPs, a PNG and a GIF of one pixel.
  const std::string pictures[] = {
      bmp(2, 2, std::string("\xff\0\0\xff\xff\xff\0\0\0\0\xff\0\xff\0\0\0", 16)),
      bmp(128, 128, std::string(49152, '\x33')),
      bmp(129, 1, std::string(388, '\x33')),
      bmp(2, 1, std::string(8, '\x33'), 32),
      std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\2\0\0\0\0\0\0\0"
                  "\0\0\0\x0bIDAT\x78\1\1\4\0\xfb\xff\0\1\2\3\0\0\0\0\0\0\0\0IEND\0\0\0\0",
                  68),
      std::string("GIF89a\1\0\1\0\x80\0\0\xff\0\0\0\xff\0,\0\0\0\0\1\0\1\0\0\2\2\x44\1\0;", 35)};
  for (const bridge::TopicRow &row : bridge::topic_table) {
    publish(row.example, row.payload);
    for (const std::string &picture : pictures)
      if (row.form == bridge::PayloadForm::picture)
        publish(row.example, picture);
  }
  publish("led/all", "on");
  publish("status/31", "off");
  publish("leds/5", "on");
  publish("screen/all/lines/2", "on");
  publish("screen/3/line/0", "on");
  publish("screen/0/line/8", "\xC3\xA9\xE2\x82\xAC\n");
  publish("screen/0/part", R"({"line":7,"offset":15,"text":"\u00e4\n","chars":2,"background":"#00ff00"})");
  publish("screen/0/part", R"({"line":"7","offset":1.5,"text":null,"chars":[],"colour":{},"x":1})");
}

} // namespace

} // namespace buttondriver::fuzz

int main(int count, char **arguments) {
  using namespace buttondriver::fuzz;
  if (count != 2) {
    std::fprintf(stderr, "usage: write_fuzz_seeds FOLDER\n");
    return 2;
  }
  try {
    for (const auto write :
         {write_commands, write_connections, write_bmp, write_text, write_level_file, write_launcher_configuration,
          write_event_client, write_recording, write_scenario, write_bridge_configuration, write_topics})
      write(arguments[1]);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "write_fuzz_seeds: %s\n", error.what());
    return 1;
  }
}
