// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/panel_picture.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>

namespace buttondriver::simulator {
namespace {

class PngFileTest : public testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(_folder.isValid()); }

  QString path(const char *name) const { return _folder.filePath(QString::fromLatin1(name)); }

  QStringList folder_contents() const {
    return QDir(_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  }

  static QImage picture(QRgb colour) {
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(colour);
    image.setPixel(3, 4, 0xFF123456);
    return image;
  }

  void put(const char *name, const QByteArray &bytes) const {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
  }

  QByteArray contents(const char *name) const {
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
  }

private:
  QTemporaryDir _folder;
};

/// Lets this process write no file beyond a size while it lives.
class FileSizeLimit {
public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &_before);
    const rlimit limit{bytes, _before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    _handler = std::signal(SIGXFSZ, SIG_IGN);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &_before);
    std::signal(SIGXFSZ, _handler);
  }
  FileSizeLimit(const FileSizeLimit &) = delete;
  FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
  rlimit _before{};
  void (*_handler)(int) = nullptr;
};

TEST_F(PngFileTest, reads_back_as_the_same_picture) {
  ASSERT_TRUE(write_png(picture(0xFF804020), path("panel.png")));
  EXPECT_EQ(contents("panel.png").left(8), QByteArray("\x89PNG\r\n\x1a\n"));
  EXPECT_EQ(QImage(path("panel.png"), "png").convertToFormat(QImage::Format_RGB32), picture(0xFF804020));
  EXPECT_EQ(folder_contents(), QStringList{QStringLiteral("panel.png")});
}

TEST_F(PngFileTest, does_not_depend_on_its_name) {
  ASSERT_TRUE(write_png(picture(0xFF804020), path("panel.jpg")));
  EXPECT_EQ(contents("panel.jpg").left(8), QByteArray("\x89PNG\r\n\x1a\n"));
}

TEST_F(PngFileTest, of_the_same_panel_has_the_same_bytes) {
  const PanelState state;
  ASSERT_TRUE(write_png(draw_panel(state), path("first.png")));
  ASSERT_TRUE(write_png(draw_panel(state), path("second.png")));
  EXPECT_EQ(contents("first.png"), contents("second.png"));
}

TEST_F(PngFileTest, replaces_an_older_one_without_touching_it) {
  put("panel.png", "the older file");
  QFile reader(path("panel.png"));
  ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
  ASSERT_TRUE(write_png(picture(0xFF00FF00), path("panel.png")));
  EXPECT_EQ(reader.readAll(), QByteArray("the older file"));
  EXPECT_EQ(QImage(path("panel.png"), "png").pixel(0, 0), 0xFF00FF00U);
  EXPECT_EQ(folder_contents(), QStringList{QStringLiteral("panel.png")});
}

TEST_F(PngFileTest, in_a_missing_folder_is_an_error) {
  const auto written = write_png(picture(0xFF804020), path("missing/panel.png"));
  ASSERT_FALSE(written);
  EXPECT_FALSE(written.failure().text.isEmpty());
  EXPECT_EQ(folder_contents(), QStringList());
}

TEST_F(PngFileTest, in_the_place_of_a_folder_is_an_error) {
  ASSERT_TRUE(QDir().mkdir(path("panel.png")));
  const auto written = write_png(picture(0xFF804020), path("panel.png"));
  ASSERT_FALSE(written);
  EXPECT_FALSE(written.failure().text.isEmpty());
  EXPECT_TRUE(QDir(path("panel.png")).exists());
}

TEST_F(PngFileTest, that_cannot_be_finished_leaves_the_older_one) {
  put("panel.png", "the older file");
  const QImage image = draw_panel(PanelState());
  {
    const FileSizeLimit limit(4096);
    const auto written = write_png(image, path("panel.png"));
    ASSERT_FALSE(written);
    EXPECT_FALSE(written.failure().text.isEmpty());
  }
  EXPECT_EQ(contents("panel.png"), QByteArray("the older file"));
  EXPECT_EQ(folder_contents(), QStringList{QStringLiteral("panel.png")});
}

TEST_F(PngFileTest, of_no_picture_is_an_error_and_leaves_the_older_one) {
  put("panel.png", "the older file");
  const auto written = write_png(QImage(), path("panel.png"));
  ASSERT_FALSE(written);
  EXPECT_FALSE(written.failure().text.isEmpty());
  EXPECT_EQ(contents("panel.png"), QByteArray("the older file"));
  EXPECT_EQ(folder_contents(), QStringList{QStringLiteral("panel.png")});
}

} // namespace
} // namespace buttondriver::simulator
