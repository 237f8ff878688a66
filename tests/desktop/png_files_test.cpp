#include "utility/pictures/png_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

namespace tarnwick::test {
namespace {

class PngFilesTest : public testing::Test {
 protected:
  QByteArray contents(const QString& name) {
    QFile file(folder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  void put(const QString& name, const QByteArray& bytes) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }

  QTemporaryDir folder;
  PngFiles files{(folder.path() + "/pictures").toStdString()};
  const Bitmap bitmap{2, 1, {10, 20, 30, 255, 5, 0, 0, 5}};
};

TEST_F(PngFilesTest, KeepsEveryPixelAndMakesItsFolderAgain) {
  files.write("a.png", bitmap);
  EXPECT_EQ(files.read("a.png"), bitmap);
  ASSERT_TRUE(QDir(folder.filePath("pictures")).removeRecursively());
  EXPECT_EQ(files.read("a.png"), std::nullopt);
  files.write("a.png", bitmap);
  EXPECT_EQ(files.read("a.png"), bitmap);
}

TEST_F(PngFilesTest, WhatIsNoPictureIsAMiss) {
  files.write("good.png", bitmap);
  const QByteArray good = contents("pictures/good.png");
  put("pictures/cut.png", good.left(good.size() / 2));
  put("pictures/empty.png", {});
  put("pictures/other.png", "GIF89a");
  QByteArray huge = good;  // width and height of its header are 32-bit numbers
  huge.replace(16, 8, QByteArray::fromHex("7fffffff7fffffff"));
  put("pictures/huge.png", huge);
  ASSERT_TRUE(QImage(3000, 20, QImage::Format_ARGB32).save(folder.filePath("pictures/wide.png")));
  ASSERT_TRUE(QDir(folder.path()).mkdir("pictures/folder.png"));
  ASSERT_EQ(mkfifo(qPrintable(folder.filePath("pictures/pipe.png")), 0600), 0);
  for (const auto& name : {"cut.png", "empty.png", "other.png", "huge.png", "wide.png",
                           "folder.png", "pipe.png", "missing.png"}) {
    EXPECT_EQ(files.read(name), std::nullopt) << name;
  }
}

}  // namespace
}  // namespace tarnwick::test
